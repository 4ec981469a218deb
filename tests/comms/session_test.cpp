// Whole download sessions against a scripted server on loopback: what the client sends, what
// it writes, what the report says, and how stops, refusals and faults end a session.
#include "app/messages.h"
#include "sessionfixture.h"
#include "support/faildevice.h"

#include <QBuffer>
#include <QRegularExpression>
#include <QTimer>
#include <algorithm>

// Every kind of item in one session, each list chosen one way: ALPHA marked, BETA waiting for
// its update, GAMMA containing the text (and OMEGA too, but it is not in use). GAMMA has no
// group code and needs one: received but not unpacked. The catalogues come last, on yes.
TEST_F(SessionTest, EachChosenItemIsFetchedInTurnUnpackedAndReported) {
    App().Settings.Selection = -1;
    QByteArray content = "ERRORLISTE12OKOKO"; // every byte value behind a server message
    for (int b = 0; b < 256 * 400; ++b)
        content.append(char(b));
    server.answerStart("start file", "2004.3.2");
    server.answer("NVINFNVCOM", ScriptedServer::file("NVINF", "index"));
    server.answer("PARTDPDX1", ScriptedServer::file("PARTD", "partdex"));
    server.answer("LISTEALP", ScriptedServer::file("LISTE", "alpha"));
    server.answer("LISTEBET", ScriptedServer::file("LISTE", "beta"));
    ScriptedServer::Reply list = ScriptedServer::file("LISTE", content);
    list.chunkSize = 1000;
    server.answer("LISTEGAM", list);
    server.answer("CAT  C1", ScriptedServer::file("CATAX", "first of C1"));
    server.answer("CATA C1", ScriptedServer::file("CATAX", "second of C1"));
    server.answer("CAT  C2", ScriptedServer::file("CATAX", "first"));
    server.answer("CATA C2", ScriptedServer::file("CATAX", "second"));
    std::fill_n(view.boxes, 5, true);
    view.marks(0, 0) = QStringLiteral("ALP");
    view.marks(0, 3) = QStringLiteral("OME"); // not in use: not fetched, still unmarked
    view.marks(1, 1) = QStringLiteral("1");
    view.expListText = QStringLiteral("GA");
    view.checkedCatalogues = {QStringLiteral("C1"), QStringLiteral("C2")};
    prompts.expectMessage(LoadText(130) + QStringLiteral("2\r\n") + LoadText(131), Buttons::YesNo,
                          Icon::Information, QString(), Answer::Yes);
    session->SetupEnv();
    EXPECT_EQ(view.captions[4], QStringLiteral("Partdex 5.2.1"));

    runSession();

    // Each file is asked for once the one before it has arrived.
    EXPECT_EQ(server.received,
              (QList<QByteArray>{"BATI3",         "ENVOIBATI3", "VERSI2004.3.2",  "NVINFNVCOM",
                                 "ENVOINVINF",    "PARTDPDX1",  "ENVOIPARTDPDX1", "LISTEALP",
                                 "ENVOILISTEALP", "LISTEBET",   "ENVOILISTEBET",  "LISTEGAM",
                                 "ENVOILISTEGAM", "CAT  C2",    "ENVOICAT  C2",   "CATA C2",
                                 "ENVOICATA C2",  "CAT  C1",    "ENVOICAT  C1",   "CATA C1",
                                 "ENVOICATA C1"}));
    QList<QByteArray> written;
    for (const QString& path : {prg("NVBATI.DAT"), data("NVINFO.ARJ"), data("PARTVERS.ARJ"),
                                prg("NVLISTE.ARJ"), prg("NVCAT.ARJ"), prg("NVCATA.ARJ")})
        written << ReadBytes(path);
    EXPECT_EQ(written, (QList<QByteArray>{"start file", "index", "partdex", content, "first of C1",
                                          "second of C1"}));
    EXPECT_EQ(serviceCalls(), (QStringList{"8 1", "6 1", "5 1 1", "5 1 2", "9 1 2", "9 1 1"}));
    EXPECT_EQ(view.reports,
              QStringList{ReportLine(LoadText(45)) + ReportLine(LoadText(47)) +
                          ReportLine(QStringLiteral("> ALPHA FREINS réussie")) +
                          ReportLine(QStringLiteral("> BETA FILTRES réussie")) +
                          ReportLine(QStringLiteral("> GAMMA COURROIES non réussie")) +
                          ReportLine(QStringLiteral("> Catalogue Deux réussie")) +
                          ReportLine(QStringLiteral("> Catalogue Un réussie")) + ReportEnd});
    EXPECT_TRUE(view.marks(0, 0).isEmpty());
    EXPECT_TRUE(view.marks(0, 3).isEmpty());
    EXPECT_EQ(std::count(view.boxes, view.boxes + 6, true), 0);
    EXPECT_EQ(view.captions[4], QStringLiteral("Partdex 5.2.1")); // read again after the update
    EXPECT_FALSE(view.bold[4]);
    EXPECT_TRUE(view.events.contains(QStringLiteral("rebuilt")));
    EXPECT_EQ(view.events.last(), QStringLiteral("ended"));
    EXPECT_TRUE(session->ReportText.isEmpty());
    // The caption was shown in its final form, at 100 %.
    EXPECT_TRUE(view.statuses.contains(QRegularExpression(
        QStringLiteral("^%1 Octets \\(%100\\)\r\n[0-9]*\\.[0-9][0-9] k/s$").arg(content.size()))));
    EXPECT_LT(view.statuses.size(), 100); // not once per piece
}

// The dealer's stop or a fault of the server fails the list; the partial file stays.
TEST_F(SessionTest, AStopOrAServerFaultFailsTheItemAndTheReportSaysSo) {
    ScriptedServer::Reply stalling = ScriptedServer::file("LISTE", QByteArray(5000, 'x'));
    stalling.silentAfter = 1200; // the dealer stops the session there
    ScriptedServer::Reply closing = ScriptedServer::file("LISTE", QByteArray(3000, 'y'));
    closing.closeAfter = 700;
    ScriptedServer::Reply tooShort = ScriptedServer::file("LISTE", QByteArray(3000, 'z'));
    tooShort.announcedSize = 2990; // the file is completed by more bytes than announced
    const QString alpha = ReportLine(QStringLiteral("> ALPHA FREINS non réussie"));
    // After a wrong size the session goes on with BETA, whose list replaces ALPHA's.
    const struct {
        const char* name;
        ScriptedServer::Reply reply;
        QByteArray leftOnDisk;
        QString report;
    } cases[] = {
        {"stopped mid-file", stalling, QByteArray(1200, 'x'), alpha + ReportEnd},
        {"server ERROR", ScriptedServer::message("ERROR unknown list"), "<missing>",
         alpha + ReportEnd},
        {"close mid-file", closing, QByteArray(700, 'y'), alpha + ReportEnd},
        {"wrong size", tooShort, "b",
         alpha + ReportLine(QStringLiteral("> BETA FILTRES réussie")) + ReportEnd},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        ScriptedServer fresh;
        App().Settings.Port = qint16(fresh.port());
        QFile::remove(prg(QStringLiteral("NVLISTE.ARJ")));
        fresh.answerStart("s", "2004.3.2");
        fresh.answer("LISTEALP", c.reply);
        fresh.answer("LISTEBET", ScriptedServer::file("LISTE", "b"));
        view.reports.clear();
        chooseAlphaAndBeta();
        QTimer stopper;
        if (c.reply.silentAfter > 0) {
            prompts.expectMessage(LoadText(114), Answer::Yes);
            QObject::connect(&stopper, &QTimer::timeout, [&] {
                if (session->ReceivedBytes == c.reply.silentAfter) {
                    stopper.stop();
                    session->cmdOKClick();
                }
            });
            stopper.start(5);
        }

        runSession();

        EXPECT_EQ(view.reports, QStringList{c.report});
        EXPECT_EQ(ReadBytes(prg(QStringLiteral("NVLISTE.ARJ"))), c.leftOnDisk);
    }
}

TEST_F(SessionTest, WrongSizedStartFileLeavesTheSessionIdle) {
    ScriptedServer::Reply start = ScriptedServer::file("BATI3", "start file");
    start.announcedSize = 4;
    server.answer("BATI3", start);
    session->start();
    ASSERT_TRUE(QTest::qWaitFor([this] { return session->TransferFailed; }, 5000));
    QTest::qWait(200);
    EXPECT_EQ(server.received, (QList<QByteArray>{"BATI3", "ENVOIBATI3"}));
    EXPECT_TRUE(session->running());
    EXPECT_TRUE(session->CurrentRequest.isEmpty());

    prompts.expectMessage(LoadText(114), Answer::Yes);
    session->cmdOKClick();
    EXPECT_FALSE(session->running());
    EXPECT_TRUE(view.reports.isEmpty()); // the stop closes silently
}

TEST_F(SessionTest, UnwritableDestinationIsToldToTheServer) {
    server.answerStart("s", "2004.3.2");
    server.answer("LISTEALP", ScriptedServer::file("LISTE", QByteArray(4000, 'a')));
    server.answer("LISTEBET", ScriptedServer::file("LISTE", QByteArray(4000, 'b')));
    const QString listFile = prg(QStringLiteral("NVLISTE.ARJ"));
    QBuffer sink; // behind a disk that is full after 1000 bytes
    sink.open(QIODevice::WriteOnly);
    int lists = 0;
    session->setFileOpener([&](const QString& path) -> std::unique_ptr<QIODevice> {
        if (path != listFile) {
            auto file = std::make_unique<QFile>(path);
            file->open(QIODevice::WriteOnly);
            return file;
        }
        if (++lists == 1) // a directory that cannot be written
            return std::make_unique<QFile>(install.drive() + QStringLiteral("/missing/x"));
        return std::make_unique<FailDevice>(sink, 1000);
    });
    chooseAlphaAndBeta();

    runSession();

    EXPECT_TRUE(server.received.value(4).startsWith("ERROR:53")) << server.received.value(4).data();
    EXPECT_EQ(server.received.mid(5),
              (QList<QByteArray>{"LISTEBET", "ENVOILISTEBET", "ERROR:52No space left on device"}));
    EXPECT_EQ(view.reports,
              QStringList{ReportLine(QStringLiteral("> ALPHA FREINS non réussie")) +
                          ReportLine(QStringLiteral("> BETA FILTRES non réussie")) + ReportEnd});
}

TEST_F(SessionTest, SocketErrorsByWinsockNumber) {
    session->SocketError(10054, QStringLiteral("reset")); // ignored: nothing shown, nothing closed
    prompts.expectMessage(QStringLiteral("wsckError: 10050 Network down"))
        .expectMessage(LoadText(59), Buttons::Ok, Icon::Critical, QString(), Answer::Ok)
        .expectMessage(LoadText(60), Buttons::Ok, Icon::Critical, QString(), Answer::Ok);
    for (const int number : {10050, 10061, 10060})
        session->SocketError(number, QStringLiteral("Network down"));
    // A close asked for while the report is shown (inside the first close) does nothing.
    view.onReport = [this] { session->SocketError(11001, QStringLiteral("host")); };
    session->SocketError(11001, QStringLiteral("host")); // silent
    EXPECT_EQ(view.reports, QStringList(4, ReportEnd));
}

// Versions that cannot be split and a server closing during the start file: the session
// closes with a report of its end line alone.
TEST_F(SessionTest, SessionsThatEndBeforeAnyItemReportOnlyTheEndLine) {
    server.answer("BATI3", ScriptedServer::file("BATI3", "s"));
    server.answer("VERSI2004.3.2", ScriptedServer::message("VERSI5.3.0"));
    view.boxes[3] = true; // the plan does not run
    prompts.expectMessageMatching(QStringLiteral("^errDataArrival: 5 "));
    runSession();
    EXPECT_EQ(view.reports, QStringList{ReportEnd});
    EXPECT_FALSE(server.received.contains("NVINFNVCOM"));

    view.reports.clear();
    ScriptedServer::Reply start = ScriptedServer::file("BATI3", QByteArray(5000, 's'));
    start.closeAfter = 100;
    server.answer("BATI3", start);
    runSession();
    EXPECT_EQ(view.reports, QStringList{ReportEnd});
}

TEST_F(SessionTest, ArrivalsOutsideATransfer) {
    // A catalogue file nobody asked for opens nothing; data without a file is answered as a
    // file that cannot be written.
    session->DataArrival("CATAX10");
    EXPECT_FALSE(QFile::exists(prg(QStringLiteral("NVCAT.ARJ"))));
    EXPECT_FALSE(QFile::exists(prg(QStringLiteral("NVCATA.ARJ"))));
    session->DataArrival("0123456789");
    EXPECT_TRUE(session->TransferFailed);
    EXPECT_GE(session->progress(), 100);
    // A second "OKOKO" asks for the start file again.
    session->CurrentRequest.clear();
    session->DataArrival("OKOKO");
    EXPECT_EQ(session->CurrentRequest, QStringLiteral("BATI3"));
    EXPECT_EQ(session->progress(), 0);
}
