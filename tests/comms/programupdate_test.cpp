// The program update offered by the server: only an updater the maker has signed is started;
// anything else answering the request is deleted, reported and refused, and the program stays.
#include "app/messages.h"
#include "comms/signedupdate.h"
#include "sessionfixture.h"

#include <QTemporaryDir>
#include <QTest>

namespace {

class ProgramUpdateTest : public SessionTest {
protected:
    ProgramUpdateTest() { server.answerStart("s", "2004.3.10"); }

    // A session in which the dealer accepts the offer and the server sends content as
    // UPDATE.EXE.
    void acceptUpdate(const ScriptedServer::Reply& reply) {
        server.answer("UPDA2", reply);
        prompts.expectMessage(Offer, Answer::Yes);
        runSession();
    }
    QString updaterPath() const { return install.programDir() + QStringLiteral("/UPDATE.EXE"); }

    const QString Offer =
        LoadText(65) + QStringLiteral("\r\nVersion: 2004.3.2\r\n\r\n") + LoadText(66);
};

} // namespace

TEST_F(ProgramUpdateTest, DeclinedTheSessionGoesOnAndTheCompanionsNewVersionsAreShown) {
    prompts.expectMessage(Offer, Answer::No);
    session->SetupEnv();
    runSession();
    EXPECT_EQ(view.reports, QStringList{ReportEnd});
    // The server offers Partdex 1.0 and Ledgermaker 2.0 against 5.2.1 and 3.8.0.
    EXPECT_EQ(view.captions[4], QStringLiteral("Partdex 1.0 disponible"));
    EXPECT_EQ(view.captions[5], QStringLiteral("Ledgermaker 2.0 disponible"));
    EXPECT_TRUE(view.bold[4] && view.bold[5]);
}

// The demo updater, signed with the demo key this build accepts, arrives, is stripped of its
// signature and started; the program ends without showing the report.
TEST_F(ProgramUpdateTest, ASignedUpdaterIsStartedAndTheProgramEnds) {
    const QByteArray signedUpdater = ReadBytes(QStringLiteral(SIGNED_DEMO_UPDATER));
    acceptUpdate(ScriptedServer::file("UPDAT", signedUpdater));

    EXPECT_EQ(server.received.mid(3), (QList<QByteArray>{"UPDA2", "ENVOIUPDAT"}));
    EXPECT_EQ(updater.started, QStringList{updaterPath()});
    EXPECT_TRUE(updater.ended);
    EXPECT_TRUE(App().QuitWithoutAsking);
    EXPECT_TRUE(view.reports.isEmpty());
    // What was started is the maker's program itself, ready to run.
    EXPECT_EQ(ReadBytes(updaterPath()), signedUpdater.chopped(UpdateSignedOverhead));
    EXPECT_TRUE(QFile::permissions(updaterPath()) & QFile::ExeOwner);
}

// A byte of the maker's updater changed on the way: refused, deleted and reported.
TEST_F(ProgramUpdateTest, AnyOtherUpdaterIsRefusedDeletedAndReported) {
    QByteArray altered = ReadBytes(QStringLiteral(SIGNED_DEMO_UPDATER));
    altered[3] = char(altered[3] ^ 0x01);
    const auto reason = SignedUpdateReason::BadSignature;
    server.answer("UPDA2", ScriptedServer::file("UPDAT", altered));
    prompts.expectMessage(Offer, Answer::Yes)
        .expectMessage(SignedUpdateRefusalMessage(reason), Buttons::Ok, Icon::Critical, {},
                       Answer::Ok);
    runSession();

    EXPECT_TRUE(updater.started.isEmpty());
    EXPECT_FALSE(updater.ended);
    EXPECT_FALSE(App().QuitWithoutAsking);
    EXPECT_FALSE(QFile::exists(updaterPath()));
    EXPECT_EQ(
        view.reports,
        QStringList{ReportLine(QStringLiteral(": ") + SignedUpdateReportText(reason)) + ReportEnd});
}

// An updater that did not arrive whole is neither checked nor started: the report says so.
TEST_F(ProgramUpdateTest, AnUpdaterCutShortIsNotStarted) {
    ScriptedServer::Reply cut =
        ScriptedServer::file("UPDAT", ReadBytes(QStringLiteral(SIGNED_DEMO_UPDATER)));
    cut.closeAfter = 4000;
    acceptUpdate(cut);
    EXPECT_EQ(view.reports,
              QStringList{ReportLine(QStringLiteral("> UPDATE.EXE non réussie")) + ReportEnd});
}

#ifndef Q_OS_WIN
// The hand-over in a real run: an updater written as the server sent it, without the
// execute permission, still starts.
TEST(DetachedUpdater, StartsAReceivedUpdaterThatArrivedAsPlainData) {
    QTemporaryDir dir;
    const QString updater = dir.filePath(QStringLiteral("UPDATE.EXE"));
    const QString started = dir.filePath(QStringLiteral("started"));
    WriteBytes(updater, "#!/bin/sh\ntouch started\n");
    ASSERT_FALSE(QFile::permissions(updater) & QFile::ExeOwner);

    DetachedUpdater detached;
    EXPECT_TRUE(detached.start(updater));
    EXPECT_TRUE(QTest::qWaitFor([&started] { return QFile::exists(started); }, 5000));
}
#endif
