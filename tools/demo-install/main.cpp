// demo-install DIR [--english] [--register] [--content CONTENT] [--server-port PORT]: builds a
// complete demo installation of the dealer's programs and tables under DIR. With --register,
// the settings of this user point the program at it (and --english makes them choose English);
// --server-port adds the demo update server at 127.0.0.1:PORT to those settings. --content
// writes the demo update server's content for this installation into CONTENT.
#include "app/cregsettings.h"
#include "app/hiddenstrings.h"
#include "app/settings.h"
#include "democontent.h"
#include "demoprograms.h"
#include "demostock.h"
#include "demotables.h"
#include "standardoptions.h"

#include <QCoreApplication>
#include <QDir>
#include <QTextStream>
#include <exception>

namespace {

constexpr const char* Help =
    "usage: demo-install DIR [--english] [--register] [--content CONTENT] [--server-port PORT]\n"
    "Builds a complete demo installation of the dealer's programs and tables under DIR.\n"
    "  --register          point this user's settings at it\n"
    "  --english           with --register: the settings choose English\n"
    "  --content CONTENT   write the demo update server's content for it into CONTENT\n"
    "  --server-port PORT  with --register: the update server at 127.0.0.1:PORT (1 to 32767)\n"
    "Exit status: 0 done, 1 the installation could not be written, 2 bad arguments.\n";

struct Options {
    QString root;
    QString content;
    QString serverPort;
    bool english = false;
    bool doRegister = false;
};

void registerInstallation(const Options& options) {
    const CRegSettings store;
    store.SetValue(RegistryKeyPathText, QStringLiteral("Drive"), options.root);
    store.SetValue(RegistryKeyPathText, QStringLiteral("Nation"),
                   options.english ? QStringLiteral("2000") : QStringLiteral("1000"));
    if (!options.serverPort.isEmpty()) {
        store.SetValue(RegistryKeyPathText, QStringLiteral("IP"), QStringLiteral("127.0.0.1"));
        store.SetValue(RegistryKeyPathText, QStringLiteral("Port"), options.serverPort);
    }
    QTextStream(stdout) << "settings: " << store.location() << '\n';
}

// The value after an option, removed from the arguments with it; empty when absent.
QString takeValue(QStringList& args, const QString& option, bool& bad) {
    const qsizetype at = args.indexOf(option);
    if (at < 0)
        return {};
    if (at + 1 >= args.size()) {
        bad = true;
        return {};
    }
    const QString value = args[at + 1];
    args.remove(at, 2);
    return value;
}

bool parse(QStringList args, Options& options) {
    bool bad = false;
    options.english = args.removeAll(QStringLiteral("--english")) > 0;
    options.doRegister = args.removeAll(QStringLiteral("--register")) > 0;
    options.content = takeValue(args, QStringLiteral("--content"), bad);
    options.serverPort = takeValue(args, QStringLiteral("--server-port"), bad);
    if (!options.serverPort.isEmpty()) {
        bool ok = false;
        const int port = options.serverPort.toInt(&ok);
        bad = bad || !ok || port <= 0 || port > 32767;
    }
    if (bad || args.size() != 1 || args[0].startsWith(u'-'))
        return false;
    options.root = QDir(args[0]).absolutePath();
    return true;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    if (const std::optional<int> answered = AnswerStandardOptions(arguments, "demo-install", Help))
        return *answered;
    Options options;
    if (!parse(arguments, options) || options.root.isEmpty()) {
        QTextStream(stderr) << Help;
        return 2;
    }
    try {
        const QString service = QCoreApplication::applicationDirPath() +
                                QStringLiteral("/../../src/") + HiddenString(0);
        writeDemoPrograms(options.root, service);
        // The tables and the parts file of the installation:
        writeDemoTables(options.root);
        writeDemoStock(options.root);
        if (!options.content.isEmpty()) {
            writeDemoContent(QDir(options.content).absolutePath(), options.root);
            QTextStream(stdout) << "update server content: " << options.content << '\n';
        }
        if (options.doRegister)
            registerInstallation(options);
    } catch (const std::exception& error) {
        QTextStream(stderr) << "demo-install: " << error.what() << '\n';
        return 1;
    }
    QTextStream(stdout) << "demo installation: " << options.root << '\n';
    return 0;
}
