// The part-number dialog: the work tables as typed, the refusals, the service program's run, and
// the parts file as the part search then shows it.
#include "scriptedprompter.h"
#include "tempinstall.h"
#include "testfiles.h"

#include "app/appstate.h"
#include "app/messages.h"
#include "app/serviceprogram.h"
#include "data/moddata.h"
#include "partsfile/frmstock.h"
#include "partsfile/modntx.h"
#include "partsfile/partsearchpane.h"
#include "stockfixtures/stockgenerator.h"

#include <QApplication>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <gmock/gmock.h>

using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class FrmStockTest : public ::testing::Test {
protected:
    void SetUp() override {
        ResetAppState();
        ResetServiceProgramState();
        App().Settings.Nation = 1000;
        App().Settings.Instal = 1;
        App().PrgPath = install.dir("PRG");
        App().DataPath = install.dir("NVNV");
        install.installServiceProgram();
        QFile::copy(install.programDir() + u'/' + install.serviceProgramName(),
                    App().DataPath + install.serviceProgramName());
        std::vector<StockPart> parts;
        for (const char* number : {"ABC", "ABC1", "DEL1", "DEL2", "XYZ"})
            parts.emplace_back().number = QString::fromLatin1(number);
        ASSERT_FALSE(WriteStockFiles(App().PrgPath, parts).bytes.isEmpty());
        connPrg.open(App().PrgPath);
    }
    void TearDown() override {
        if (connPrg.isOpen())
            connPrg.close();
    }

    QStringList workRows(const QString& table) const { return TableRows(App().PrgPath, table); }
    // The service program's runs, by their arguments.
    QStringList serviceRuns() const {
        return LoggedLines(App().DataPath +
                           QFileInfo(install.serviceProgramName()).completeBaseName() + ".LOG");
    }
    // The part numbers the search lists for a text (after the heading).
    static QStringList found(const QString& text) {
        QStringList numbers;
        qint32 lines = 50;
        modNTX::SearchStockIn(App().PrgPath, text, lines, [&numbers](const QString& line) {
            numbers << line.left(15).trimmed();
        });
        return numbers.mid(1);
    }
    void type(frmStock& dialog, const QStringList& ori, const QStringList& nouv = {}) {
        for (int i = 0; i < frmStock::RowCount; ++i) {
            dialog.txtOri[i]->setText(ori.value(i));
            dialog.txtNouv[i]->setText(nouv.value(i));
        }
    }

    TempInstall install;
};

} // namespace

TEST_F(FrmStockTest, TheReplacementWritesTheRowsAsTypedAndTheRenumberedPartsAreFound) {
    // A search that has the files open while the service program works reads the old pair.
    QFile index(App().PrgPath + "STOCK.NTX");
    QFile table(App().PrgPath + "STOCK.DBF");
    ASSERT_TRUE(index.open(QIODevice::ReadOnly) && table.open(QIODevice::ReadOnly));

    frmStock dialog(nullptr);
    type(dialog, {"ABC", "  DEL1", " XYZ", "DEL2"}, {"ABC1", "DEL1B", "XABC", ""});
    ScriptedPrompter prompts;
    prompts.expectMessage(LoadText(99) + " ABC").expectMessage(LoadText(99) + "   DEL1");
    dialog.cmdRemplaceClick();
    // Blanks typed before a number are kept; an empty new number is written empty.
    EXPECT_THAT(workRows("MEREMPLA"), ElementsAre(" XYZ|XABC", "DEL2|"));
    EXPECT_THAT(serviceRuns(), ElementsAre("2 1"));
    EXPECT_FALSE(dialog.cmdRemplace->isEnabled());
    EXPECT_FALSE(dialog.cmdEfface->isEnabled());
    EXPECT_EQ(dialog.txtOri[0]->text(), "ABC"); // the fields keep their texts
    EXPECT_THAT(found(""), ElementsAre("ABC", "ABC1", "DEL1", "DEL2", "XABC"));

    QStringList meanwhile;
    qint32 lines = 50;
    EXPECT_TRUE(modNTX::ScanStock(index, table, "X", lines, [&meanwhile](const QString& line) {
                    meanwhile << line.left(15).trimmed();
                }).ok());
    EXPECT_THAT(meanwhile.mid(1), ElementsAre("XYZ"));
}

TEST_F(FrmStockTest, TheDeletionRemovesThePartsAndSaysDoneUnlessItsTableFails) {
    WriteBytes(App().PrgPath + "MEEFFACE.DBF", {}); // a leftover of another run goes first
    frmStock dialog(nullptr);
    ScriptedPrompter prompts;
    prompts.expectMessage(LoadText(117)).expectMessage(LoadText(117));
    dialog.cmdEffaceClick(); // four blank numbers still run the service program
    EXPECT_THAT(workRows("MEEFFACE"), IsEmpty());
    type(dialog, {"DEL1", "", "DEL2", "  "}, {"IGNORED"});
    dialog.cmdEffaceClick();
    EXPECT_THAT(workRows("MEEFFACE"), ElementsAre("DEL1", "DEL2"));
    EXPECT_THAT(serviceRuns(), ElementsAre("3 1", "3 1"));
    EXPECT_THAT(found("DEL"), IsEmpty());
    EXPECT_THAT(found(""), ElementsAre("ABC", "ABC1", "XYZ"));

    // A work table that cannot be written is reported, and the buttons come back.
    connPrg.close();
    prompts.expectMessageMatching(QStringLiteral("^errStock: 3704\r\n"));
    dialog.cmdRemplaceClick();
    EXPECT_THAT(serviceRuns(), ElementsAre("3 1", "3 1"));
    EXPECT_TRUE(dialog.cmdRemplace->isEnabled());
    EXPECT_TRUE(dialog.cmdEfface->isEnabled());
}

TEST_F(FrmStockTest, TypedLettersAreCapitalsEnterMovesOnAndALeftNumberIsSearched) {
    PartSearchPane parts;
    parts.txtMax->setText("1");
    parts.lstPieces->addItem("an earlier search");
    frmStock dialog(&parts);
    dialog.show();
    QApplication::setActiveWindow(&dialog);
    dialog.txtOri[0]->setFocus();
    QTest::keyClicks(dialog.txtOri[0], " ");
    QTest::keyClick(dialog.txtOri[0], Qt::Key_Return);
    EXPECT_TRUE(dialog.txtNouv[0]->hasFocus());
    // Leaving a blank number searches nothing.
    EXPECT_EQ(parts.lstPieces->item(0)->text(), "an earlier search");
    QTest::keyClicks(dialog.txtNouv[0], "ab-c1");
    EXPECT_EQ(dialog.txtNouv[0]->text(), "AB-C1");
    QTest::keyClick(dialog.txtNouv[0], Qt::Key_Return);
    QTest::keyClicks(dialog.txtOri[1], "del");
    QTest::keyClick(dialog.txtOri[1], Qt::Key_Return);
    EXPECT_EQ(dialog.txtOri[1]->text(), "DEL"); // Enter adds nothing
    // Leaving a number lists its parts in the main window: the heading and as many as txtMax says.
    ASSERT_EQ(parts.lstPieces->count(), 2);
    EXPECT_EQ(parts.lstPieces->item(0)->text(), modNTX::StockHeading());
    EXPECT_TRUE(parts.lstPieces->item(1)->text().startsWith("DEL1"));
    dialog.txtNouv[3]->setFocus();
    QTest::keyClick(dialog.txtNouv[3], Qt::Key_Enter);
    EXPECT_TRUE(dialog.cmdRemplace->hasFocus());
}
