// The demo updater: what the demo update server sends, signed with the demo key, when the
// program accepts the offer of a newer version. It changes nothing; it only appends a line to
// UPDATE.LOG beside itself, so the dealer (and the tests) can see that it was started.
#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <cstdio>

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const QString logPath = QDir(QCoreApplication::applicationDirPath()).filePath("UPDATE.LOG");
    QFile log(logPath);
    if (!log.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text)) {
        std::fprintf(stderr, "demo updater: cannot write %s\n", qPrintable(logPath));
        return 1;
    }
    const QString line = QDateTime::currentDateTime().toString(Qt::ISODate) +
                         QStringLiteral(" demo updater started; nothing to install\n");
    return log.write(line.toUtf8()) > 0 ? 0 : 1;
}
