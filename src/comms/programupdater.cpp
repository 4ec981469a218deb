#include "comms/programupdater.h"

#include <QFileInfo>
#include <QProcess>
#include <cstdio>
#include <cstdlib>

bool DetachedUpdater::start(const QString& updaterPath) {
    QProcess process;
    process.setProgram(updaterPath);
    process.setWorkingDirectory(QFileInfo(updaterPath).absolutePath());
    return process.startDetached();
}

void DetachedUpdater::endProgram() {
    std::fflush(nullptr);
    std::_Exit(0);
}
