#include "comms/signedupdate.h"

#include "app/appstate.h"
#include "app/messages.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

QByteArray readAll(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeAll(const QString& path, const QByteArray& data) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(data), data.size());
}

// Every byte value, over several of the verifier's reading pieces.
QByteArray updaterBody() {
    QByteArray body(200'003, '\0');
    QRandomGenerator generator(14);
    for (char& c : body)
        c = char(generator.bounded(256));
    return body;
}

KeyRing ringOf(std::initializer_list<UpdateKeyPair> pairs) {
    KeyRing ring;
    int n = 0;
    for (const UpdateKeyPair& pair : pairs)
        ring.add({pair.publicKey, QStringLiteral("key %1").arg(++n)});
    return ring;
}

class SignedUpdate : public ::testing::Test {
protected:
    QString path(const char* name) const { return dir.filePath(QString::fromLatin1(name)); }

    // The body signed with the key, as the server would send it.
    QByteArray signedWith(const UpdateKeyPair& key) {
        writeAll(path("body"), body);
        SignUpdateFile(path("body"), path("signed"), key.secretKey);
        return readAll(path("signed"));
    }

    // The received UPDATE.EXE holding data, prepared as the version check prepares it.
    SignedUpdateReason receive(const QByteArray& data) {
        writeAll(path("UPDATE.EXE"), data);
        return PrepareReceivedUpdater(path("UPDATE.EXE"), ring).reason;
    }

    QTemporaryDir dir;
    QByteArray body = updaterBody();
    UpdateKeyPair maker = GenerateUpdateKeyPair();
    KeyRing ring = ringOf({maker});
};

TEST_F(SignedUpdate, AValidUpdaterIsStrippedToTheMakersBytesReadyToStart) {
    const QByteArray received = signedWith(maker);
    ASSERT_EQ(received.size(), body.size() + UpdateSignedOverhead);
    EXPECT_TRUE(VerifySignedUpdate(path("signed"), ring).ok());

    const SignedUpdateCheck check = PrepareReceivedUpdater(path("signed"), ring);
    EXPECT_TRUE(check.ok());
    EXPECT_EQ(check.keyName, QStringLiteral("key 1"));
    EXPECT_EQ(readAll(path("signed")), body);
    EXPECT_TRUE(QFile::permissions(path("signed")) & QFile::ExeOwner);
}

TEST_F(SignedUpdate, AnythingButAValidUpdaterIsRefusedAndDeleted) {
    const QByteArray good = signedWith(maker);
    const qsizetype signatureAt = body.size();
    const qsizetype markAt = signatureAt + UpdateSignatureSize;
    const qsizetype keyIdAt = markAt + UpdateMarkSize;
    const auto flipped = [&](qsizetype at) {
        QByteArray bad = good;
        bad[at] = char(bad[at] ^ 0x01);
        return bad;
    };
    const UpdateKeyPair stranger = GenerateUpdateKeyPair();
    const struct {
        const char* what;
        QByteArray data;
        SignedUpdateReason reason;
    } cases[] = {
        {"body", flipped(body.size() / 2), SignedUpdateReason::BadSignature},
        {"first byte", flipped(0), SignedUpdateReason::BadSignature},
        {"signature", flipped(signatureAt + 10), SignedUpdateReason::BadSignature},
        {"mark", flipped(markAt + 2), SignedUpdateReason::NoTrailer},
        {"key id", flipped(keyIdAt), SignedUpdateReason::UnknownKey},
        {"truncated", good.left(good.size() - 1), SignedUpdateReason::NoTrailer},
        {"truncated to a stub", good.left(40), SignedUpdateReason::ShortFile},
        {"only signature and trailer", good.right(UpdateSignedOverhead),
         SignedUpdateReason::ShortFile},
        {"empty", QByteArray(), SignedUpdateReason::ShortFile},
        {"unsigned", body, SignedUpdateReason::NoTrailer},
        {"stranger's key", signedWith(stranger), SignedUpdateReason::UnknownKey},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(receive(c.data), c.reason);
        EXPECT_FALSE(QFile::exists(path("UPDATE.EXE")));
    }
}

TEST_F(SignedUpdate, NothingIsWrittenUnlessTheSignatureHolds) {
    QByteArray altered = signedWith(maker);
    altered[5] = char(altered[5] ^ 0x80);
    writeAll(path("received"), altered);
    EXPECT_EQ(ExtractSignedUpdate(path("received"), path("updater"), ring).reason,
              SignedUpdateReason::BadSignature);
    EXPECT_FALSE(QFile::exists(path("updater")));
    EXPECT_EQ(readAll(path("received")), altered); // only the version check deletes it

    EXPECT_EQ(ExtractSignedUpdate(path("signed"), path("no/such/folder/updater"), ring).reason,
              SignedUpdateReason::CannotWrite);
    EXPECT_EQ(VerifySignedUpdate(path("missing"), ring).reason, SignedUpdateReason::Unreadable);
}

// The maker lists a new key beside the old one: updaters signed with either are accepted.
TEST_F(SignedUpdate, EveryListedKeyIsAccepted) {
    const UpdateKeyPair next = GenerateUpdateKeyPair();
    const QByteArray list = "# the maker's keys\n\n" + maker.publicKey.toHex() + " norvale-2026\n" +
                            "  " + next.publicKey.toHex() + "   norvale-2027  \n";
    ring = KeyRing::fromText(list);
    ASSERT_EQ(ring.keys().size(), 2);
    signedWith(next);
    const SignedUpdateCheck check = VerifySignedUpdate(path("signed"), ring);
    EXPECT_TRUE(check.ok());
    EXPECT_EQ(check.keyName, QStringLiteral("norvale-2027"));
    signedWith(maker);
    EXPECT_EQ(VerifySignedUpdate(path("signed"), ring).keyName, QStringLiteral("norvale-2026"));

    EXPECT_THROW(KeyRing::fromText("abcd demo\n"), std::runtime_error);
    EXPECT_THROW(KeyRing::fromText(QByteArray(64, 'g')), std::runtime_error);
}

TEST(CompiledUpdateKeys, TheTestBuildAcceptsTheMakersKeysAndTheDemoKey) {
    const auto keyList = [](const char* name) {
        return readAll(QStringLiteral(MERCANTEL_SOURCE_DIR "/resources/keys/") +
                       QString::fromLatin1(name));
    };
    const KeyRing maker = KeyRing::fromText(keyList("maker.public"));
    ASSERT_FALSE(maker.keys().isEmpty());
    for (const UpdateKey& key : maker.keys())
        EXPECT_NE(CompiledUpdateKeys().find(key.keyId()), nullptr);
    const KeyRing demo = KeyRing::fromText(keyList("demo.public"));
    ASSERT_EQ(demo.keys().size(), 1);
    EXPECT_NE(CompiledUpdateKeys().find(demo.keys().first().keyId()), nullptr);
}

// The demo server's UPDATE.EXE is accepted by this build, and once stripped it runs and leaves
// its line in UPDATE.LOG beside itself.
TEST(CompiledUpdateKeys, TheSignedDemoUpdaterIsAcceptedAndRuns) {
    QTemporaryDir dir;
    const QString updater = dir.filePath(QStringLiteral("UPDATE.EXE"));
    ASSERT_TRUE(QFile::copy(QStringLiteral(SIGNED_DEMO_UPDATER), updater));
    ASSERT_TRUE(PrepareReceivedUpdater(updater, CompiledUpdateKeys()).ok());

    QProcess run;
    run.start(updater, {});
    ASSERT_TRUE(run.waitForFinished(30'000));
    EXPECT_EQ(run.exitCode(), 0);
    EXPECT_TRUE(readAll(dir.filePath(QStringLiteral("UPDATE.LOG"))).contains("demo updater"));
}

TEST(SignedUpdateMessages, EachRefusalNamesItsReasonInBothLanguages) {
    const SignedUpdateReason reasons[] = {
        SignedUpdateReason::Unreadable,   SignedUpdateReason::ShortFile,
        SignedUpdateReason::NoTrailer,    SignedUpdateReason::UnknownKey,
        SignedUpdateReason::BadSignature, SignedUpdateReason::CannotWrite};
    for (const int nation : {1000, 2000}) {
        App().Settings.Nation = qint16(nation);
        QStringList seen;
        for (const SignedUpdateReason reason : reasons) {
            const QString why = LoadText(SignedUpdateReasonText(reason));
            EXPECT_FALSE(seen.contains(why));
            seen << why;
            EXPECT_TRUE(SignedUpdateRefusalMessage(reason).startsWith(LoadText(170)));
            EXPECT_TRUE(SignedUpdateRefusalMessage(reason).endsWith(why));
            EXPECT_EQ(SignedUpdateReportText(reason), LoadText(171) + why);
        }
    }
    EXPECT_TRUE(SignedUpdateRefusalMessage(SignedUpdateReason::NoTrailer).contains("Tallyrate"));
    App().Settings.Nation = 1000;
}

class SignUpdateTool : public ::testing::Test {
protected:
    int run(const QStringList& arguments) {
        QProcess tool;
        tool.setWorkingDirectory(dir.path());
        tool.start(QStringLiteral(SIGN_UPDATE_PATH), arguments);
        EXPECT_TRUE(tool.waitForFinished(30'000));
        out = tool.readAllStandardOutput();
        err = tool.readAllStandardError();
        return tool.exitCode();
    }
    QString path(const char* name) const { return dir.filePath(QString::fromLatin1(name)); }

    QTemporaryDir dir;
    QByteArray out;
    QByteArray err;
};

TEST_F(SignUpdateTool, AGeneratedKeySignsWhatItsPublicHalfAccepts) {
    ASSERT_EQ(run({"--generate-key", "rotation"}), 0);
    EXPECT_EQ(out, "rotation.secret\nrotation.public\n");
    EXPECT_FALSE(QFile::permissions(path("rotation.secret")) & QFile::ReadOther);
    writeAll(path("updater"), updaterBody());

    ASSERT_EQ(run({"--key", "rotation.secret", "updater", "signed"}), 0);
    EXPECT_EQ(out, "signed\n");
    const KeyRing ring = KeyRing::fromText(readAll(path("rotation.public")));
    const SignedUpdateCheck check = ExtractSignedUpdate(path("signed"), path("bare"), ring);
    EXPECT_TRUE(check.ok());
    EXPECT_EQ(check.keyName, QStringLiteral("rotation"));
    EXPECT_EQ(readAll(path("bare")), updaterBody());
}

TEST_F(SignUpdateTool, FailuresAndBadArgumentsHaveTheirExitStatus) {
    ASSERT_EQ(run({"--generate-key", "k"}), 0);
    EXPECT_EQ(run({"--generate-key", "k"}), 1); // never overwrites a key
    EXPECT_FALSE(err.isEmpty());
    EXPECT_EQ(run({"--key", "k.public", "k.secret", "out"}), 1); // a public key cannot sign
    EXPECT_EQ(run({"--key", "k.secret", "missing", "out"}), 1);
    EXPECT_FALSE(QFile::exists(path("out")));
    EXPECT_EQ(run({"--key", "k.secret", "in"}), 2);
    EXPECT_EQ(run({"--sign", "k.secret", "in", "out"}), 2);
    EXPECT_TRUE(out.isEmpty());
    EXPECT_EQ(run({"--help"}), 0);
    EXPECT_TRUE(out.startsWith("usage: sign-update"));
    EXPECT_EQ(run({"--version"}), 0);
    EXPECT_TRUE(out.startsWith("sign-update "));
}

} // namespace
