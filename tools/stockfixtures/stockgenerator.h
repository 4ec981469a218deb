#pragma once

#include "stockfixtures/ntxwriter.h"
#include "stockfixtures/stocktable.h"

#include <QString>
#include <QStringList>
#include <functional>
#include <vector>

// A realistic parts file: numbers made of a group code followed by digits and letters, French
// and English descriptions, four prices, a cost and a family; records in the order a counter
// would have entered them, with a few numbers entered twice and a few records deleted but still
// in the index (as a Clipper program leaves them until the table is packed).
struct StockGeneration {
    int parts = 200000;
    QStringList prefixes;
    int duplicates = 12;
    int deleted = 8;
    quint32 seed = 2004;
    NtxOptions index;
};

struct StockFiles {
    bool written = false;
    int depth = 0;                // levels of the index
    qint64 pages = 0;             // pages of the index
    std::vector<QString> numbers; // the part numbers, by record (record 1 first)
};

// Writes dir/STOCK.DBF and dir/STOCK.NTX.
StockFiles WriteStockFiles(const QString& dir, const StockGeneration& generation);

// Writes the given parts as dir/STOCK.DBF (record n+1 is parts[n]) and their index; the image
// has no bytes when a write failed.
NtxImage WriteStockFiles(const QString& dir, const std::vector<StockPart>& parts,
                         const NtxOptions& options = {});

// A part with the given number, its description, prices and family drawn from rng.
StockPart GeneratedPart(const QString& number, const std::function<quint32()>& rng);
