#include "stockfixture.h"

#include "stockfixtures/stockgenerator.h"

#include <QFile>
#include <gtest/gtest.h>

StockFixture::StockFixture() {
    EXPECT_TRUE(dir_.isValid());
}

const NtxImage& StockFixture::write(const std::vector<StockPart>& parts,
                                    const NtxOptions& options) {
    image_ = WriteStockFiles(dir_.path(), parts, options);
    EXPECT_FALSE(image_.bytes.isEmpty());
    return image_;
}

void StockFixture::writeIndex(const QByteArray& bytes) const {
    QFile file(prgDir() + QStringLiteral("STOCK.NTX"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    ASSERT_EQ(file.write(bytes), bytes.size());
}

StockFixture::Result StockFixture::search(const QString& text, qint32 maxLines) const {
    Result result;
    result.remaining = maxLines;
    result.outcome = modNTX::SearchStockIn(prgDir(), text, result.remaining,
                                           [&](const QString& line) { result.lines << line; });
    return result;
}

StockPart TestPart(const QString& number, int record) {
    StockPart part;
    part.number = number;
    part.description = QStringLiteral("REC %1").arg(record);
    part.prices = {10.0, 9.0, 8.0, 7.0};
    part.cost = 5.0;
    part.family = QStringLiteral("F%1").arg(record % 10);
    return part;
}

std::vector<int> RecordsOf(const QStringList& lines) {
    std::vector<int> records;
    for (qsizetype i = 1; i < lines.size(); ++i)
        records.push_back(lines[i].mid(15, 30).trimmed().mid(4).toInt());
    return records;
}
