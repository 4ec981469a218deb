#include "stockfixture.h"

#include "app/appstate.h"
#include "app/messages.h"
#include "partsfile/ntxlayout.h"
#include "support/scriptedprompter.h"

#include <QFile>
#include <QtEndian>
#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <random>
#include <set>

namespace {

using modNTX::StockFailure;

class SearchStockTest : public ::testing::Test {
protected:
    void SetUp() override {
        ResetAppState();
        App().Settings.Nation = 1000;
    }
    void TearDown() override { ResetAppState(); }

    StockFixture fixture;
};

QString padded(int value, int width) {
    return QStringLiteral("%1").arg(value, width, 10, QLatin1Char('0'));
}

// Numbers over a small alphabet, so that prefixes share many keys across pages; a few numbers
// are entered several times.
std::vector<StockPart> crowdedParts(int count, quint32 seed) {
    std::mt19937 rng(seed);
    std::vector<StockPart> parts;
    const QString alphabet = QStringLiteral("AB12");
    for (int i = 0; i < count; ++i) {
        QString number;
        if (i > 10 && rng() % 8 == 0) {
            number = parts[rng() % parts.size()].number;
        } else {
            const int length = 2 + int(rng() % 5);
            for (int c = 0; c < length; ++c)
                number += alphabet[int(rng() % 4)];
        }
        parts.push_back(TestPart(number, i + 1));
    }
    return parts;
}

// The records a search must list: the index's entries whose key starts with the text in
// capitals (none for a text longer than a key), in index order, up to maxLines.
std::vector<int> expectedRecords(const NtxImage& image, const QString& text, int maxLines) {
    std::vector<int> records;
    const QString key = text.toUpper();
    for (const NtxEntry& entry : image.entries) {
        const QString number = QString::fromLatin1(entry.key.data(), 15);
        if (key.size() <= 15 && number.startsWith(key) && int(records.size()) < maxLines)
            records.push_back(int(entry.record));
    }
    return records;
}

QStringList searchTexts() {
    QStringList texts = {QString(), QStringLiteral("a"), QStringLiteral("ab1"),
                         QStringLiteral("AB12AB12AB12AB12"), QStringLiteral("Z")};
    const QString alphabet = QStringLiteral("AB12");
    for (const QChar a : alphabet) {
        texts << QString(a);
        for (const QChar b : alphabet) {
            texts << QString(a) + b;
            for (const QChar c : alphabet)
                texts << QString(a) + b + c;
        }
    }
    return texts;
}

TEST_F(SearchStockTest, ListsTheMatchesInIndexOrderWhateverTheTreeShape) {
    const std::vector<StockPart> parts = crowdedParts(400, 7);
    for (const int perPage : {1, 2, 3, 38}) {
        for (const bool clipperUpdated : {false, true}) {
            SCOPED_TRACE(testing::Message()
                         << perPage << " keys a page, updated " << clipperUpdated);
            const NtxImage& image = fixture.write(parts, {perPage, clipperUpdated, 11, "NUMERO"});
            for (const QString& text : searchTexts()) {
                for (const int maxLines : {1, 2, 7, 50, 1000}) {
                    const StockFixture::Result result = fixture.search(text, maxLines);
                    ASSERT_TRUE(result.outcome.ok())
                        << modNTX::FailureText(result.outcome.failure).toStdString();
                    const std::vector<int> expected = expectedRecords(image, text, maxLines);
                    ASSERT_EQ(RecordsOf(result.lines), expected)
                        << "text " << text.toStdString() << ", lines " << maxLines;
                    EXPECT_EQ(result.remaining, maxLines - int(expected.size()));
                    EXPECT_EQ(result.outcome.counters.recordsRead, qint64(expected.size()));
                }
            }
        }
    }
}

TEST_F(SearchStockTest, EdgeTextsAndLineCounts) {
    fixture.write({TestPart(QStringLiteral("NGKBKR5E11"), 1),
                   TestPart(QStringLiteral("NGK4510"), 2),
                   TestPart(QStringLiteral("ABCDEFGHIJKLMNO"), 3)});

    // No lines allowed: the heading alone, the count left as it was.
    for (const int maxLines : {0, -3}) {
        const StockFixture::Result result = fixture.search(QStringLiteral("NGK"), maxLines);
        EXPECT_EQ(result.lines, QStringList{modNTX::StockHeading()});
        EXPECT_EQ(result.remaining, maxLines);
    }
    // The whole 15 characters still find the part.
    EXPECT_EQ(fixture.search(QStringLiteral("ABCDEFGHIJKLMNO"), 20).lines.size(), 2);
}

TEST_F(SearchStockTest, PartLineKeepsTheFieldsAsTheyStand) {
    StockPart part;
    part.number = QStringLiteral("BOS0242229");
    part.description = QStringLiteral("DÉMARREUR 5€ RÉUSINÉ");
    part.prices = {12.5, 11.25, 10.63, 10};
    part.cost = 7.5;
    part.family = QStringLiteral(" EL");
    part.deleted = true; // deleted but still in the index: listed all the same
    fixture.write({part});

    const StockFixture::Result result = fixture.search(QStringLiteral("bos"), 20);
    ASSERT_EQ(result.lines.size(), 2);
    EXPECT_EQ(result.lines[1], QStringLiteral("BOS0242229     DÉMARREUR 5€ RÉUSINÉ          "
                                              "    12.50    11.25    10.63    10.00      7.50 EL"));
}

TEST_F(SearchStockTest, ReadsTheTreePathAndThePagesHoldingMatches) {
    std::vector<StockPart> parts;
    std::mt19937 rng(3);
    for (int i = 0; i < 6000; ++i)
        parts.push_back(TestPart(QStringLiteral("P") + padded(int(rng() % 1000000), 6), i + 1));
    const NtxImage& image = fixture.write(parts, {30, true, 9, "NUMERO"});
    ASSERT_EQ(image.depth, 3);
    for (const QString& text : {QStringLiteral("P12"), QStringLiteral("P5"), QStringLiteral("P99"),
                                QStringLiteral("P0"), QString()}) {
        const StockFixture::Result result = fixture.search(text, 20);
        ASSERT_EQ(result.lines.size(), 21);
        std::set<quint32> matchPages;
        for (size_t i = 0; i < image.entries.size(); ++i) {
            if (QString::fromLatin1(image.entries[i].key.data(), 15).startsWith(text))
                matchPages.insert(image.pageOfEntry[i]);
        }
        EXPECT_LE(result.outcome.counters.pagesRead, qint64(image.depth + matchPages.size()))
            << text.toStdString();
        EXPECT_EQ(result.outcome.counters.recordsRead, 20);
    }
}

// ---- damaged files -------------------------------------------------------------------------

qint16 keyCountAt(const QByteArray& bytes, quint32 page) {
    return qFromLittleEndian<qint16>(bytes.constData() + page);
}
// Byte position of the item that item offset i of the page designates.
qint64 itemAt(const QByteArray& bytes, quint32 page, int i) {
    return page + qFromLittleEndian<quint16>(bytes.constData() + page + 2 + 2 * i);
}
quint32 childAt(const QByteArray& bytes, quint32 page, int i) {
    return qFromLittleEndian<quint32>(bytes.constData() + itemAt(bytes, page, i));
}
void setChild(QByteArray& bytes, quint32 page, int i, quint32 child) {
    qToLittleEndian<quint32>(child, bytes.data() + itemAt(bytes, page, i));
}

// An index whose pages form one chain, each page without keys and with only its last child.
QByteArray chainIndex(int pages) {
    using namespace NtxLayout;
    QByteArray bytes(HeaderSize * (pages + 1), '\0');
    qToLittleEndian<quint32>(quint32(HeaderSize), bytes.data() + RootOffsetAt);
    for (int p = 0; p < pages; ++p) {
        const quint32 at = quint32(HeaderSize * (p + 1));
        qToLittleEndian<quint16>(FirstItemAt, bytes.data() + at + 2);
        const quint32 child = p + 1 < pages ? at + quint32(PageSize) : 0;
        qToLittleEndian<quint32>(child, bytes.data() + at + FirstItemAt);
    }
    return bytes;
}

TEST_F(SearchStockTest, DamagedIndexesEndTheSearchWithoutHanging) {
    std::vector<StockPart> parts;
    for (int i = 0; i < 60; ++i)
        parts.push_back(TestPart(QStringLiteral("K") + padded(i, 3), i + 1));
    const NtxImage image = fixture.write(parts, {3, true, 17, "NUMERO"});
    const QByteArray sound = image.bytes;
    const quint32 root = image.root;
    const quint32 child = childAt(sound, root, 0);
    const int rootKeys = keyCountAt(sound, root);
    ASSERT_NE(child, 0u);
    // The end of the root's highest designated item; the root is the file's last page.
    qint64 lastItemEnd = 0;
    for (int i = 0; i <= rootKeys; ++i)
        lastItemEnd = std::max(lastItemEnd, itemAt(sound, root, i) + NtxLayout::ItemSize);

    struct Damage {
        const char* what;
        std::function<void(QByteArray&)> apply;
        StockFailure failure;
    };
    const auto setOffset = [root](QByteArray& b, quint16 offset) {
        qToLittleEndian<quint16>(offset, b.data() + root + 2);
    };
    const auto setKeyCount = [root](QByteArray& b, qint16 count) {
        qToLittleEndian<qint16>(count, b.data() + root);
    };
    const auto setRecord = [root](QByteArray& b, qint32 record) {
        qToLittleEndian<qint32>(record, b.data() + itemAt(b, root, 0) + NtxLayout::ItemRecordAt);
    };
    const Damage damages[] = {
        {"root past the end",
         [](QByteArray& b) { qToLittleEndian<quint32>(quint32(b.size() + 10), b.data() + 4); },
         StockFailure::PageOutsideFile},
        {"child past the end", [&](QByteArray& b) { setChild(b, root, 0, quint32(b.size())); },
         StockFailure::PageOutsideFile},
        {"last child far past the end",
         [&](QByteArray& b) { setChild(b, root, rootKeys, 0xFFFFFFF0u); },
         StockFailure::PageOutsideFile},
        {"page is its own child", [&](QByteArray& b) { setChild(b, root, 0, root); },
         StockFailure::PageRevisited},
        {"grandchild is the root", [&](QByteArray& b) { setChild(b, child, 0, root); },
         StockFailure::PageRevisited},
        {"item 42", [&](QByteArray& b) { setOffset(b, 80 + 42 * 23); },
         StockFailure::ItemOutsidePage},
        {"item before the items", [&](QByteArray& b) { setOffset(b, 12); },
         StockFailure::ItemOutsidePage},
        {"39 keys", [&](QByteArray& b) { setKeyCount(b, 39); }, StockFailure::BadKeyCount},
        {"negative key count", [&](QByteArray& b) { setKeyCount(b, -1); },
         StockFailure::BadKeyCount},
        {"designated item cut off", [&](QByteArray& b) { b.truncate(lastItemEnd - 5); },
         StockFailure::ItemPastEnd},
        {"record not in the table", [&](QByteArray& b) { setRecord(b, 100000); },
         StockFailure::RecordOutsideTable},
        {"record zero", [&](QByteArray& b) { setRecord(b, 0); }, StockFailure::RecordOutsideTable},
        {"header cut short", [](QByteArray& b) { b.truncate(100); }, StockFailure::ShortHeader},
        {"chain deeper than any index", [](QByteArray& b) { b = chainIndex(40); },
         StockFailure::TooDeep},
    };
    for (const Damage& damage : damages) {
        SCOPED_TRACE(damage.what);
        QByteArray bytes = sound;
        damage.apply(bytes);
        fixture.writeIndex(bytes);
        const StockFixture::Result result = fixture.search(QString(), 1000);
        EXPECT_EQ(result.outcome.failure, damage.failure)
            << modNTX::FailureText(result.outcome.failure).toStdString();
        if (damage.failure != StockFailure::ShortHeader) {
            EXPECT_EQ(result.lines.value(0), modNTX::StockHeading());
        }
    }

    // A failure late in the scan keeps the lines found before it.
    QByteArray lateDamage = sound;
    setChild(lateDamage, root, rootKeys, quint32(lateDamage.size() + 1));
    fixture.writeIndex(lateDamage);
    const StockFixture::Result late = fixture.search(QStringLiteral("K"), 1000);
    EXPECT_EQ(late.outcome.failure, StockFailure::PageOutsideFile);
    EXPECT_GT(late.lines.size(), 20);

    // A last page shorter than a page read is sound as long as its designated items are there.
    QByteArray shortLastPage = sound;
    shortLastPage.truncate(lastItemEnd);
    fixture.writeIndex(shortLastPage);
    EXPECT_EQ(fixture.search(QStringLiteral("K0"), 1000).lines.size(), 61);
    // A chain no deeper than a sound index may be is followed to its end.
    fixture.writeIndex(chainIndex(20));
    EXPECT_TRUE(fixture.search(QString(), 10).outcome.ok());
}

TEST_F(SearchStockTest, MissingFilesShowMessage1079AndNamesMatchInAnyCase) {
    fixture.write({TestPart(QStringLiteral("M1"), 1), TestPart(QStringLiteral("M2"), 2)});
    App().PrgPath = fixture.prgDir();
    QStringList lines;
    const auto collect = [&](const QString& line) { lines << line; };
    qint32 maxLines = 100;

    // Files missing (or held by another workstation): the box, and not even the heading.
    const QString aside = fixture.prgDir() + QStringLiteral("ASIDE");
    for (const QString& name : {QStringLiteral("STOCK.NTX"), QStringLiteral("STOCK.DBF")}) {
        ASSERT_TRUE(QFile::rename(fixture.prgDir() + name, aside));
        ScriptedPrompter prompts;
        prompts.expectMessage(LoadText(79));
        lines.clear();
        modNTX::SearchStock(QStringLiteral("M"), maxLines, collect);
        EXPECT_TRUE(lines.isEmpty());
        ASSERT_TRUE(QFile::rename(aside, fixture.prgDir() + name));
    }

    // Names in another case, as installations copied from Windows keep them.
    ASSERT_TRUE(QFile::rename(fixture.prgDir() + QStringLiteral("STOCK.DBF"),
                              fixture.prgDir() + QStringLiteral("stock.dbf")));
    lines.clear();
    modNTX::SearchStock(QStringLiteral("M"), maxLines, collect);
    EXPECT_EQ(lines.size(), 3);
}

} // namespace
