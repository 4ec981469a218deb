// The desktop program: starts the application core and shows the main window in its frame.
#include "app/appstate.h"
#include "app/mdifrmmain.h"
#include "app/startup.h"
#include "mainwindow/frmmain.h"

#include <QApplication>
#include <QProcess>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Norvale Systems"));
    QApplication::setQuitOnLastWindowClosed(true);

    MDIfrmMain* frame = nullptr;
    StartupHooks hooks;
    hooks.showMainWindow = [&frame] {
        frame = new MDIfrmMain;
        frame->setAttribute(Qt::WA_DeleteOnClose);
        auto* main = new frmMain(frame);
        frame->setCentralWidget(main);
        frame->onQueryUnload = [main] { return main->QueryUnload(); };
        frame->onUnload = [main] { main->Unload(); };
        main->Load();
        frame->show();
        main->Activate();
    };

    StartupEnvironment environment{QCoreApplication::applicationDirPath(), CRegSettings(),
                                   [](const QString& program, const QString& dir) {
                                       return QProcess::startDetached(program, {}, dir);
                                   }};
    const QStringList words = QCoreApplication::arguments().mid(1);
    if (Main(words.join(u' '), hooks, environment) == StartupOutcome::Ended)
        return 0;
    return QApplication::exec();
}
