#include "comms/signedupdate.h"

#include "app/messages.h"

#include <QFile>
#include <QSaveFile>
#include <algorithm>
#include <cctype>
#include <sodium.h>
#include <stdexcept>

namespace {

// The key lists chosen when the program was configured (a raw string literal).
constexpr char CompiledKeyList[] =
#include "comms/updatekeys.inc"
    ;

constexpr qint64 ChunkSize = 64 * 1024;

void requireSodium() {
    static const bool ready = sodium_init() >= 0;
    if (!ready)
        throw std::runtime_error("libsodium cannot start");
}

const auto* bytes(const QByteArray& data) {
    return reinterpret_cast<const unsigned char*>(data.constData());
}

// The hexadecimal digits of a key line, decoded; empty when they are not exactly size bytes.
QByteArray decodeHex(const QByteArray& digits, qsizetype size) {
    if (digits.size() != 2 * size)
        return {};
    for (const char c : digits)
        if (!std::isxdigit(static_cast<unsigned char>(c)))
            return {};
    return QByteArray::fromHex(digits);
}

// The lines of a key file that hold something: blanks trimmed, comments and empty lines left out.
QList<QByteArray> keyLines(const QByteArray& text) {
    QList<QByteArray> lines;
    for (const QByteArray& raw : text.split('\n')) {
        const QByteArray line = raw.trimmed();
        if (!line.isEmpty() && !line.startsWith('#'))
            lines << line;
    }
    return lines;
}

struct SignedParts {
    qint64 bodySize = 0;
    QByteArray signature;
    QByteArray mark;
    QByteArray keyId;
};

// Reads the signature and trailer at the end of the file.
SignedUpdateReason readParts(QFile& file, SignedParts& parts) {
    const qint64 size = file.size();
    if (size <= UpdateSignedOverhead)
        return SignedUpdateReason::ShortFile;
    parts.bodySize = size - UpdateSignedOverhead;
    if (!file.seek(parts.bodySize))
        return SignedUpdateReason::Unreadable;
    const QByteArray tail = file.read(UpdateSignedOverhead);
    if (tail.size() != UpdateSignedOverhead)
        return SignedUpdateReason::Unreadable;
    parts.signature = tail.left(UpdateSignatureSize);
    parts.mark = tail.mid(UpdateSignatureSize, UpdateMarkSize);
    parts.keyId = tail.right(UpdateKeyIdSize);
    return parts.mark == UpdateSignatureMark ? SignedUpdateReason::Valid
                                             : SignedUpdateReason::NoTrailer;
}

// Feeds the body to the signature state, copying it to sink when there is one.
SignedUpdateReason streamBody(QFile& file, qint64 bodySize, crypto_sign_state& state,
                              QIODevice* sink) {
    if (!file.seek(0))
        return SignedUpdateReason::Unreadable;
    for (qint64 left = bodySize; left > 0;) {
        const QByteArray chunk = file.read(std::min(ChunkSize, left));
        if (chunk.isEmpty())
            return SignedUpdateReason::Unreadable;
        crypto_sign_update(&state, bytes(chunk), static_cast<unsigned long long>(chunk.size()));
        if (sink && sink->write(chunk) != chunk.size())
            return SignedUpdateReason::CannotWrite;
        left -= chunk.size();
    }
    return SignedUpdateReason::Valid;
}

SignedUpdateCheck check(QFile& file, const KeyRing& keys, QIODevice* sink) {
    requireSodium();
    SignedParts parts;
    if (const SignedUpdateReason r = readParts(file, parts); r != SignedUpdateReason::Valid)
        return {r, {}};
    const UpdateKey* key = keys.find(parts.keyId);
    if (!key)
        return {SignedUpdateReason::UnknownKey, {}};
    crypto_sign_state state;
    crypto_sign_init(&state);
    if (const SignedUpdateReason r = streamBody(file, parts.bodySize, state, sink);
        r != SignedUpdateReason::Valid)
        return {r, {}};
    if (crypto_sign_final_verify(&state, bytes(parts.signature), bytes(key->publicKey)) != 0)
        return {SignedUpdateReason::BadSignature, {}};
    return {SignedUpdateReason::Valid, key->name};
}

void makeExecutable(const QString& path) {
    QFile::setPermissions(path, QFile::permissions(path) | QFile::ExeOwner | QFile::ExeUser |
                                    QFile::ExeGroup | QFile::ExeOther);
}

void writeOrThrow(QIODevice& out, const QByteArray& data, const QString& name) {
    if (out.write(data) != data.size())
        throw std::runtime_error("cannot write " + name.toStdString());
}

} // namespace

KeyRing KeyRing::fromText(const QByteArray& text) {
    KeyRing ring;
    for (const QByteArray& line : keyLines(text)) {
        const qsizetype blank = line.indexOf(' ');
        const QByteArray key = decodeHex(line.left(blank), crypto_sign_PUBLICKEYBYTES);
        if (key.isEmpty())
            throw std::runtime_error("not a public key: " + line.toStdString());
        const QString name = blank < 0 ? QString() : QString::fromUtf8(line.mid(blank).trimmed());
        ring.add({key, name});
    }
    return ring;
}

const UpdateKey* KeyRing::find(const QByteArray& keyId) const {
    for (const UpdateKey& key : keys_)
        if (key.keyId() == keyId)
            return &key;
    return nullptr;
}

const KeyRing& CompiledUpdateKeys() {
    static const KeyRing ring = KeyRing::fromText(QByteArray(CompiledKeyList));
    return ring;
}

SignedUpdateCheck VerifySignedUpdate(const QString& path, const KeyRing& keys) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {SignedUpdateReason::Unreadable, {}};
    return check(file, keys, nullptr);
}

SignedUpdateCheck ExtractSignedUpdate(const QString& signedPath, const QString& updaterPath,
                                      const KeyRing& keys) {
    QFile file(signedPath);
    if (!file.open(QIODevice::ReadOnly))
        return {SignedUpdateReason::Unreadable, {}};
    QSaveFile updater(updaterPath);
    if (!updater.open(QIODevice::WriteOnly))
        return {SignedUpdateReason::CannotWrite, {}};
    SignedUpdateCheck result = check(file, keys, &updater);
    file.close(); // the updater may replace the signed file itself
    if (!result.ok()) {
        updater.cancelWriting();
        return result;
    }
    if (!updater.commit())
        return {SignedUpdateReason::CannotWrite, {}};
    makeExecutable(updaterPath);
    return result;
}

SignedUpdateCheck PrepareReceivedUpdater(const QString& path, const KeyRing& keys) {
    const SignedUpdateCheck result = ExtractSignedUpdate(path, path, keys);
    if (!result.ok())
        QFile::remove(path);
    return result;
}

int SignedUpdateReasonText(SignedUpdateReason reason) {
    switch (reason) {
    case SignedUpdateReason::Valid:
        break;
    case SignedUpdateReason::Unreadable:
        return 173;
    case SignedUpdateReason::ShortFile:
        return 174;
    case SignedUpdateReason::NoTrailer:
        return 175;
    case SignedUpdateReason::UnknownKey:
        return 176;
    case SignedUpdateReason::BadSignature:
        return 177;
    case SignedUpdateReason::CannotWrite:
        return 178;
    }
    throw std::logic_error("a valid updater has no refusal");
}

QString SignedUpdateRefusalMessage(SignedUpdateReason reason) {
    return LoadText(170) + QStringLiteral("\r\n\r\n") + LoadText(172) +
           LoadText(SignedUpdateReasonText(reason));
}

QString SignedUpdateReportText(SignedUpdateReason reason) {
    return LoadText(171) + LoadText(SignedUpdateReasonText(reason));
}

void SignUpdateFile(const QString& in, const QString& out, const QByteArray& secretKey) {
    requireSodium();
    if (secretKey.size() != crypto_sign_SECRETKEYBYTES)
        throw std::runtime_error("not a secret key");
    QFile body(in);
    if (!body.open(QIODevice::ReadOnly))
        throw std::runtime_error("cannot read " + in.toStdString());
    QSaveFile signedFile(out);
    if (!signedFile.open(QIODevice::WriteOnly))
        throw std::runtime_error("cannot write " + out.toStdString());
    crypto_sign_state state;
    crypto_sign_init(&state);
    for (QByteArray chunk; !(chunk = body.read(ChunkSize)).isEmpty();) {
        crypto_sign_update(&state, bytes(chunk), static_cast<unsigned long long>(chunk.size()));
        writeOrThrow(signedFile, chunk, out);
    }
    if (body.error() != QFile::NoError)
        throw std::runtime_error("cannot read " + in.toStdString());
    QByteArray signature(UpdateSignatureSize, '\0');
    crypto_sign_final_create(&state, reinterpret_cast<unsigned char*>(signature.data()), nullptr,
                             bytes(secretKey));
    const QByteArray publicKey = secretKey.right(crypto_sign_PUBLICKEYBYTES);
    writeOrThrow(signedFile, signature + UpdateSignatureMark + publicKey.left(UpdateKeyIdSize),
                 out);
    if (!signedFile.commit())
        throw std::runtime_error("cannot write " + out.toStdString());
}

UpdateKeyPair GenerateUpdateKeyPair() {
    requireSodium();
    UpdateKeyPair pair{QByteArray(crypto_sign_SECRETKEYBYTES, '\0'),
                       QByteArray(crypto_sign_PUBLICKEYBYTES, '\0')};
    crypto_sign_keypair(reinterpret_cast<unsigned char*>(pair.publicKey.data()),
                        reinterpret_cast<unsigned char*>(pair.secretKey.data()));
    return pair;
}

QByteArray ReadSecretKeyFile(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("cannot read " + path.toStdString());
    const QList<QByteArray> lines = keyLines(file.readAll());
    const QByteArray key =
        lines.size() == 1 ? decodeHex(lines.first(), crypto_sign_SECRETKEYBYTES) : QByteArray();
    if (key.isEmpty())
        throw std::runtime_error(path.toStdString() + " holds no secret key");
    return key;
}

QByteArray PublicKeyFileText(const QByteArray& publicKey, const QString& name) {
    return "# Mercantel update key: the public half, for the key lists the program is built "
           "with\n" +
           publicKey.toHex() + ' ' + name.toUtf8() + '\n';
}

QByteArray SecretKeyFileText(const QByteArray& secretKey, const QString& name) {
    return "# Mercantel update key " + name.toUtf8() +
           ": the secret half, signs updaters (sign-update --key)\n" + secretKey.toHex() + '\n';
}
