#pragma once

#include "partsfile/modntx.h"
#include "stockfixtures/ntxwriter.h"
#include "stockfixtures/stocktable.h"

#include <QByteArray>
#include <QStringList>
#include <QTemporaryDir>
#include <vector>

// A programs directory in a temporary folder holding a parts file and its index.
class StockFixture {
public:
    StockFixture();

    QString prgDir() const { return dir_.path() + u'/'; }

    // Writes the parts (record n + 1 is parts[n]) and their index.
    const NtxImage& write(const std::vector<StockPart>& parts, const NtxOptions& options = {});
    // Replaces the index file by these bytes (a damaged copy of the image, say).
    void writeIndex(const QByteArray& bytes) const;

    struct Result {
        QStringList lines; // the heading first
        modNTX::StockSearchOutcome outcome;
        qint32 remaining = 0;
    };
    Result search(const QString& text, qint32 maxLines) const;

private:
    QTemporaryDir dir_;
    NtxImage image_;
};

// A part whose description names its record, so that a line tells which record it came from.
StockPart TestPart(const QString& number, int record);
// The record numbers named by the descriptions of the lines after the heading.
std::vector<int> RecordsOf(const QStringList& lines);
