// The part search: the index scan itself, the pane of the main window and the command line.
#include "app/appstate.h"
#include "app/messages.h"
#include "partsfile/modntx.h"
#include "partsfile/ntxlayout.h"
#include "partsfile/partsearch.h"
#include "partsfile/partsearchpane.h"
#include "stockfixtures/stockgenerator.h"
#include "support/scriptedprompter.h"
#include "support/testfiles.h"

#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>
#include <algorithm>
#include <gtest/gtest.h>
#include <random>

namespace {

using modNTX::StockFailure;

// A part whose description names its record, so that a line tells which record it came from.
StockPart part(const QString& number, int record) {
    StockPart part;
    part.number = number;
    part.description = QString::number(record);
    return part;
}

// A programs directory holding a parts file and its index.
class SearchStockTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dir.isValid());
        ResetAppState();
        App().Settings.Nation = 1000;
    }
    void TearDown() override { ResetAppState(); }

    QString prgDir() const { return dir.path() + u'/'; }
    NtxImage write(const std::vector<StockPart>& parts, const NtxOptions& options = {}) {
        return WriteStockFiles(dir.path(), parts, options);
    }
    void writeIndex(const QByteArray& bytes) const { WriteBytes(prgDir() + "STOCK.NTX", bytes); }

    struct Result {
        QStringList lines; // the heading first
        modNTX::StockSearchOutcome outcome;
        qint32 remaining = 0;
        // The records named by the descriptions of the lines after the heading.
        std::vector<int> records() const {
            std::vector<int> records;
            for (qsizetype i = 1; i < lines.size(); ++i)
                records.push_back(lines[i].mid(15, 30).toInt());
            return records;
        }
    };
    Result search(const QString& text, qint32 maxLines) const {
        Result result{{}, {}, maxLines};
        result.outcome = modNTX::SearchStockIn(prgDir(), text, result.remaining,
                                               [&](const QString& line) { result.lines << line; });
        return result;
    }

    QTemporaryDir dir;
};

// Numbers over a small alphabet, so that prefixes share many keys across pages; a few numbers
// are entered several times, and one fills the whole key.
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
        parts.push_back(part(number, i + 1));
    }
    parts.push_back(part(QStringLiteral("AB12AB12AB12AB1"), count + 1));
    return parts;
}

// The records a search must list: the index's entries whose key starts with the text in
// capitals (none for a text longer than a key), in index order, up to maxLines.
std::vector<int> expectedRecords(const NtxImage& image, const QString& text, int maxLines) {
    std::vector<int> records;
    const QString key = text.toUpper();
    for (const NtxEntry& entry : image.entries) {
        const QString entryKey = QString::fromLatin1(entry.key.data(), NtxLayout::KeySize);
        if (key.size() <= 15 && entryKey.startsWith(key) && int(records.size()) < maxLines)
            records.push_back(int(entry.record));
    }
    return records;
}

// Every text of one to three characters of the alphabet, and a few others.
QStringList searchTexts() {
    QStringList texts = {QString(), "a", "ab1", "AB12AB12AB12AB1", "AB12AB12AB12AB12", "Z"};
    for (int n = 1; n <= 4 + 16 + 64; ++n) {
        QString text;
        for (int m = n; m > 0; m = (m - 1) / 4)
            text.prepend(QStringLiteral("AB12")[(m - 1) % 4]);
        texts << text;
    }
    return texts;
}

TEST_F(SearchStockTest, ListsTheMatchesInIndexOrderWhateverTheTreeShape) {
    const std::vector<StockPart> parts = crowdedParts(400, 7);
    for (const int perPage : {1, 2, 3, 38}) {
        for (const bool clipperUpdated : {false, true}) {
            SCOPED_TRACE(testing::Message()
                         << perPage << " keys a page, updated " << clipperUpdated);
            const NtxImage image = write(parts, {perPage, clipperUpdated, 11, "NUMERO"});
            for (const QString& text : searchTexts()) {
                // No lines allowed: the heading alone, the count left as it was.
                for (const int maxLines : {-3, 0, 1, 2, 7, 50, 1000}) {
                    const Result result = search(text, maxLines);
                    ASSERT_TRUE(result.outcome.ok())
                        << modNTX::FailureText(result.outcome.failure).toStdString();
                    const std::vector<int> expected = expectedRecords(image, text, maxLines);
                    ASSERT_EQ(result.records(), expected)
                        << "text " << text.toStdString() << ", lines " << maxLines;
                    EXPECT_EQ(result.remaining, maxLines - int(expected.size()));
                    EXPECT_EQ(result.outcome.counters.recordsRead, qint64(expected.size()));
                    // Without a match: the path down to where one would be, no further.
                    EXPECT_LE(result.outcome.counters.pagesRead,
                              expected.empty() ? image.depth : image.pages.size());
                }
            }
        }
    }
}

TEST_F(SearchStockTest, PartLinesKeepTheFieldsAsTheyStandAndAMissingFileShowsMessage1079) {
    // Deleted but still in the index: listed all the same.
    write({{"BOS0242229", "DÉMARREUR 5€ RÉUSINÉ", {}, {12.5, 11.25, 10.63, 10}, 7.5, " EL", true}});
    // Names in another case, as installations copied from Windows keep them.
    ASSERT_TRUE(QFile::rename(prgDir() + "STOCK.DBF", prgDir() + "stock.dbf"));
    EXPECT_EQ(search(QStringLiteral("bos"), 20).lines,
              QStringList({modNTX::StockHeading(),
                           "BOS0242229     DÉMARREUR 5€ RÉUSINÉ              12.50    11.25    "
                           "10.63    10.00      7.50 EL"}));

    // A file missing (or held by another workstation): the box, and not even the heading.
    ASSERT_TRUE(QFile::remove(prgDir() + "STOCK.NTX"));
    App().PrgPath = prgDir();
    ScriptedPrompter prompts;
    prompts.expectMessage(LoadText(79));
    qint32 maxLines = 100;
    modNTX::SearchStock(QStringLiteral("BOS"), maxLines, [](const QString&) { ADD_FAILURE(); });
}

// Byte position of the item that item offset i of the page designates.
qint64 itemAt(const QByteArray& bytes, quint32 page, int i) {
    return page + qFromLittleEndian<quint16>(bytes.constData() + page + 2 + 2 * i);
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
        parts.push_back(part(QStringLiteral("K%1").arg(i, 3, 10, QChar(u'0')), i + 1));
    const NtxImage image = write(parts, {3, true, 17, "NUMERO"});
    const QByteArray sound = image.bytes;
    const int rootKeys = qFromLittleEndian<qint16>(sound.constData() + image.root);
    const qint64 firstItem = itemAt(sound, image.root, 0);
    const qint64 lastChild = itemAt(sound, image.root, rootKeys);
    const quint32 child = qFromLittleEndian<quint32>(sound.constData() + firstItem);
    ASSERT_NE(child, 0u);
    // The end of the root's highest designated item; the root is the file's last page.
    qint64 lastItemEnd = 0;
    for (int i = 0; i <= rootKeys; ++i)
        lastItemEnd = std::max(lastItemEnd, itemAt(sound, image.root, i) + NtxLayout::ItemSize);

    // Each damage writes a little-endian value of 2 or 4 bytes, or cuts the file (width 0); the
    // lines found before the failure stay listed.
    using enum StockFailure;
    const struct {
        const char* what;
        qint64 at;
        int width;
        qint64 value;
        StockFailure failure;
        int lines;
    } damages[] = {
        {"root past the end", 4, 4, sound.size() + 10, PageOutsideFile, 1},
        {"last child far past the end", lastChild, 4, 0xFFFFFFF0, PageOutsideFile, 21},
        {"page is its own child", firstItem, 4, image.root, PageRevisited, 1},
        {"grandchild is the root", itemAt(sound, child, 0), 4, image.root, PageRevisited, 1},
        {"item 42", image.root + 2, 2, 80 + 42 * 23, ItemOutsidePage, 1},
        {"item before the items", image.root + 2, 2, 12, ItemOutsidePage, 1},
        {"39 keys", image.root, 2, 39, BadKeyCount, 1},
        {"negative key count", image.root, 2, -1, BadKeyCount, 1},
        {"designated item cut off", lastItemEnd - 5, 0, 0, ItemPastEnd, 1},
        {"record not in the table", firstItem + 4, 4, 100000, RecordOutsideTable, 1},
        {"record zero", firstItem + 4, 4, 0, RecordOutsideTable, 1},
        {"header cut short", 100, 0, 0, ShortHeader, 0},
        // A last page shorter than a page read is sound if its designated items are there.
        {"cut after the designated items", lastItemEnd, 0, 0, None, 61},
    };
    for (const auto& damage : damages) {
        SCOPED_TRACE(damage.what);
        QByteArray bytes = sound;
        const quint32 value = qToLittleEndian(quint32(damage.value));
        if (damage.width == 0)
            bytes.truncate(damage.at);
        else
            bytes.replace(damage.at, damage.width, reinterpret_cast<const char*>(&value),
                          damage.width);
        writeIndex(bytes);
        const Result result = search(QString(), 1000);
        EXPECT_EQ(result.outcome.failure, damage.failure)
            << modNTX::FailureText(result.outcome.failure).toStdString();
        EXPECT_GE(result.lines.size(), damage.lines);
    }
    // A chain no deeper than a sound index may be is followed to its end, a deeper one is not.
    writeIndex(chainIndex(20));
    EXPECT_TRUE(search(QString(), 10).outcome.ok());
    writeIndex(chainIndex(40));
    EXPECT_EQ(search(QString(), 10).outcome.failure, StockFailure::TooDeep);
}

// The pane over a parts file of a few thousand parts in PRG, a folder of the test's directory.
class PartSearchPaneTest : public SearchStockTest {
protected:
    void SetUp() override {
        SearchStockTest::SetUp();
        App().PrgPath = prgDir() + QStringLiteral("PRG/");
        files = WriteStockFiles(App().PrgPath,
                                {.parts = 2600,
                                 .prefixes = {QStringLiteral("AB"), QStringLiteral("XY")},
                                 .index = {20, true}});
        ASSERT_TRUE(files.written);
        pane.label();
        pane.show();
        QApplication::setActiveWindow(&pane);
        ASSERT_TRUE(QTest::qWaitForWindowActive(&pane));
    }

    int partLines() const { return pane.lstPieces->count() - 1; } // after the heading
    QStringList listed() const {
        QStringList lines;
        for (int i = 0; i < pane.lstPieces->count(); ++i)
            lines << pane.lstPieces->item(i)->text();
        return lines;
    }
    int partsStartingWith(const QString& text) const {
        return int(std::count_if(files.numbers.begin(), files.numbers.end(),
                                 [&](const QString& number) { return number.startsWith(text); }));
    }
    void searchInPane(const QString& text, const QString& max) {
        pane.txtRecherche->setText(text);
        pane.txtMax->setText(max);
        QTest::keyClick(pane.txtRecherche, Qt::Key_Return);
    }

    StockFiles files;
    PartSearchPane pane;
};

// The command-line search's lines.
QStringList lines(const QByteArray& out) {
    return QString::fromUtf8(out).split(u'\n', Qt::SkipEmptyParts);
}
ProgramRun runStockSearch(const QStringList& arguments) {
    return RunProgram(QStringLiteral(STOCKSEARCH_PATH), arguments, 30000);
}

TEST(PartSearchLineCount, TheTypedCountIsRoundedToEvenAndCappedAt2000) {
    const std::pair<const char*, qint32> cases[] = {
        {"12.5", 12}, {"13.5", 14}, {"7.2.9", 7},   {"", 0},          {"  42abc", 42},
        {"x5", 0},    {".5", 0},    {"5000", 2000}, {"2000.4", 2000}, {"1999.6", 2000}};
    for (const auto& [typed, lines] : cases)
        EXPECT_EQ(PartSearch::LineCount(QString::fromLatin1(typed)), lines) << typed;
}

// The pane brings an overlarge count down to the cap and shows it; the command-line search
// lists what the pane lists for the same number and count.
TEST_F(PartSearchPaneTest, TheCommandLineSearchAnswersAsThePaneDoes) {
    const struct {
        QString typed, shown;
        int lines;
    } counts[] = {{"5000", "2000", 2000}, {"12.5", "12.5", 12}, {"", "", 0}};
    for (const auto& [typed, shown, count] : counts) {
        SCOPED_TRACE(typed.toStdString());
        searchInPane(QString(), typed);
        EXPECT_EQ(pane.txtMax->text(), shown);
        EXPECT_EQ(partLines(), count);
        const ProgramRun run = runStockSearch({App().PrgPath, QString(), typed});
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(lines(run.out), listed());
    }
}

TEST_F(PartSearchPaneTest, AMissingPartsFileShows1079AndBadArgumentsAreRefused) {
    App().Settings.Nation = 2000;
    const QStringList english = lines(runStockSearch({App().PrgPath, "xy", "7", "--english"}).out);
    EXPECT_EQ(english.value(0), modNTX::StockHeading());
    EXPECT_EQ(english.size(), 8);
    EXPECT_TRUE(lines(runStockSearch({"--version"}).out).value(0).startsWith("stocksearch 2"));

    const QString prg = App().PrgPath;
    for (const QStringList& bad :
         {QStringList{prg}, QStringList{prg, "XY", "7a"}, QStringList{prg + "NOWHERE", "XY"}}) {
        const ProgramRun refused = runStockSearch(bad);
        EXPECT_EQ(refused.status, 2) << bad.join(u' ').toStdString();
        EXPECT_TRUE(refused.out.isEmpty());
    }

    // A folder without parts file: message 1079 from both, and nothing listed.
    App().Settings.Nation = 1000;
    App().PrgPath = dir.path();
    const ProgramRun failed = runStockSearch({App().PrgPath, "XY"});
    EXPECT_EQ(failed.status, 1);
    EXPECT_TRUE(failed.out.isEmpty());
    EXPECT_EQ(QString::fromUtf8(failed.err).trimmed(), LoadText(79));
    ScriptedPrompter prompts;
    prompts.expectMessage(LoadText(79));
    pane.txtMax->setFocus();
    searchInPane(QStringLiteral("AB"), QStringLiteral("20"));
    EXPECT_EQ(pane.lstPieces->count(), 0);
    EXPECT_TRUE(pane.txtRecherche->hasFocus());
}

TEST_F(PartSearchPaneTest, GroupCodeOfTheSelectedListPrefixesTheSearch) {
    pane.setGroupCode(QStringLiteral(" AB "));
    EXPECT_EQ(pane.lblRecherche->text(), LoadText(28) + QStringLiteral("-  AB"));
    searchInPane(QStringLiteral("1"), QStringLiteral("2000"));
    ASSERT_GT(partLines(), 20);
    EXPECT_EQ(partLines(), partsStartingWith(QStringLiteral("AB1")));
    EXPECT_TRUE(listed().last().startsWith(QStringLiteral("AB1")));

    // A list without group code: the typed text alone, in capitals.
    pane.setGroupCode(QString());
    EXPECT_EQ(pane.lblRecherche->text(), LoadText(28) + QStringLiteral("-    "));
    searchInPane(QStringLiteral("xy2"), QStringLiteral("2000"));
    EXPECT_EQ(partLines(), partsStartingWith(QStringLiteral("XY2")));
    // Any change of the group field clears the list.
    pane.txtRechGroupe->setText(QStringLiteral("Codes"));
    EXPECT_EQ(pane.lstPieces->count(), 0);
}

// What the line count field takes is typed on a real X server (xserver/linecount_keys_test).
TEST_F(PartSearchPaneTest, EnterMovesOnToTheNumberWhichSearchesAndKeepsTheFocus) {
    pane.txtMax->setFocus();
    QTest::keyClick(pane.txtMax, Qt::Key_Return);
    EXPECT_TRUE(pane.txtRecherche->hasFocus());
    EXPECT_EQ(pane.lstPieces->count(), 0); // Enter in the line count does not search

    QTest::keyClicks(pane.txtRecherche, QStringLiteral("ab12"));
    QTest::keyClick(pane.txtRecherche, Qt::Key_Return);
    EXPECT_GT(partLines(), 0);
    EXPECT_TRUE(pane.txtRecherche->hasFocus());
    EXPECT_EQ(pane.txtRecherche->selectedText(), QStringLiteral("ab12"));

    pane.lstPieces->setFocus();
    QTest::keyClick(pane.lstPieces, Qt::Key_Return);
    EXPECT_TRUE(pane.txtRecherche->hasFocus());
    EXPECT_EQ(pane.txtRecherche->selectedText(), QStringLiteral("ab12"));
}

} // namespace
