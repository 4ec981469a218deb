// The demonstration update server, byte by byte, in the test's process: every kind of request,
// what it refuses, each way it can be made to misbehave; and the update-server command itself.
#include "serverconversation.h"
#include "updateserver.h"

#include "support/testfiles.h"

#include <QFile>
#include <QProcess>
#include <QTcpServer>
#include <QTemporaryDir>
#include <functional>
#include <gtest/gtest.h>
#include <memory>

namespace {

const QByteArray Versions = "VERSI5.3.0;3.9.0;2004.3.5";

class UpdateServerTest : public ::testing::Test {
protected:
    void SetUp() override {
        for (const auto& [path, bytes] : std::initializer_list<std::pair<const char*, QByteArray>>{
                 {"VERSIONS", "5.3.0;3.9.0;2004.3.5\r\n"},
                 {"NVBATI.DAT", "Norvale start file"},
                 {"NVINFO.ARJ", "index archive"},
                 {"UPDATE.EXE", "new program"},
                 {"lists/ACD00.ARJ", bigList},
                 {"lists/bos01.arj", "LISTE42 looks like an announcement"},
                 {"catalogues/aut/CAT.ARJ", "first file of AUT"},
                 {"catalogues/aut/cata.arj", "second file of AUT"},
                 {"partdex/PDX0402.ARJ", "partdex package"},
                 {"ledgermaker/LGM0402.ARJ", "ledgermaker package"}})
            WriteBytes(content.filePath(path), bytes);
    }

    // A new server with the faults `set` gives it, and a conversation with it past the
    // greeting (when there is one).
    std::unique_ptr<ServerConversation>
    greeted(const std::function<void(ServerFaults&)>& set = {}) {
        ServerFaults faults;
        if (set)
            set(faults);
        server = std::make_unique<UpdateServer>(ServerContent(content.path()), faults);
        EXPECT_TRUE(server->start(0)) << server->errorString().toStdString();
        auto c = std::make_unique<ServerConversation>(server->port());
        if (!faults.silentOnConnect && !faults.refuseConnections) {
            EXPECT_EQ(c->next(), "OKOKO");
        }
        return c;
    }

    // One file: the request, its announcement, nothing before the acknowledgement, the bytes.
    static void fetch(ServerConversation& c, const QByteArray& request, const QByteArray& token,
                      const QByteArray& acknowledgement, const QByteArray& bytes) {
        SCOPED_TRACE(request.toStdString());
        EXPECT_EQ(c.ask(request), token + QByteArray::number(bytes.size()));
        EXPECT_TRUE(c.quietFor(50));
        c.send(acknowledgement);
        EXPECT_EQ(c.receive(bytes.size()), bytes);
    }

    QTemporaryDir content;
    // Every byte value after a start that looks like a server token, in more than one piece of
    // the stream.
    const QByteArray bigList = [] {
        QByteArray data = "ERROR";
        for (int i = 0; i < 600 * 256; ++i)
            data += char(i % 256);
        return data;
    }();
    std::unique_ptr<UpdateServer> server;
};

} // namespace

TEST_F(UpdateServerTest, AnswersEveryKindOfRequestInOneSession) {
    auto c = greeted();
    fetch(*c, "BATI3", "BATI3", "ENVOIBATI3", "Norvale start file");
    EXPECT_EQ(c->ask("VERSI2004.3.2"), Versions);
    fetch(*c, "NVINFNVCOM", "NVINF", "ENVOINVINF", "index archive");
    fetch(*c, "LISTEACD00", "LISTE", "ENVOILISTEACD00", bigList);
    fetch(*c, "LISTEBOS01", "LISTE", "ENVOILISTEBOS01", "LISTE42 looks like an announcement");
    fetch(*c, "CAT  AUT", "CATAX", "ENVOICAT  AUT", "first file of AUT");
    fetch(*c, "CATA AUT", "CATAX", "ENVOICATA AUT", "second file of AUT");
    fetch(*c, "PARTDPDX0402", "PARTD", "ENVOIPARTDPDX0402", "partdex package");
    fetch(*c, "LEDGMLGM0402", "LEDGM", "ENVOILEDGMLGM0402", "ledgermaker package");
    fetch(*c, "UPDA2", "UPDAT", "ENVOIUPDAT", "new program");
    EXPECT_TRUE(c->quietFor(50));
    EXPECT_EQ(server->sessionCount(), 1);
}

TEST_F(UpdateServerTest, AnswersErrorToWhatItCannotServeAndGoesOn) {
    QFile::remove(content.filePath("VERSIONS"));
    auto c = greeted();
    EXPECT_EQ(c->ask("VERSI2004.3.2"), "VERSI"); // no versions to offer
    for (const QByteArray& request :
         {QByteArray("LISTEXYZ99"), QByteArray("LISTE../VERSIONS"), QByteArray("LISTE"),
          QByteArray("CAT  ../AUT"), QByteArray("PARTDNOCODE"), QByteArray("HELLO")}) {
        EXPECT_EQ(c->ask(request), "ERROR") << request.toStdString();
    }
    // A wrong acknowledgement is refused and the file is not sent.
    EXPECT_EQ(c->ask("LISTEBOS01", "ENVOILISTEACD00"), "LISTE34");
    EXPECT_EQ(c->next(), "ERROR");
    EXPECT_TRUE(c->quietFor(50));
    // A client that cannot write the file says so instead: no answer, and the session goes on.
    EXPECT_EQ(c->ask("LISTEBOS01", "ERROR:53File not found"), "LISTE34");
    EXPECT_TRUE(c->quietFor(50));
    fetch(*c, "LISTEBOS01", "LISTE", "ENVOILISTEBOS01", "LISTE42 looks like an announcement");
    // The next request can come in the same read as the reports.
    EXPECT_EQ(c->ask("LISTEBOS01", "ERROR:53ERROR:52Bad file name or numberCAT  AUT"), "LISTE34");
    EXPECT_EQ(c->next(), "CATAX17");
}

TEST_F(UpdateServerTest, ARequestDuringAFileIsAnsweredAfterItAndAClientErrorStopsTheFile) {
    auto c = greeted([](ServerFaults& f) {
        f.chunkSize = 4096;
        f.chunkDelayMs = 5;
    });
    const int before = c->arrivals();
    c->ask("LISTEACD00", "ENVOILISTEACD00");
    EXPECT_EQ(c->receive(4096), bigList.left(4096));
    c->send("VERSI2004.3.2"); // a client that took the file for complete goes on
    EXPECT_EQ(c->receive(bigList.size() - 4096, 20000), bigList.mid(4096));
    EXPECT_GE(c->arrivals() - before, 5) << "sent in pieces with pauses";
    EXPECT_EQ(c->next(), Versions);

    c->ask("LISTEACD00", "ENVOILISTEACD00");
    EXPECT_EQ(c->receive(4096), bigList.left(4096));
    c->send("ERROR:53File not found");
    const QByteArray rest = c->receive(bigList.size(), 500); // what was on its way
    EXPECT_LT(rest.size(), bigList.size() - 4096);
    EXPECT_TRUE(c->quietFor(100));
    EXPECT_EQ(c->ask("VERSI2004.3.2"), Versions);
}

TEST_F(UpdateServerTest, ClosesFallsSilentOrAnnouncesAWrongSizeForTheNamedFile) {
    auto c = greeted([](ServerFaults& f) { f.closeAfter = FileFault{1000, "LISTEACD00"}; });
    fetch(*c, "LISTEBOS01", "LISTE", "ENVOILISTEBOS01", "LISTE42 looks like an announcement");
    EXPECT_EQ(c->ask("LISTEACD00", "ENVOILISTEACD00"),
              "LISTE" + QByteArray::number(bigList.size()));
    EXPECT_EQ(c->receive(bigList.size()), bigList.left(1000));
    EXPECT_TRUE(QTest::qWaitFor([&c] { return !c->connected(); }, 2000)); // closed

    c = greeted([](ServerFaults& f) { f.stallAfter = FileFault{70000, {}}; });
    c->ask("LISTEACD00", "ENVOILISTEACD00");
    EXPECT_EQ(c->receive(70000), bigList.left(70000));
    EXPECT_TRUE(c->quietFor(200));
    EXPECT_TRUE(c->connected());
    c->send("VERSI2004.3.2");
    EXPECT_TRUE(c->quietFor(100));

    c = greeted([](ServerFaults& f) { f.wrongSize = FileFault{-10, "BATI3"}; });
    EXPECT_EQ(c->ask("BATI3", "ENVOIBATI3"), "BATI38");
    EXPECT_EQ(c->receive(18), "Norvale start file");

    c = greeted([](ServerFaults& f) { f.wrongSize = FileFault{+5, {}}; });
    EXPECT_EQ(c->ask("UPDA2", "ENVOIUPDAT"), "UPDAT16");
    EXPECT_EQ(c->receive(16, 300), "new program");
}

TEST_F(UpdateServerTest, AnswersErrorOrNothingToTheNamedRequestsOrRefusesConnections) {
    auto c = greeted([](ServerFaults& f) {
        f.silentOn = {"VERSI"};
        f.errorOn = {"LISTEBOS01", "NVINF"};
    });
    EXPECT_EQ(c->ask("LISTEBOS01"), "ERROR");
    EXPECT_EQ(c->ask("NVINFNVCOM"), "ERROR");
    fetch(*c, "LISTEACD00", "LISTE", "ENVOILISTEACD00", bigList);
    c->send("VERSI2004.3.2");
    EXPECT_TRUE(c->quietFor(200));
    c->send("LISTEACD00"); // silent for good
    EXPECT_TRUE(c->quietFor(100));

    c = greeted([](ServerFaults& f) { f.silentOnConnect = true; });
    EXPECT_TRUE(c->connected());
    EXPECT_TRUE(c->quietFor(200));

    c = greeted([](ServerFaults& f) { f.refuseConnections = true; });
    EXPECT_NE(server->port(), 0);
    EXPECT_FALSE(c->connected());
    EXPECT_EQ(c->error(), QAbstractSocket::ConnectionRefusedError);
}

// The versions of the command line win over the VERSIONS file.
TEST_F(UpdateServerTest, TheCommandPrintsItsPortServesAndExitsByTheConvention) {
    QProcess program;
    program.start(QStringLiteral(UPDATE_SERVER_PATH),
                  {content.path(), "--port", "0", "--versions", "1.0.0;2.0.0;3.0.0"});
    ASSERT_TRUE(program.waitForReadyRead(10000));
    const quint16 port = quint16(program.readLine().trimmed().toUInt());
    ASSERT_NE(port, 0);
    EXPECT_LT(port, 32768); // the program's Port setting is a 16-bit integer
    {
        ServerConversation c(port);
        EXPECT_EQ(c.next(), "OKOKO");
        EXPECT_EQ(c.ask("VERSI2004.3.2"), "VERSI1.0.0;2.0.0;3.0.0");
    }
    program.terminate(); // a stop by signal is a normal end
    ASSERT_TRUE(program.waitForFinished(10000));
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.exitCode(), 0);

    const auto run = [](const QStringList& arguments) {
        return RunProgram(QStringLiteral(UPDATE_SERVER_PATH), arguments, 10000);
    };
    EXPECT_EQ(run({"--help"}).status, 0);
    EXPECT_EQ(run({}).status, 2);
    EXPECT_EQ(run({content.filePath("missing")}).status, 2);
    EXPECT_EQ(run({content.path(), "--close-after", "many"}).status, 2);
    QTcpServer taken;
    ASSERT_TRUE(taken.listen(QHostAddress::LocalHost, 0));
    EXPECT_EQ(run({content.path(), "--port", QString::number(taken.serverPort())}).status, 1);
}
