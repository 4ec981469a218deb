#include "stockfixtures/stocktable.h"

#include "partsfile/cp1252.h"
#include "partsfile/ntxlayout.h"

#include <QtEndian>
#include <cstring>
#include <iterator>

namespace {

struct FieldSpec {
    const char* name;
    char type;
    int length;
    int decimals;
};

// Byte 0 of a record is the deletion flag; the fields follow in this order.
constexpr FieldSpec StockFields[] = {
    {"GENRE", 'C', 2, 0},    {"NUMERO", 'C', 15, 0}, {"DESCRIPT", 'C', 30, 0},
    {"DESCANG", 'C', 30, 0}, {"PRIX1", 'N', 9, 2},   {"PRIX2", 'N', 9, 2},
    {"PRIX3", 'N', 9, 2},    {"PRIX4", 'N', 9, 2},   {"COUTANT", 'N', 10, 2},
    {"FOURNIS", 'C', 6, 0},  {"LOCAL", 'C', 8, 0},   {"QTE", 'N', 7, 0},
    {"QTEMIN", 'N', 7, 0},   {"DATEACH", 'D', 8, 0}, {"REMPLACE", 'C', 15, 0},
    {"NOTE", 'C', 26, 0},    {"FAMILLE", 'C', 5, 0},
};
constexpr int FieldCount = int(std::size(StockFields));
constexpr int HeaderLength = 32 + 32 * FieldCount + 1;

void putText(QByteArray& record, int at, int width, const QString& text) {
    const QByteArray bytes = EncodeCp1252(text).left(width);
    std::memcpy(record.data() + at, bytes.constData(), size_t(bytes.size()));
}

void putNumber(QByteArray& record, int at, int width, double value) {
    putText(record, at, width, QString::number(value, 'f', 2).rightJustified(width, u' ', true));
}

} // namespace

QByteArray StockRecord(const StockPart& part) {
    using namespace StockLayout;
    QByteArray record(RecordSize, ' ');
    record[0] = part.deleted ? '*' : ' ';
    putText(record, NumberAt, NumberWidth, part.number);
    putText(record, DescriptionAt, DescriptionWidth, part.description);
    putText(record, DescriptionAt + DescriptionWidth, DescriptionWidth, part.description2);
    for (int i = 0; i < 4; ++i)
        putNumber(record, PricesAt + i * PriceWidth, PriceWidth, part.prices[size_t(i)]);
    putNumber(record, CostAt, CostWidth, part.cost);
    putText(record, FamilyAt, FamilyWidth, part.family);
    return record;
}

QByteArray StockTableHeader(quint32 records) {
    QByteArray header(HeaderLength, '\0');
    char* h = header.data();
    h[0] = 0x03;      // dBASE III without memo, as Clipper writes it
    h[1] = char(104); // last update 2004-03-02
    h[2] = 3;
    h[3] = 2;
    qToLittleEndian<quint32>(records, h + 4);
    qToLittleEndian<quint16>(quint16(HeaderLength), h + StockLayout::HeaderLengthAt);
    qToLittleEndian<quint16>(quint16(StockLayout::RecordSize), h + StockLayout::RecordLengthAt);
    h[29] = 0x03; // Windows ANSI
    int displacement = 1;
    for (int i = 0; i < FieldCount; ++i) {
        char* d = h + 32 + 32 * i;
        std::memcpy(d, StockFields[i].name, std::strlen(StockFields[i].name));
        d[11] = StockFields[i].type;
        qToLittleEndian<quint32>(quint32(displacement), d + 12);
        d[16] = char(StockFields[i].length);
        d[17] = char(StockFields[i].decimals);
        displacement += StockFields[i].length;
    }
    h[HeaderLength - 1] = 0x0D;
    return header;
}

StockTableWriter::StockTableWriter(const QString& path) : file_(path) {
    failed_ = !file_.open(QIODevice::WriteOnly | QIODevice::Truncate) ||
              file_.write(StockTableHeader(0)) != HeaderLength;
}

void StockTableWriter::append(const StockPart& part) {
    appendRecord(StockRecord(part));
}

void StockTableWriter::appendRecord(const QByteArray& record) {
    failed_ = failed_ || file_.write(record) != record.size();
    ++records_;
}

bool StockTableWriter::finish() {
    if (!file_.isOpen())
        return false;
    failed_ = failed_ || file_.write("\x1A", 1) != 1;
    failed_ = failed_ || !file_.seek(0) || file_.write(StockTableHeader(records_)) != HeaderLength;
    file_.close();
    return !failed_ && file_.error() == QFileDevice::NoError;
}
