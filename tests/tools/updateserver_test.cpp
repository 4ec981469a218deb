// The demonstration update server, byte by byte: every kind of request, what it refuses, and
// each way it can be made to misbehave. The server runs in the test's process; the last group
// runs the update-server command itself.
#include "serverconversation.h"
#include "updateserver.h"

#include "support/testfiles.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTcpServer>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <memory>

namespace {

// Every byte value, after a start that looks like a server token.
QByteArray everyByte(int rounds) {
    QByteArray data = "ERROR";
    for (int r = 0; r < rounds; ++r)
        for (int b = 0; b < 256; ++b)
            data += char(b);
    return data;
}

class UpdateServerTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(content.isValid());
        put("VERSIONS", "5.3.0;3.9.0;2004.3.5\r\n");
        put("NVBATI.DAT", "Norvale start file");
        put("NVINFO.ARJ", "index archive");
        put("UPDATE.EXE", "new program");
        put("lists/ACD00.ARJ", bigList);
        put("lists/bos01.arj", "LISTE42 looks like an announcement");
        put("catalogues/aut/CAT.ARJ", "first file of AUT");
        put("catalogues/aut/cata.arj", "second file of AUT");
        put("partdex/PDX0402.ARJ", "partdex package");
        put("ledgermaker/LGM0402.ARJ", "ledgermaker package");
    }

    void put(const QString& relative, const QByteArray& bytes) {
        WriteBytes(content.filePath(relative), bytes);
    }

    UpdateServer& start(ServerFaults faults = {}) {
        server = std::make_unique<UpdateServer>(ServerContent(content.path()), faults);
        EXPECT_TRUE(server->start(0)) << server->errorString().toStdString();
        return *server;
    }

    // Connects and takes the greeting.
    std::unique_ptr<ServerConversation> greeted() {
        auto c = std::make_unique<ServerConversation>(server->port());
        EXPECT_TRUE(c->connected());
        EXPECT_EQ(c->next(), "OKOKO");
        return c;
    }

    // One file: the request, its announcement, nothing before the acknowledgement, the bytes.
    void fetch(ServerConversation& c, const QByteArray& request, const QByteArray& token,
               const QByteArray& acknowledgement, const QByteArray& bytes) {
        SCOPED_TRACE(request.toStdString());
        c.send(request);
        EXPECT_EQ(c.next(), token + QByteArray::number(bytes.size()));
        EXPECT_TRUE(c.quietFor(50));
        c.send(acknowledgement);
        EXPECT_EQ(c.receive(bytes.size()), bytes);
    }

    QTemporaryDir content;
    const QByteArray bigList = everyByte(600); // more than one piece of the stream
    std::unique_ptr<UpdateServer> server;
};

} // namespace

TEST_F(UpdateServerTest, AnswersEveryKindOfRequestInOneSession) {
    start();
    auto c = greeted();
    fetch(*c, "BATI3", "BATI3", "ENVOIBATI3", "Norvale start file");
    c->send("VERSI2004.3.2");
    EXPECT_EQ(c->next(), "VERSI5.3.0;3.9.0;2004.3.5");
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

TEST_F(UpdateServerTest, VersionsFromTheOptionWinOverTheFileAndAMissingFileGivesNone) {
    ServerContent set(content.path());
    set.setVersions("6.0.0;4.0.0;2005.1.0");
    EXPECT_EQ(set.versions(), "6.0.0;4.0.0;2005.1.0");
    QFile::remove(content.filePath("VERSIONS"));
    EXPECT_EQ(ServerContent(content.path()).versions(), "");
    start();
    auto c = greeted();
    c->send("VERSI2004.3.2");
    EXPECT_EQ(c->next(), "VERSI");
}

TEST_F(UpdateServerTest, AnswersErrorToWhatItCannotServeAndGoesOn) {
    start();
    auto c = greeted();
    for (const QByteArray& request :
         {QByteArray("LISTEXYZ99"), QByteArray("LISTE../VERSIONS"), QByteArray("LISTE"),
          QByteArray("CAT  ../AUT"), QByteArray("PARTDNOCODE"), QByteArray("HELLO")}) {
        c->send(request);
        EXPECT_EQ(c->next(), "ERROR") << request.toStdString();
    }
    // A wrong acknowledgement is refused and the file is not sent.
    c->send("LISTEBOS01");
    EXPECT_EQ(c->next(), "LISTE34");
    c->send("ENVOILISTEACD00");
    EXPECT_EQ(c->next(), "ERROR");
    EXPECT_TRUE(c->quietFor(50));
    // A client that cannot write the file says so instead: no answer, and the session goes on.
    c->send("LISTEBOS01");
    EXPECT_EQ(c->next(), "LISTE34");
    c->send("ERROR:53File not found");
    EXPECT_TRUE(c->quietFor(50));
    fetch(*c, "LISTEBOS01", "LISTE", "ENVOILISTEBOS01", "LISTE42 looks like an announcement");
}

TEST_F(UpdateServerTest, ARequestDuringAFileIsAnsweredAfterItAndAClientErrorStopsTheFile) {
    ServerFaults faults;
    faults.chunkSize = 4096;
    faults.chunkDelayMs = 5;
    start(faults);
    auto c = greeted();
    c->send("LISTEACD00");
    c->next();
    const int before = c->arrivals();
    c->send("ENVOILISTEACD00");
    EXPECT_EQ(c->receive(4096), bigList.left(4096));
    c->send("VERSI2004.3.2"); // a client that took the file for complete goes on
    EXPECT_EQ(c->receive(bigList.size() - 4096, 20000), bigList.mid(4096));
    EXPECT_GE(c->arrivals() - before, 4) << "sent in pieces with pauses";
    EXPECT_EQ(c->next(), "VERSI5.3.0;3.9.0;2004.3.5");

    c->send("LISTEACD00");
    c->next();
    c->send("ENVOILISTEACD00");
    EXPECT_EQ(c->receive(4096), bigList.left(4096));
    c->send("ERROR:53File not found");
    const QByteArray rest = c->receive(bigList.size(), 500); // what was on its way
    EXPECT_LT(rest.size(), bigList.size() - 4096);
    EXPECT_TRUE(c->quietFor(100));
    c->send("VERSI2004.3.2");
    EXPECT_EQ(c->next(), "VERSI5.3.0;3.9.0;2004.3.5");
}

TEST_F(UpdateServerTest, ClosesOrFallsSilentAfterSoManyBytesOfTheNamedFile) {
    ServerFaults faults;
    faults.closeAfter = FileFault{1000, "LISTEACD00"};
    start(faults);
    auto c = greeted();
    fetch(*c, "LISTEBOS01", "LISTE", "ENVOILISTEBOS01", "LISTE42 looks like an announcement");
    c->send("LISTEACD00");
    EXPECT_EQ(c->next(), "LISTE" + QByteArray::number(bigList.size()));
    c->send("ENVOILISTEACD00");
    EXPECT_EQ(c->receive(bigList.size()), bigList.left(1000));
    EXPECT_TRUE(c->closedWithin(2000));

    faults = {};
    faults.stallAfter = FileFault{70000, {}};
    start(faults);
    c = greeted();
    c->send("LISTEACD00");
    c->next();
    c->send("ENVOILISTEACD00");
    EXPECT_EQ(c->receive(70000), bigList.left(70000));
    EXPECT_TRUE(c->quietFor(200));
    EXPECT_TRUE(c->connected());
    c->send("VERSI2004.3.2");
    EXPECT_TRUE(c->quietFor(100));
}

TEST_F(UpdateServerTest, AnnouncesAWrongSizeButSendsTheWholeFile) {
    ServerFaults faults;
    faults.wrongSize = FileFault{-10, "BATI3"};
    start(faults);
    auto c = greeted();
    c->send("BATI3");
    EXPECT_EQ(c->next(), "BATI38");
    c->send("ENVOIBATI3");
    EXPECT_EQ(c->receive(18), "Norvale start file");

    faults.wrongSize = FileFault{+5, {}};
    start(faults);
    c = greeted();
    c->send("UPDA2");
    EXPECT_EQ(c->next(), "UPDAT16");
    c->send("ENVOIUPDAT");
    EXPECT_EQ(c->receive(16, 300), "new program");
}

TEST_F(UpdateServerTest, AnswersErrorOrNothingToTheNamedRequestsOnly) {
    ServerFaults faults;
    faults.errorOn = {"LISTEBOS01", "NVINF"};
    faults.silentOn = {"VERSI"};
    start(faults);
    auto c = greeted();
    c->send("LISTEBOS01");
    EXPECT_EQ(c->next(), "ERROR");
    c->send("NVINFNVCOM");
    EXPECT_EQ(c->next(), "ERROR");
    fetch(*c, "LISTEACD00", "LISTE", "ENVOILISTEACD00", bigList);
    c->send("VERSI2004.3.2");
    EXPECT_TRUE(c->quietFor(200));
    c->send("LISTEACD00"); // silent for good
    EXPECT_TRUE(c->quietFor(100));

    faults = {};
    faults.silentOnConnect = true;
    start(faults);
    ServerConversation mute(server->port());
    EXPECT_TRUE(mute.connected());
    EXPECT_TRUE(mute.quietFor(200));
}

TEST_F(UpdateServerTest, RefusedConnectionsFindNobodyOnThePort) {
    ServerFaults faults;
    faults.refuseConnections = true;
    start(faults);
    EXPECT_NE(server->port(), 0);
    ServerConversation c(server->port());
    EXPECT_FALSE(c.connected());
    EXPECT_EQ(c.error(), QAbstractSocket::ConnectionRefusedError);
}

TEST_F(UpdateServerTest, TheCommandPrintsItsPortServesAndExitsByTheConvention) {
    QProcess program;
    program.start(QStringLiteral(UPDATE_SERVER_PATH),
                  {content.path(), "--port", "0", "--versions", "1.0.0;2.0.0;3.0.0"});
    ASSERT_TRUE(program.waitForReadyRead(10000));
    bool ok = false;
    const quint16 port = quint16(program.readLine().trimmed().toUInt(&ok));
    ASSERT_TRUE(ok);
    EXPECT_LT(port, 32768); // the program's Port setting is a 16-bit integer
    {
        ServerConversation c(port);
        EXPECT_EQ(c.next(), "OKOKO");
        c.send("VERSI2004.3.2");
        EXPECT_EQ(c.next(), "VERSI1.0.0;2.0.0;3.0.0");
    }
    program.terminate(); // a stop by signal is a normal end
    ASSERT_TRUE(program.waitForFinished(10000));
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.exitCode(), 0);

    const auto run = [](const QStringList& arguments) {
        return RunProgram(QStringLiteral(UPDATE_SERVER_PATH), arguments, 10000);
    };
    const ProgramRun help = run({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_TRUE((help.out + help.err).contains("catalogues/FICHIER/CATA.ARJ"));
    EXPECT_TRUE((help.out + help.err).contains("--close-after"));
    EXPECT_EQ(run({}).status, 2);
    EXPECT_EQ(run({content.filePath("missing")}).status, 2);
    EXPECT_EQ(run({content.path(), "--close-after", "many"}).status, 2);
    QTcpServer taken;
    ASSERT_TRUE(taken.listen(QHostAddress::LocalHost, 0));
    EXPECT_EQ(run({content.path(), "--port", QString::number(taken.serverPort())}).status, 1);
}
