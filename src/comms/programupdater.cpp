#include "comms/programupdater.h"

#include <QFileInfo>
#include <QProcess>
#include <cstdio>
#include <cstdlib>

#ifdef Q_OS_WIN
#include <windows.h>
#endif

bool DetachedUpdater::start(const QString& updaterPath) {
    QProcess process;
    process.setProgram(updaterPath);
    process.setWorkingDirectory(QFileInfo(updaterPath).absolutePath());
#ifdef Q_OS_WIN
    // Minimised with the focus, as the updater has always started.
    process.setCreateProcessArgumentsModifier([](QProcess::CreateProcessArguments* arguments) {
        arguments->startupInfo->dwFlags |= STARTF_USESHOWWINDOW;
        arguments->startupInfo->wShowWindow = SW_SHOWMINIMIZED;
    });
#endif
    return process.startDetached();
}

void DetachedUpdater::endProgram() {
    // At once: no window is asked to close or unload.
    std::fflush(nullptr);
    std::_Exit(0);
}
