#include "comms/signedupdate.h"

#include "support/testfiles.h"

#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

// Every byte value, over several of the verifier's reading pieces.
QByteArray updaterBody() {
    QByteArray body(200'003, '\0');
    QRandomGenerator generator(14);
    for (char& c : body)
        c = char(generator.bounded(256));
    return body;
}

class SignedUpdate : public ::testing::Test {
protected:
    QString path(const char* name) const { return dir.filePath(QString::fromLatin1(name)); }

    // The body signed with the key, as the server would send it.
    QByteArray signedWith(const UpdateKeyPair& key) {
        WriteBytes(path("body"), body);
        SignUpdateFile(path("body"), path("signed"), key.secretKey);
        return ReadBytes(path("signed"));
    }

    QTemporaryDir dir;
    QByteArray body = updaterBody();
    UpdateKeyPair maker = GenerateUpdateKeyPair();
    KeyRing ring = [this] {
        KeyRing keys;
        keys.add({maker.publicKey, QStringLiteral("key 1")});
        return keys;
    }();
};

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
        {"signature", flipped(signatureAt + 10), SignedUpdateReason::BadSignature},
        {"mark", flipped(markAt + 2), SignedUpdateReason::NoTrailer},
        {"key id", flipped(keyIdAt), SignedUpdateReason::UnknownKey},
        {"truncated", good.left(good.size() - 1), SignedUpdateReason::NoTrailer},
        {"truncated to a stub", good.left(40), SignedUpdateReason::ShortFile},
        {"no body", good.right(UpdateSignedOverhead), SignedUpdateReason::ShortFile},
        {"empty", QByteArray(), SignedUpdateReason::ShortFile},
        {"unsigned", body, SignedUpdateReason::NoTrailer},
        {"stranger's key", signedWith(stranger), SignedUpdateReason::UnknownKey},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        WriteBytes(path("UPDATE.EXE"), c.data);
        EXPECT_EQ(PrepareReceivedUpdater(path("UPDATE.EXE"), ring).reason, c.reason);
        EXPECT_FALSE(QFile::exists(path("UPDATE.EXE")));
    }
}

TEST_F(SignedUpdate, NothingIsWrittenUnlessTheSignatureHolds) {
    QByteArray altered = signedWith(maker);
    altered[5] = char(altered[5] ^ 0x80);
    WriteBytes(path("received"), altered);
    EXPECT_EQ(ExtractSignedUpdate(path("received"), path("updater"), ring).reason,
              SignedUpdateReason::BadSignature);
    EXPECT_FALSE(QFile::exists(path("updater")));
    EXPECT_EQ(ReadBytes(path("received")), altered); // only the version check deletes it

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

// The demo key is accepted too: the program update tests start an updater signed with it.
TEST(CompiledUpdateKeys, TheBuildAcceptsTheMakersKeys) {
    const KeyRing maker = KeyRing::fromText(
        ReadBytes(QStringLiteral(MERCANTEL_SOURCE_DIR "/resources/keys/maker.public")));
    ASSERT_FALSE(maker.keys().isEmpty());
    for (const UpdateKey& key : maker.keys())
        EXPECT_NE(CompiledUpdateKeys().find(key.keyId()), nullptr);
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

TEST_F(SignUpdateTool, AGeneratedKeySignsWhatItsPublicHalfAcceptsAndFailuresHaveTheirStatus) {
    ASSERT_EQ(run({"--generate-key", "rotation"}), 0);
    EXPECT_EQ(out, "rotation.secret\nrotation.public\n");
    EXPECT_FALSE(QFile::permissions(path("rotation.secret")) & QFile::ReadOther);
    WriteBytes(path("updater"), updaterBody());
    ASSERT_EQ(run({"--key", "rotation.secret", "updater", "signed"}), 0);
    EXPECT_EQ(out, "signed\n");
    const KeyRing ring = KeyRing::fromText(ReadBytes(path("rotation.public")));
    const SignedUpdateCheck check = ExtractSignedUpdate(path("signed"), path("bare"), ring);
    EXPECT_TRUE(check.ok());
    EXPECT_EQ(check.keyName, QStringLiteral("rotation"));
    EXPECT_EQ(ReadBytes(path("bare")), updaterBody());

    EXPECT_EQ(run({"--generate-key", "rotation"}), 1); // never overwrites a key
    EXPECT_FALSE(err.isEmpty());
    EXPECT_EQ(run({"--key", "rotation.public", "updater", "out"}), 1); // cannot sign
    EXPECT_EQ(run({"--key", "rotation.secret", "missing", "out"}), 1);
    EXPECT_FALSE(QFile::exists(path("out")));
    EXPECT_EQ(run({"--key", "rotation.secret", "in"}), 2);
    EXPECT_EQ(run({"--sign", "rotation.secret", "in", "out"}), 2);
    EXPECT_TRUE(out.isEmpty());
}

} // namespace
