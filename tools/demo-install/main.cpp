// demo-install DIR [--english] [--register]: builds a complete demo installation of the
// dealer's programs and tables under DIR. With --register, the settings of this user point the
// program at it (and --english makes them choose English).
#include "app/cregsettings.h"
#include "app/hiddenstrings.h"
#include "app/settings.h"
#include "demoprograms.h"
#include "demostock.h"
#include "demotables.h"

#include <QCoreApplication>
#include <QDir>
#include <QTextStream>
#include <exception>

namespace {

void registerInstallation(const QString& root, bool english) {
    const CRegSettings store;
    store.SetValue(RegistryKeyPathText, QStringLiteral("Drive"), root);
    store.SetValue(RegistryKeyPathText, QStringLiteral("Nation"),
                   english ? QStringLiteral("2000") : QStringLiteral("1000"));
    QTextStream(stdout) << "settings: " << store.location() << '\n';
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    QStringList args = QCoreApplication::arguments().mid(1);
    const bool english = args.removeAll(QStringLiteral("--english")) > 0;
    const bool doRegister = args.removeAll(QStringLiteral("--register")) > 0;
    if (args.size() != 1) {
        QTextStream(stderr) << "usage: demo-install DIR [--english] [--register]\n";
        return 2;
    }
    const QString root = QDir(args[0]).absolutePath();
    try {
        const QString service = QCoreApplication::applicationDirPath() +
                                QStringLiteral("/../../src/") + HiddenString(0);
        writeDemoPrograms(root, service);
        // The tables and the parts file of the installation:
        writeDemoTables(root);
        writeDemoStock(root);
        if (doRegister)
            registerInstallation(root, english);
    } catch (const std::exception& error) {
        QTextStream(stderr) << "demo-install: " << error.what() << '\n';
        return 1;
    }
    QTextStream(stdout) << "demo installation: " << root << '\n';
    return 0;
}
