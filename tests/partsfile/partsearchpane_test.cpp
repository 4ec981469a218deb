#include "partsfile/partsearchpane.h"

#include "app/appstate.h"
#include "app/messages.h"
#include "partsfile/modntx.h"
#include "partsfile/partsearch.h"
#include "stockfixtures/stockgenerator.h"
#include "support/scriptedprompter.h"
#include "support/testfiles.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QTemporaryDir>
#include <QTest>
#include <algorithm>
#include <gtest/gtest.h>

namespace {

class PartSearchPaneTest : public ::testing::Test {
protected:
    void SetUp() override {
        ResetAppState();
        App().Settings.Nation = 1000;
        App().PrgPath = dir.path() + QStringLiteral("/PRG/");
        StockGeneration generation;
        generation.parts = 2600;
        generation.prefixes = {QStringLiteral("AB"), QStringLiteral("XY")};
        generation.index = {20, true};
        files = WriteStockFiles(App().PrgPath, generation);
        ASSERT_TRUE(files.written);
        pane.label();
        pane.show();
        QApplication::setActiveWindow(&pane);
        ASSERT_TRUE(QTest::qWaitForWindowActive(&pane));
    }
    void TearDown() override { ResetAppState(); }

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
    void search(const QString& text, const QString& max) {
        pane.txtRecherche->setText(text);
        pane.txtMax->setText(max);
        QTest::keyClick(pane.txtRecherche, Qt::Key_Return);
    }

    QTemporaryDir dir;
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
    ASSERT_GT(partsStartingWith(QString()), 2000);
    const struct {
        QString typed, shown;
        int lines;
    } counts[] = {{"5000", "2000", 2000}, {"12.5", "12.5", 12}, {"", "", 0}};
    for (const auto& [typed, shown, count] : counts) {
        SCOPED_TRACE(typed.toStdString());
        search(QString(), typed);
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
    search(QStringLiteral("AB"), QStringLiteral("20"));
    EXPECT_EQ(pane.lstPieces->count(), 0);
    EXPECT_TRUE(pane.txtRecherche->hasFocus());
}

TEST_F(PartSearchPaneTest, GroupCodeOfTheSelectedListPrefixesTheSearch) {
    pane.setGroupCode(QStringLiteral(" AB "));
    EXPECT_EQ(pane.lblRecherche->text(), LoadText(28) + QStringLiteral("-  AB"));
    search(QStringLiteral("1"), QStringLiteral("2000"));
    ASSERT_GT(partLines(), 20);
    EXPECT_EQ(partLines(), partsStartingWith(QStringLiteral("AB1")));
    EXPECT_TRUE(listed().last().startsWith(QStringLiteral("AB1")));

    // A list without group code: the typed text alone, in capitals.
    pane.setGroupCode(QString());
    EXPECT_EQ(pane.lblRecherche->text(), LoadText(28) + QStringLiteral("-    "));
    search(QStringLiteral("xy2"), QStringLiteral("2000"));
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
    // Typing now replaces the number.
    QTest::keyClicks(pane.txtRecherche, QStringLiteral("XY"));
    EXPECT_EQ(pane.txtRecherche->text(), QStringLiteral("XY"));

    pane.lstPieces->setFocus();
    QTest::keyClick(pane.lstPieces, Qt::Key_Return);
    EXPECT_TRUE(pane.txtRecherche->hasFocus());
    EXPECT_EQ(pane.txtRecherche->selectedText(), QStringLiteral("XY"));
}

} // namespace
