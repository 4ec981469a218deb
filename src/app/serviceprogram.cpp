#include "app/serviceprogram.h"

#include "app/appstate.h"
#include "app/hiddenstrings.h"
#include "app/installpath.h"
#include "app/prompts.h"

#include <QEventLoop>
#include <QFileInfo>
#include <QPointer>
#include <QProcess>
#include <QStringList>
#include <exception>

#ifdef Q_OS_WIN
#include <windows.h>
#endif

namespace {

qint64 lastTaskId = 0;
int runningJobs = 0;
QPointer<QProcess> lastRun;

// A start that failed, with the run-time error number the system would have given.
struct StartFailure {
    int number;
    QString description;
};

// The operation codes of the service program: "0" and "2" to "9".
bool startsProgram(const QString& op) {
    return op.size() == 1 && QStringLiteral("023456789").contains(op[0]);
}

QStringList commandArguments(const QString& op, qint16 flag) {
    QStringList arguments = {op, QString::number(App().Settings.Instal)};
    if (op == u"5" || op == u"9")
        arguments << QString::number(flag);
    return arguments;
}

StartFailure failureOf(const QString& program, const QProcess& process) {
    const QFileInfo info(program);
    if (!info.exists())
        return {53, QStringLiteral("File not found")};
    if (!info.isExecutable() || info.isDir())
        return {70, QStringLiteral("Permission denied")};
    return {5, process.errorString()};
}

// Code "0" runs without a window; the others get a window of their own, as the dealer expects
// to see the unpacking and renumbering jobs.
void setWindowStyle([[maybe_unused]] QProcess& process, [[maybe_unused]] const QString& op) {
#ifdef Q_OS_WIN
    const bool hidden = op == u"0";
    process.setCreateProcessArgumentsModifier(
        [hidden](QProcess::CreateProcessArguments* arguments) {
            arguments->flags |= hidden ? CREATE_NO_WINDOW : CREATE_NEW_CONSOLE;
        });
#endif
}

// Blocks in the event loop until the process has ended.
void waitUntilEnded(QProcess& process) {
    if (process.state() == QProcess::NotRunning)
        return;
    QEventLoop loop;
    QObject::connect(&process, &QProcess::finished, &loop, &QEventLoop::quit);
    QObject::connect(&process, &QProcess::stateChanged, &loop, [&loop](QProcess::ProcessState s) {
        if (s == QProcess::NotRunning)
            loop.quit();
    });
    QObject::connect(&process, &QObject::destroyed, &loop, &QEventLoop::quit);
    loop.exec();
}

qint64 run(const QString& op, qint16 flag) {
    const QString program = ResolveInstallPath(App().DataPath + HiddenString(0));
    QProcess process;
    process.setProgram(program);
    process.setArguments(commandArguments(op, flag));
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.setStandardInputFile(QProcess::nullDevice());
    setWindowStyle(process, op);
    process.start();
    if (!process.waitForStarted(-1))
        throw failureOf(program, process);
    // A run started by a handler during the wait replaces the last task id, not this result.
    const qint64 taskId = process.processId();
    lastTaskId = taskId;
    lastRun = &process;
    ++runningJobs;
    waitUntilEnded(process);
    --runningJobs;
    return taskId;
}

} // namespace

qint64 RunServiceProgram(const QString& op, qint16 flag) {
    try {
        if (!startsProgram(op)) {
            if (lastRun)
                waitUntilEnded(*lastRun);
            return lastTaskId;
        }
        return run(op, flag);
    } catch (const StartFailure& failure) {
        MsgBox(QString::number(failure.number) + u' ' + failure.description);
    } catch (const std::exception& error) {
        MsgBox(QStringLiteral("5 ") + QString::fromLocal8Bit(error.what()));
    }
    return -1;
}

qint64 LastServiceTaskId() {
    return lastTaskId;
}

bool ServiceProgramRunning() {
    return runningJobs > 0;
}

void ResetServiceProgramState() {
    lastTaskId = 0;
    lastRun = nullptr;
}
