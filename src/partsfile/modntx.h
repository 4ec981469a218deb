#pragma once

#include <QString>
#include <functional>

class QIODevice;

// Reading of the dealer's parts file STOCK.DBF through its Clipper index STOCK.NTX: the part
// search of the main window, of the part-number dialog and of the command-line search. Both
// files are opened read-only for each search and closed before it returns; nothing is cached,
// since the parts-catalogue program on other workstations may rewrite them at any time.
namespace modNTX {

// Receives the lines of a search in order: the heading, then one line per part.
using StockLineSink = std::function<void(const QString& line)>;

// What one search read.
struct StockSearchCounters {
    qint64 pagesRead = 0;
    qint64 recordsRead = 0;
};

// Why a search ended early. Whatever the reason, the user is shown message 1079.
enum class StockFailure {
    None,
    OpenIndex,         // STOCK.NTX missing or held by another workstation
    OpenTable,         // the same for STOCK.DBF
    ShortHeader,       // a file shorter than the header the search reads
    ReadError,         // the system refused a read
    PageOutsideFile,   // a page offset at or past the end of the index
    PageRevisited,     // a page reached twice (a child referring back to an ancestor)
    TooDeep,           // more levels than any sound index has
    BadKeyCount,       // a key count outside 0 to 38
    ItemOutsidePage,   // an item offset designating an item outside 0 to 41
    ItemPastEnd,       // a designated item (or the offset table) past the end of the index
    RecordOutsideTable // a record number whose record is not in STOCK.DBF
};

struct StockSearchOutcome {
    StockFailure failure = StockFailure::None;
    StockSearchCounters counters;
    bool ok() const { return failure == StockFailure::None; }
};

// A short English account of a failure, for diagnostics (the user sees message 1079).
QString FailureText(StockFailure failure);

// The heading line in the current language: number, description, four prices, cost, family.
QString StockHeading();

// Deepest page level a search follows; sound indexes of any size stay far below it.
inline constexpr int MaxPageDepth = 32;

// The search over two open devices (the index and the table): gives the heading, then up to
// maxLines lines of the parts whose number starts with text (in capitals), in index order. On
// return maxLines holds the number of lines still allowed. Never shows anything.
StockSearchOutcome ScanStock(QIODevice& index, QIODevice& table, const QString& text,
                             qint32& maxLines, const StockLineSink& sink);

// The same search on prgDir's STOCK.NTX and STOCK.DBF (names matched without regard to case).
StockSearchOutcome SearchStockIn(const QString& prgDir, const QString& text, qint32& maxLines,
                                 const StockLineSink& sink);

// The program's search, in the programs directory App().PrgPath. Any failure shows message
// 1079 and ends the search; the lines already given stay with the caller.
void SearchStock(const QString& text, qint32& maxLines, const StockLineSink& sink);

} // namespace modNTX
