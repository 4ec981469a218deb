// Feeds arbitrary index bytes to the parts search. Whatever the index holds, the scan must end
// (listing lines or giving up on a damaged file) without crashing, hanging or reading outside
// what it was given.
//
// Input: one byte for the number of lines (signed), one byte for the length of the searched
// text (0 to 17), the text, then the bytes of STOCK.NTX.
#include "app/appstate.h"
#include "partsfile/modntx.h"
#include "partsfile/ntxlayout.h"

#include <QBuffer>
#include <QByteArray>
#include <QtEndian>
#include <cstdint>
#include <cstring>

namespace {

// A parts table of 64 records, the same for every input; the index decides which are read.
const QByteArray& stockTable() {
    static const QByteArray table = [] {
        constexpr int headerLength = 33;
        constexpr int records = 64;
        QByteArray bytes(headerLength + records * StockLayout::RecordSize + 1, ' ');
        std::memset(bytes.data(), 0, headerLength);
        bytes[0] = 0x03;
        qToLittleEndian<quint32>(records, bytes.data() + 4);
        qToLittleEndian<quint16>(headerLength, bytes.data() + StockLayout::HeaderLengthAt);
        qToLittleEndian<quint16>(StockLayout::RecordSize,
                                 bytes.data() + StockLayout::RecordLengthAt);
        bytes[headerLength - 1] = 0x0D;
        for (int r = 0; r < records; ++r) {
            char* record = bytes.data() + headerLength + r * StockLayout::RecordSize;
            const QByteArray number = "P" + QByteArray::number(r + 1);
            std::memcpy(record + StockLayout::NumberAt, number.constData(), size_t(number.size()));
            record[StockLayout::FamilyAt] = char(0x80 + r % 32); // the code page's odd bytes
        }
        bytes[bytes.size() - 1] = 0x1A;
        return bytes;
    }();
    return table;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 2)
        return 0;
    const qint32 maxLines = static_cast<int8_t>(data[0]);
    const size_t textLength = data[1] % 18;
    if (size < 2 + textLength)
        return 0;
    App().Settings.Nation = 1000;
    const QString text =
        QString::fromLatin1(reinterpret_cast<const char*>(data + 2), qsizetype(textLength));
    QByteArray index = QByteArray::fromRawData(reinterpret_cast<const char*>(data + 2 + textLength),
                                               qsizetype(size - 2 - textLength));
    QByteArray table = stockTable();
    QBuffer indexDevice(&index);
    QBuffer tableDevice(&table);
    indexDevice.open(QIODevice::ReadOnly);
    tableDevice.open(QIODevice::ReadOnly);

    qint32 remaining = maxLines;
    qint64 lines = 0;
    const modNTX::StockSearchOutcome outcome = modNTX::ScanStock(
        indexDevice, tableDevice, text, remaining, [&lines](const QString&) { ++lines; });
    // Never more part lines than asked for, and never more records read than lines given.
    if (maxLines > 0 && lines - 1 > maxLines)
        __builtin_trap();
    if (outcome.counters.recordsRead > lines)
        __builtin_trap();
    return 0;
}
