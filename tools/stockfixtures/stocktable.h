#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <array>

// One part of the parts file, as the tools and tests write it.
struct StockPart {
    QString number;       // up to 15 characters
    QString description;  // up to 30
    QString description2; // the second description (not shown by the search)
    std::array<double, 4> prices{};
    double cost = 0;
    QString family; // up to 5
    bool deleted = false;
};

// The record of a part (206 bytes, the deletion flag first) in the parts file's field layout:
// GENRE C2, NUMERO C15, DESCRIPT C30, DESCANG C30, PRIX1 to PRIX4 N9.2, COUTANT N10.2, FOURNIS
// C6, LOCAL C8, QTE N7, QTEMIN N7, DATEACH D8, REMPLACE C15, NOTE C26, FAMILLE C5.
QByteArray StockRecord(const StockPart& part);

// Writes a STOCK.DBF (dBASE III form, as Clipper programs keep it) record by record.
class StockTableWriter {
public:
    explicit StockTableWriter(const QString& path);
    void append(const StockPart& part);
    void appendRecord(const QByteArray& record);
    // Writes the end-of-file mark and the record count; false when a write failed.
    bool finish();

private:
    QFile file_;
    quint32 records_ = 0;
    bool failed_ = false;
};

// The table header of a STOCK.DBF holding the given number of records.
QByteArray StockTableHeader(quint32 records);
