#include "comms/signedupdate.h"

#include "support/testfiles.h"

#include <QFile>
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
    KeyRing ring = KeyRing::fromText(maker.publicKey.toHex() + " key 1\n");
};

TEST_F(SignedUpdate, AnythingButAValidUpdaterIsRefusedAndDeleted) {
    const QByteArray good = signedWith(maker);
    const qsizetype markAt = body.size() + UpdateSignatureSize;
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
        {"body", flipped(body.size() / 2), SignedUpdateReason::BadSignature},
        {"mark", flipped(markAt + 2), SignedUpdateReason::NoTrailer},
        {"key id", flipped(markAt + UpdateMarkSize), SignedUpdateReason::UnknownKey},
        {"truncated", good.left(good.size() - 1), SignedUpdateReason::NoTrailer},
        {"no body", good.right(UpdateSignedOverhead), SignedUpdateReason::ShortFile},
        {"empty", QByteArray(), SignedUpdateReason::ShortFile},
        {"unsigned", body, SignedUpdateReason::NoTrailer},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        WriteBytes(path("UPDATE.EXE"), c.data);
        EXPECT_EQ(PrepareReceivedUpdater(path("UPDATE.EXE"), ring).reason, c.reason);
        EXPECT_FALSE(QFile::exists(path("UPDATE.EXE")));
    }
    EXPECT_EQ(ExtractSignedUpdate(path("signed"), path("no/such/folder/updater"), ring).reason,
              SignedUpdateReason::CannotWrite);
}

// The maker lists a new key beside the old one: updaters signed with either are accepted.
TEST_F(SignedUpdate, EveryListedKeyIsAccepted) {
    const UpdateKeyPair next = GenerateUpdateKeyPair();
    const QByteArray list = "# the maker's keys\n\n" + maker.publicKey.toHex() + " norvale-2026\n" +
                            "  " + next.publicKey.toHex() + "   norvale-2027  \n";
    ring = KeyRing::fromText(list);
    ASSERT_EQ(ring.keys().size(), 2);
    signedWith(next);
    EXPECT_EQ(VerifySignedUpdate(path("signed"), ring).keyName, QStringLiteral("norvale-2027"));
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

// sign-update run as the program it is, on files of the test's folder.
TEST_F(SignedUpdate, TheSigningToolsKeySignsWhatItsPublicHalfAcceptsAndFailuresHaveTheirStatus) {
    const auto signUpdate = [this](const QStringList& arguments) {
        QStringList inDir;
        for (const QString& argument : arguments)
            inDir << (argument.startsWith(u"--") ? argument : dir.filePath(argument));
        return RunProgram(QStringLiteral(SIGN_UPDATE_PATH), inDir);
    };
    ProgramRun run = signUpdate({"--generate-key", "rotation"});
    ASSERT_EQ(run.status, 0);
    EXPECT_EQ(run.out, (path("rotation.secret") + '\n' + path("rotation.public") + '\n').toUtf8());
    EXPECT_FALSE(QFile::permissions(path("rotation.secret")) & QFile::ReadOther);
    WriteBytes(path("updater"), body);
    run = signUpdate({"--key", "rotation.secret", "updater", "signed"});
    ASSERT_EQ(run.status, 0);
    EXPECT_EQ(run.out, (path("signed") + '\n').toUtf8());
    ring = KeyRing::fromText(ReadBytes(path("rotation.public")));
    const SignedUpdateCheck check = ExtractSignedUpdate(path("signed"), path("bare"), ring);
    EXPECT_TRUE(check.ok());
    EXPECT_EQ(check.keyName, QStringLiteral("rotation"));
    EXPECT_EQ(ReadBytes(path("bare")), body);

    EXPECT_EQ(signUpdate({"--generate-key", "rotation"}).status, 1); // never overwrites a key
    EXPECT_EQ(signUpdate({"--key", "rotation.public", "updater", "out"}).status, 1); // cannot sign
    EXPECT_EQ(signUpdate({"--key", "rotation.secret", "missing", "out"}).status, 1);
    EXPECT_FALSE(QFile::exists(path("out")));
    EXPECT_EQ(signUpdate({"--key", "rotation.secret", "in"}).status, 2);
    EXPECT_EQ(signUpdate({"--sign", "rotation.secret", "in", "out"}).status, 2);
}

} // namespace
