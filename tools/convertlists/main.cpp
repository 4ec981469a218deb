// convertlists DRIVE [--force] [--english]: brings the price-list table of an installation to its
// current form without starting the desktop program.
#include "convertlistsrun.h"

#include <QCoreApplication>

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    return RunConvertLists(QCoreApplication::arguments().mid(1));
}
