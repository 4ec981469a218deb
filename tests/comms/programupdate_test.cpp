// The program update offered by the server: only an updater the maker has signed is started;
// anything else answering the request is deleted, reported and refused, and the program stays.
#include "app/appstate.h"
#include "app/messages.h"
#include "comms/signedupdate.h"
#include "sessionfixture.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

namespace {

const QString EndLine = QStringLiteral("\r\n--- Fin du rapport ---");

QByteArray readFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

QString line(const QString& text) {
    return FixedTime() + text + QStringLiteral("\r\n");
}

// The bytes of a file signed with a key, as sign-update writes them.
QByteArray signedBytes(const QByteArray& body, const QByteArray& secretKey) {
    QTemporaryDir dir;
    const QString in = dir.filePath(QStringLiteral("in"));
    const QString out = dir.filePath(QStringLiteral("out"));
    QFile file(in);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(body);
    file.close();
    SignUpdateFile(in, out, secretKey);
    return readFile(out);
}

QByteArray demoSecretKey() {
    return ReadSecretKeyFile(QStringLiteral(MERCANTEL_SOURCE_DIR "/resources/keys/demo.secret"));
}

class ProgramUpdateTest : public SessionTest {
protected:
    ProgramUpdateTest() { server.answerStart("s", "2005.1.1"); }

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

// The demo updater, signed with the demo key this build accepts, arrives, is stripped of its
// signature and started; the program ends without showing the report.
TEST_F(ProgramUpdateTest, ASignedUpdaterIsStartedAndTheProgramEnds) {
    const QByteArray signedUpdater = readFile(QStringLiteral(SIGNED_DEMO_UPDATER));
    acceptUpdate(ScriptedServer::file("UPDAT", signedUpdater));

    EXPECT_EQ(server.received.mid(3), (QList<QByteArray>{"UPDA2", "ENVOIUPDAT"}));
    EXPECT_EQ(updater.started, QStringList{updaterPath()});
    EXPECT_TRUE(updater.ended);
    EXPECT_TRUE(App().QuitWithoutAsking);
    EXPECT_TRUE(view.reports.isEmpty());
    EXPECT_EQ(QFileInfo(updaterPath()).size(), signedUpdater.size() - UpdateSignedOverhead);

    // What was started is the maker's program itself: it runs and leaves its line.
    QProcess run;
    run.setWorkingDirectory(install.programDir());
    run.start(updaterPath(), {});
    ASSERT_TRUE(run.waitForFinished(30'000));
    EXPECT_EQ(run.exitCode(), 0);
    EXPECT_TRUE(
        readFile(install.programDir() + QStringLiteral("/UPDATE.LOG")).contains("demo updater"));
}

TEST_F(ProgramUpdateTest, AnyOtherUpdaterIsRefusedDeletedAndReported) {
    const QByteArray body = "MZ the maker's updater";
    const QByteArray good = signedBytes(body, demoSecretKey());
    const qsizetype signatureAt = body.size();
    const qsizetype markAt = signatureAt + UpdateSignatureSize;
    const auto flipped = [&](qsizetype at) {
        QByteArray bad = good;
        bad[at] = char(bad[at] ^ 0x01);
        return bad;
    };
    const struct {
        const char* what;
        QByteArray data;
        SignedUpdateReason reason;
    } cases[] = {
        {"a byte of the body", flipped(3), SignedUpdateReason::BadSignature},
        {"a byte of the signature", flipped(signatureAt + 20), SignedUpdateReason::BadSignature},
        {"a byte of the trailer", flipped(markAt), SignedUpdateReason::NoTrailer},
        {"the key id", flipped(good.size() - 1), SignedUpdateReason::UnknownKey},
        {"truncated", good.left(good.size() - 5), SignedUpdateReason::NoTrailer},
        {"a stub", good.left(30), SignedUpdateReason::ShortFile},
        {"unsigned",
         readFile(QStringLiteral(MERCANTEL_BINARY_DIR "/tools/demo-updater/"
                                                      "demo-updater")),
         SignedUpdateReason::NoTrailer},
        {"a key not compiled in", signedBytes(body, GenerateUpdateKeyPair().secretKey),
         SignedUpdateReason::UnknownKey},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        view.reports.clear();
        updater.started.clear();
        prompts.expectMessage(Offer, Answer::Yes)
            .expectMessage(SignedUpdateRefusalMessage(c.reason), Buttons::Ok, Icon::Critical, {},
                           Answer::Ok);
        server.answer("UPDA2", ScriptedServer::file("UPDAT", c.data));
        runSession();

        EXPECT_TRUE(prompts.done());
        EXPECT_TRUE(updater.started.isEmpty());
        EXPECT_FALSE(updater.ended);
        EXPECT_FALSE(App().QuitWithoutAsking);
        EXPECT_FALSE(QFile::exists(updaterPath()));
        EXPECT_EQ(
            view.reports,
            QStringList{line(QStringLiteral(": ") + SignedUpdateReportText(c.reason)) + EndLine});
    }
}

// An updater that did not arrive whole is neither checked nor started: the report says so.
TEST_F(ProgramUpdateTest, AnUpdaterCutShortIsNotStarted) {
    ScriptedServer::Reply cut =
        ScriptedServer::file("UPDAT", readFile(QStringLiteral(SIGNED_DEMO_UPDATER)));
    cut.closeAfter = 4000;
    acceptUpdate(cut);
    EXPECT_TRUE(updater.started.isEmpty());
    EXPECT_FALSE(App().QuitWithoutAsking);
    EXPECT_EQ(view.reports,
              QStringList{line(QStringLiteral("> UPDATE.EXE non réussie")) + EndLine});
}
