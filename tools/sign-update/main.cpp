// sign-update --key SECRET IN OUT: signs the updater IN with the secret key SECRET into OUT, the
// form in which the program accepts a program update. sign-update --generate-key NAME: makes a
// new key pair, NAME.secret and NAME.public.
#include "comms/signedupdate.h"
#include "standardoptions.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <cstdio>
#include <exception>

namespace {

constexpr const char* Help =
    "usage: sign-update --key SECRET IN OUT\n"
    "       sign-update --generate-key NAME\n"
    "Signs a program updater so that the program accepts it as a program update.\n"
    "  --key SECRET IN OUT  sign the file IN with the secret key file SECRET; the signed\n"
    "                       updater (IN, its signature and a trailer) is written to OUT\n"
    "  --generate-key NAME  write a new key pair: NAME.secret (keep it private) and\n"
    "                       NAME.public (a key list the program can be built with)\n"
    "Exit status: 0 done, 1 a file could not be read or written, 2 bad arguments.\n";

int failed(const QString& message, int status) {
    std::fprintf(stderr, "sign-update: %s\n", qPrintable(message));
    return status;
}

void writeNew(const QString& path, const QByteArray& text, QFile::Permissions permissions) {
    QFile file(path);
    if (!file.open(QIODevice::NewOnly) || file.write(text) != text.size() ||
        !file.setPermissions(permissions))
        throw std::runtime_error("cannot write " + path.toStdString() + " (" +
                                 file.errorString().toStdString() + ")");
}

int generateKey(const QString& name) {
    const QString secretPath = name + QStringLiteral(".secret");
    const QString publicPath = name + QStringLiteral(".public");
    if (QFileInfo::exists(secretPath) || QFileInfo::exists(publicPath))
        return failed(secretPath + QStringLiteral(" or ") + publicPath +
                          QStringLiteral(" exists already"),
                      1);
    const UpdateKeyPair pair = GenerateUpdateKeyPair();
    const QString keyName = QFileInfo(name).fileName();
    writeNew(secretPath, SecretKeyFileText(pair.secretKey, keyName),
             QFile::ReadOwner | QFile::WriteOwner);
    writeNew(publicPath, PublicKeyFileText(pair.publicKey, keyName),
             QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
    std::printf("%s\n%s\n", qPrintable(secretPath), qPrintable(publicPath));
    return 0;
}

int sign(const QString& secretPath, const QString& in, const QString& out) {
    SignUpdateFile(in, out, ReadSecretKeyFile(secretPath));
    std::printf("%s\n", qPrintable(out));
    return 0;
}

int run(const QStringList& args) {
    if (args.size() == 2 && args[0] == QStringLiteral("--generate-key") && !args[1].isEmpty())
        return generateKey(args[1]);
    if (args.size() == 4 && args[0] == QStringLiteral("--key"))
        return sign(args[1], args[2], args[3]);
    return failed(QStringLiteral("expected --key SECRET IN OUT or --generate-key NAME (--help)"),
                  2);
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const QStringList arguments = app.arguments().mid(1);
    if (const std::optional<int> answered = AnswerStandardOptions(arguments, "sign-update", Help))
        return *answered;
    try {
        return run(arguments);
    } catch (const std::exception& e) {
        return failed(QString::fromStdString(e.what()), 1);
    }
}
