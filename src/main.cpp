// The desktop program: the application core starts, then the main window lives in its frame.
#include "app/icons.h"
#include "app/mdifrmmain.h"
#include "app/startup.h"
#include "mainwindow/programwiring.h"

#include <QApplication>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Norvale Systems"));
    QApplication::setWindowIcon(ProgramIcon());
    QGuiApplication::setDesktopFileName(QStringLiteral("mercantel"));

    MDIfrmMain* frame = nullptr;
    if (StartProgram(QCoreApplication::arguments().mid(1), SystemEnvironment(), frame) ==
        StartupOutcome::Ended)
        return 0;
    return QApplication::exec();
}
