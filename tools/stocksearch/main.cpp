// stocksearch PRGDIR TEXT [LINES] [--english]: the part search of the main window from the
// command line. Prints the heading and the part lines exactly as the search gives them; on
// failure prints message 1079 on standard error and exits with status 1.
#include "app/appstate.h"
#include "app/messages.h"
#include "partsfile/modntx.h"

#include <QCoreApplication>
#include <QStringList>
#include <cstdio>

namespace {

int usage() {
    std::fputs("usage: stocksearch PRGDIR TEXT [LINES] [--english]\n", stderr);
    return 2;
}

void printLine(FILE* stream, const QString& line) {
    const QByteArray bytes = line.toUtf8();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
    std::fputc('\n', stream);
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    QStringList arguments = QCoreApplication::arguments().mid(1);
    const bool english = arguments.removeAll(QStringLiteral("--english")) > 0;
    if (arguments.size() < 2 || arguments.size() > 3)
        return usage();
    qint32 lines = 20;
    if (arguments.size() == 3) {
        bool ok = false;
        lines = arguments[2].toInt(&ok);
        if (!ok)
            return usage();
    }
    App().Settings.Nation = english ? 2000 : 1000;

    const modNTX::StockSearchOutcome outcome = modNTX::SearchStockIn(
        arguments[0], arguments[1], lines, [](const QString& line) { printLine(stdout, line); });
    std::fflush(stdout);
    if (!outcome.ok()) {
        printLine(stderr, LoadText(79));
        return 1;
    }
    return 0;
}
