// Stand-in for the dealer's service program: it does what the installation's own service
// program is asked to do, to the extent that the desktop program and its demo need.
//
// Command line: operation code, installation kind, and for the operations "5" and "9" the
// position of the list or catalogue. The program lives in the data directory of the
// installation it serves.
//
// Operations: "0" (start-up check) and "4" succeed at once. "2" and "3" renumber and delete
// parts (partsops.h). "5" and "9" install a
// downloaded price list or catalogue, "8" the index archive, "6" and "7" the Partdex and
// Ledgermaker packages (what the archives hold: serviceoperations.h).
//
// Every call appends one line to the log file beside the program (its base name + ".LOG"): the
// time in ISO form, a tab, then the arguments separated by blanks. A job that fails adds a
// second line, the time, a tab, "! " and the reason, and the program ends with status 1.
// Status 2: an operation that needs a position was given none.
//
// NVSERVICE_DELAY_MS, when set, makes every call take that many milliseconds before it logs
// and works (to watch the desktop program wait, in tests and in the demo).
#include "arjarchive.h"
#include "partsops.h"
#include "serviceoperations.h"

#include "dbase/dberror.h"

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

bool appendLog(const QString& text) {
    QFile log(logPath());
    if (!log.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text))
        return false;
    QTextStream out(&log);
    out << QDateTime::currentDateTime().toString(Qt::ISODateWithMs) << '\t' << text << '\n';
    return out.status() == QTextStream::Ok;
}

void delayIfAsked() {
    bool ok = false;
    const int delay = qEnvironmentVariableIntValue("NVSERVICE_DELAY_MS", &ok);
    if (ok && delay > 0)
        QThread::msleep(static_cast<unsigned long>(delay));
}

// The position argument of "5" and "9".
int position(const QStringList& arguments) {
    bool ok = false;
    const int value = arguments.value(2).toInt(&ok);
    if (!ok)
        throw std::invalid_argument("no position given");
    return value;
}

void runOperation(const QStringList& arguments) {
    const QString op = arguments.value(0);
    const ServiceInstallation install =
        ServiceInstallation::around(QCoreApplication::applicationDirPath());
    if (op == u"5")
        ServiceOperations::installList(install, position(arguments));
    else if (op == u"9")
        ServiceOperations::installCatalogue(install, position(arguments));
    else if (op == u"8")
        ServiceOperations::installIndex(install);
    else if (op == u"6")
        ServiceOperations::installPartdex(install);
    else if (op == u"7")
        ServiceOperations::installLedgermaker(install);
    else if (IsPartsOperation(op) && !RunPartsOperation(op, install.prgPath))
        throw ServiceFailure("the parts file could not be written");
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    delayIfAsked();
    if (!appendLog(arguments.join(u' ')))
        return 2;
    try {
        runOperation(arguments);
        return 0;
    } catch (const std::invalid_argument& error) {
        appendLog(QStringLiteral("! ") + QString::fromLocal8Bit(error.what()));
        return 2;
    } catch (const DbError& error) {
        appendLog(
            QStringLiteral("! table error %1: %2").arg(error.number()).arg(error.description()));
    } catch (const std::exception& error) {
        appendLog(QStringLiteral("! ") + QString::fromLocal8Bit(error.what()));
    }
    return 1;
}
