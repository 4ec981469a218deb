// The desktop program: the application core starts, then the main window lives in its frame.
#include "app/mdifrmmain.h"
#include "app/startup.h"
#include "mainwindow/programwiring.h"
#include "partsfile/modnvconvert.h"

#include <QApplication>
#include <QProcess>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Norvale Systems"));

    MDIfrmMain* frame = nullptr;
    StartupHooks hooks = ProgramStartupHooks(frame);
    hooks.convert = [](bool forced) { return modNVConvert::Convert(forced); };
    const StartupEnvironment environment{QCoreApplication::applicationDirPath(), CRegSettings(),
                                         [](const QString& program, const QString& dir) {
                                             return QProcess::startDetached(program, {}, dir);
                                         }};
    const QStringList words = QCoreApplication::arguments().mid(1);
    if (Main(words.join(u' '), hooks, environment) == StartupOutcome::Ended)
        return 0;
    return QApplication::exec();
}
