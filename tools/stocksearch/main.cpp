// stocksearch PRGDIR TEXT [LINES] [--english]: the part search of the main window from the
// command line. Prints the heading and the part lines exactly as the pane lists them for the
// same number and line count; on failure prints message 1079 on standard error and exits 1.
#include "app/appstate.h"
#include "app/messages.h"
#include "partsfile/partsearch.h"
#include "standardoptions.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QStringList>
#include <algorithm>
#include <cstdio>

namespace {

constexpr const char* Usage = "usage: stocksearch PRGDIR TEXT [LINES] [--english]\n";

constexpr const char* Help =
    "Lists the parts of PRGDIR's STOCK.DBF whose number starts with TEXT, in the order of\n"
    "STOCK.NTX, as the part search of the main window does: a heading, then one line per part.\n"
    "LINES is the number of lines as typed in the window (digits and a point; default 20,\n"
    "halves rounded to even, at most 2000). --english gives the English heading.\n"
    "Exit status: 0 done, 1 the parts file cannot be read, 2 bad arguments or PRGDIR is not a\n"
    "folder.\n";

int badArguments(const QString& why) {
    PrintLine(stderr, QStringLiteral("stocksearch: ") + why);
    std::fputs(Usage, stderr);
    return 2;
}

bool isLineCount(const QString& text) {
    return std::all_of(text.begin(), text.end(), PartSearch::IsLineCountCharacter);
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    QStringList arguments = QCoreApplication::arguments().mid(1);
    const QByteArray help = QByteArray(Usage) + Help;
    if (const std::optional<int> answered =
            AnswerStandardOptions(arguments, "stocksearch", help.constData()))
        return *answered;
    const bool english = arguments.removeAll(QStringLiteral("--english")) > 0;
    if (arguments.size() < 2 || arguments.size() > 3)
        return badArguments(QStringLiteral("a folder and a part number are needed"));
    const QString typedLines = arguments.value(2, QStringLiteral("20"));
    if (!isLineCount(typedLines))
        return badArguments(QStringLiteral("the number of lines takes digits and a point only"));
    if (!QFileInfo(arguments[0]).isDir())
        return badArguments(arguments[0] + QStringLiteral(" is not a folder"));
    App().Settings.Nation = english ? 2000 : 1000;

    const modNTX::StockSearchOutcome outcome =
        PartSearch::Run(arguments[0], arguments[1], typedLines,
                        [](const QString& line) { PrintLine(stdout, line); });
    std::fflush(stdout);
    if (!outcome.ok()) {
        PrintLine(stderr, LoadText(79));
        return 1;
    }
    return 0;
}
