#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

// Anyone on the network path between the dealer and the maker's server can answer the request
// for the program update, so the program starts only an updater that the maker has signed.
//
// A signed updater is:
//     the updater's bytes (the body)
//     64 bytes   Ed25519 signature of the body (libsodium's multi-part crypto_sign, Ed25519ph)
//     8 bytes    the mark "NVSIGN01" (format 01)
//     8 bytes    the signing key's id: the first 8 bytes of its public key
// The protocol is unchanged: the server sends the signed file as UPDATE.EXE.

inline constexpr qint64 UpdateSignatureSize = 64;
inline constexpr qint64 UpdateKeyIdSize = 8;
inline constexpr char UpdateSignatureMark[] = "NVSIGN01";
inline constexpr qint64 UpdateMarkSize = sizeof(UpdateSignatureMark) - 1;
inline constexpr qint64 UpdateTrailerSize = UpdateMarkSize + UpdateKeyIdSize;
inline constexpr qint64 UpdateSignedOverhead = UpdateSignatureSize + UpdateTrailerSize;

// One public key that may sign updaters, with the name its list gives it.
struct UpdateKey {
    QByteArray publicKey; // 32 bytes
    QString name;

    QByteArray keyId() const { return publicKey.left(UpdateKeyIdSize); }
};

// The keys whose signatures are accepted. Several may be listed, so that the maker can move to
// a new key while updaters signed with the old one are still served.
class KeyRing {
public:
    // Reads a key list: one key a line, its 64 hexadecimal digits, then optionally blanks and
    // its name; blank lines and lines starting with '#' are skipped. Throws std::runtime_error
    // on a line that is not a key.
    static KeyRing fromText(const QByteArray& text);

    void add(const UpdateKey& key) { keys_ << key; }
    const UpdateKey* find(const QByteArray& keyId) const;
    const QList<UpdateKey>& keys() const { return keys_; }

private:
    QList<UpdateKey> keys_;
};

// The keys this build of the program accepts, chosen when it was configured.
const KeyRing& CompiledUpdateKeys();

enum class SignedUpdateReason {
    Valid,
    Unreadable,   // the file cannot be opened or read
    ShortFile,    // shorter than a signature and its trailer, with a body of at least one byte
    NoTrailer,    // the mark is missing: not a signed updater
    UnknownKey,   // signed with a key this program does not know
    BadSignature, // the body or the signature has been altered
    CannotWrite,  // verified, but the bare updater could not be written
};

struct SignedUpdateCheck {
    SignedUpdateReason reason = SignedUpdateReason::Unreadable;
    QString keyName; // the key that signed a valid updater

    bool ok() const { return reason == SignedUpdateReason::Valid; }
};

// Checks the signed updater at path, reading it in pieces (no whole-file buffer).
SignedUpdateCheck VerifySignedUpdate(const QString& path, const KeyRing& keys);

// Checks the signed updater at signedPath and writes its body, executable, to updaterPath
// (which may be signedPath itself: it is replaced only once the signature holds). Nothing is
// written unless the updater is valid.
SignedUpdateCheck ExtractSignedUpdate(const QString& signedPath, const QString& updaterPath,
                                      const KeyRing& keys);

// What the version check does with the received UPDATE.EXE: a valid one is replaced by the bare
// updater, ready to start; anything else is deleted, so that nothing unsigned stays behind.
SignedUpdateCheck PrepareReceivedUpdater(const QString& path, const KeyRing& keys);

// The catalogue offset (k of LoadText) of the reason's text in the refusal message.
int SignedUpdateReasonText(SignedUpdateReason reason);

// The refusal for the dealer, in the current language: message 170, a blank line, message 172
// and the reason's text.
QString SignedUpdateRefusalMessage(SignedUpdateReason reason);
// The session report's line about a refused updater (without its time): message 171 and the
// reason.
QString SignedUpdateReportText(SignedUpdateReason reason);

// Signs the file at in with the 64-byte secret key (libsodium's form: seed then public key) and
// writes the signed updater to out. Throws std::runtime_error with the file's name when a file
// cannot be read or written.
void SignUpdateFile(const QString& in, const QString& out, const QByteArray& secretKey);

// A new key pair: the secret key (64 bytes) and its public key (32 bytes).
struct UpdateKeyPair {
    QByteArray secretKey;
    QByteArray publicKey;
};
UpdateKeyPair GenerateUpdateKeyPair();

// Reads a secret key file (128 hexadecimal digits, '#' comment lines skipped); throws
// std::runtime_error when it holds no secret key.
QByteArray ReadSecretKeyFile(const QString& path);

// The texts of the two halves of a key pair as sign-update --generate-key writes them; the
// public one is a key list of one key, the secret one what ReadSecretKeyFile reads.
QByteArray PublicKeyFileText(const QByteArray& publicKey, const QString& name);
QByteArray SecretKeyFileText(const QByteArray& secretKey, const QString& name);
