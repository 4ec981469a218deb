// Stand-in for the dealer's service program: it does what the installation's own service
// program is asked to do, to the extent that the desktop program and its demo need.
//
// Command line: operation code, installation kind, and for some operations a row number.
// Every call appends one line to the log file beside the program (its base name + ".LOG"):
// the time in ISO form, a tab, then the arguments separated by blanks.
//
// Operation "0" (start-up check) succeeds at once. The other operations are logged and succeed;
// their work arrives with the parts of the program that hand them over.
//
// NVSERVICE_DELAY_MS, when set, makes every call take that many milliseconds before it logs
// and ends (to watch the desktop program wait, in tests and in the demo).
#include "partsops.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <QTextStream>
#include <QThread>

namespace {

QString logPath() {
    const QFileInfo self(QCoreApplication::applicationFilePath());
    return self.absolutePath() + u'/' + self.completeBaseName() + QStringLiteral(".LOG");
}

bool appendLog(const QStringList& arguments) {
    QFile log(logPath());
    if (!log.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text))
        return false;
    QTextStream out(&log);
    out << QDateTime::currentDateTime().toString(Qt::ISODateWithMs) << '\t' << arguments.join(u' ')
        << '\n';
    return out.status() == QTextStream::Ok;
}

void delayIfAsked() {
    bool ok = false;
    const int delay = qEnvironmentVariableIntValue("NVSERVICE_DELAY_MS", &ok);
    if (ok && delay > 0)
        QThread::msleep(static_cast<unsigned long>(delay));
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    delayIfAsked();
    if (!appendLog(arguments))
        return 2;
    const QString operation = arguments.value(0);
    return IsPartsOperation(operation) && !RunPartsOperation(operation, InstallationPrgDir()) ? 1
                                                                                              : 0;
}
