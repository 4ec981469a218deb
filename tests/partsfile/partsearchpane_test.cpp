#include "partsfile/partsearchpane.h"

#include "app/appstate.h"
#include "app/messages.h"
#include "partsfile/modntx.h"
#include "stockfixtures/stockgenerator.h"
#include "support/scriptedprompter.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>
#include <memory>

namespace {

class PartSearchPaneTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        dir = std::make_unique<QTemporaryDir>();
        StockGeneration generation;
        generation.parts = 2600;
        generation.prefixes = {QStringLiteral("AB"), QStringLiteral("XY")};
        generation.index.keysPerPage = 20;
        generation.index.clipperUpdated = true;
        files = std::make_unique<StockFiles>(
            WriteStockFiles(dir->path() + QStringLiteral("/PRG"), generation));
    }
    static void TearDownTestSuite() {
        files.reset();
        dir.reset();
    }

    void SetUp() override {
        ASSERT_TRUE(files->written);
        ResetAppState();
        App().Settings.Nation = 1000;
        App().PrgPath = dir->path() + QStringLiteral("/PRG/");
        pane.lblRecherche->setText(LoadText(28));
        pane.lblMax->setText(LoadText(83));
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
    static int partsStartingWith(const QString& text) {
        int count = 0;
        for (const QString& number : files->numbers)
            count += number.startsWith(text) ? 1 : 0;
        return count;
    }
    void search(const QString& text, const QString& max) {
        pane.txtRecherche->setText(text);
        pane.txtMax->setText(max);
        QTest::keyClick(pane.txtRecherche, Qt::Key_Return);
    }

    static std::unique_ptr<QTemporaryDir> dir;
    static std::unique_ptr<StockFiles> files;
    PartSearchPane pane;
};

std::unique_ptr<QTemporaryDir> PartSearchPaneTest::dir;
std::unique_ptr<StockFiles> PartSearchPaneTest::files;

TEST_F(PartSearchPaneTest, LineCountFollowsTheNumberField) {
    ASSERT_GT(partsStartingWith(QString()), 2000);
    search(QString(), QStringLiteral("5000"));
    EXPECT_EQ(pane.txtMax->text(), QStringLiteral("2000"));
    EXPECT_EQ(partLines(), 2000);
    EXPECT_EQ(pane.lstPieces->item(0)->text(), modNTX::StockHeading());

    search(QString(), QStringLiteral("12.5"));
    EXPECT_EQ(partLines(), 12);
    search(QString(), QStringLiteral("13.5"));
    EXPECT_EQ(partLines(), 14);
    EXPECT_EQ(pane.txtMax->text(), QStringLiteral("13.5"));
    search(QString(), QStringLiteral("7.2.9"));
    EXPECT_EQ(partLines(), 7);
    search(QString(), QString());
    EXPECT_EQ(partLines(), 0);

    EXPECT_DOUBLE_EQ(PartSearchPane::leadingNumber(QStringLiteral("  42abc")), 42.0);
    EXPECT_DOUBLE_EQ(PartSearchPane::leadingNumber(QStringLiteral(".5")), 0.5);
    EXPECT_DOUBLE_EQ(PartSearchPane::leadingNumber(QStringLiteral("x5")), 0.0);
}

TEST_F(PartSearchPaneTest, NumberFieldTakesDigitsAndPointOnly) {
    pane.txtMax->setFocus();
    pane.txtMax->clear();
    QTest::keyClicks(pane.txtMax, QStringLiteral("4a-2.x5"));
    EXPECT_EQ(pane.txtMax->text(), QStringLiteral("42.5"));
    QTest::keyClick(pane.txtMax, Qt::Key_Backspace);
    EXPECT_EQ(pane.txtMax->text(), QStringLiteral("42."));
    QTest::keyClick(pane.txtMax, Qt::Key_Left); // keys that type nothing work as usual
    QTest::keyClick(pane.txtMax, Qt::Key_Delete);
    EXPECT_EQ(pane.txtMax->text(), QStringLiteral("42"));

    QTest::keyClick(pane.txtMax, Qt::Key_Return);
    EXPECT_EQ(pane.txtMax->text(), QStringLiteral("42"));
    EXPECT_TRUE(pane.txtRecherche->hasFocus());
    EXPECT_EQ(pane.lstPieces->count(), 0); // Enter there moves on, it does not search
}

TEST_F(PartSearchPaneTest, GroupCodeOfTheSelectedListPrefixesTheSearch) {
    pane.setGroupCode(QStringLiteral(" AB "));
    EXPECT_EQ(pane.lblRecherche->text(), LoadText(28) + QStringLiteral("-  AB"));
    search(QStringLiteral("1"), QStringLiteral("2000"));
    ASSERT_EQ(partLines(), partsStartingWith(QStringLiteral("AB1")));
    ASSERT_GT(partLines(), 20);
    for (const QString& line : listed().mid(1))
        ASSERT_TRUE(line.startsWith(QStringLiteral("AB1"))) << line.toStdString();
    // An empty number lists the first parts of the group.
    search(QString(), QStringLiteral("20"));
    EXPECT_EQ(partLines(), 20);
    EXPECT_TRUE(listed().last().startsWith(QStringLiteral("AB")));

    // A list without group code: the typed text alone, in capitals.
    pane.setGroupCode(QString());
    EXPECT_EQ(pane.lblRecherche->text(), LoadText(28) + QStringLiteral("-    "));
    search(QStringLiteral("xy2"), QStringLiteral("2000"));
    EXPECT_EQ(partLines(), partsStartingWith(QStringLiteral("XY2")));
}

TEST_F(PartSearchPaneTest, SearchGivesTheFocusBackWithTheTextSelected) {
    pane.txtRecherche->setFocus();
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

TEST_F(PartSearchPaneTest, ChangingTheGroupFieldClearsTheList) {
    search(QStringLiteral("AB"), QStringLiteral("5"));
    ASSERT_EQ(pane.lstPieces->count(), 6);
    EXPECT_EQ(pane.txtRechGroupe->text(), QStringLiteral("Code"));
    pane.txtRechGroupe->setText(QStringLiteral("Codes"));
    EXPECT_EQ(pane.lstPieces->count(), 0);
}

TEST_F(PartSearchPaneTest, UnreadablePartsFileShowsMessage1079) {
    App().PrgPath = dir->path() + QStringLiteral("/NOWHERE/");
    ScriptedPrompter prompts;
    prompts.expectMessage(LoadText(79));
    search(QStringLiteral("AB"), QStringLiteral("20"));
    EXPECT_EQ(pane.lstPieces->count(), 0);
    EXPECT_TRUE(pane.txtRecherche->hasFocus());
}

} // namespace
