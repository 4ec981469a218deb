// The trees built from small PRIXLIST and CATALIST tables, and the rules they follow.

#include "listfixture.h"

#include "app/appstate.h"
#include "pricelists/imagelist.h"
#include "pricelists/programend.h"

#include <QFontInfo>
#include <QScrollBar>

namespace {

const QDate Tomorrow = FixtureToday.addDays(1);

// Rows come back in DESC order, so the descs fix each list's row position.
QList<ListRow> dateCases() {
    return {
        {"A BOTH NULL", "AAA", true, {}, {}, "AB"},
        {"B STK NULL", "BBB", true, Past, {}, "BOS", false, 1.0, "MATB"},
        {"C EFF NULL", "CCC", true, {}, Past},
        {"D TODAY", "DDD", true, FixtureToday, FixtureToday},
        {"E TOMORROW, A DESC OF FORTY CHARACTERS.", "EEE", true, Tomorrow, Past, "EE"},
        {"F OFF", "FFF", false, Tomorrow, {}, "", false, 1.0, "", "ABC;"},
        {"G UP TO DATE", "GGG", true, Past, Past},
        {"H DATES DIFFER", "HHH", true, Past.addDays(-3), Past}, // DATESTK the later
        {"I TODAY DATES DIFFER", "III", true, FixtureToday, Past},
        {"J TOMORROW STK NULL", "JJJ", true, Tomorrow},
    };
}

QList<CatalogueRow> catalogues() {
    return {{"ABC", "Catalogue A"}, {"XY", "Catalogue X"}, {"Z", "Catalogue Z", false}};
}

} // namespace

TEST(Trees, EachListGoesToTheBranchesOfItsDates) {
    ListFixture f(dateCases(), catalogues(), false);
    f.state.ListMarks.redim(7);
    f.state.ListMarks(1, 5) = "1"; // left by a list that was there before
    f.ui->refresh();
    EXPECT_EQ(Keys(f.list(0)), (QStringList{"L000", "L001", "L002", "L003", "L004", "L006", "L007",
                                            "L008", "L009"}));
    EXPECT_EQ(Keys(f.list(1)), (QStringList{"L000", "L001", "L007", "L008"}));
    EXPECT_EQ(Keys(f.list(2)), (QStringList{"L004", "L009"}));
    EXPECT_EQ(Keys(f.list(3)), (QStringList{"L005"}));
    EXPECT_EQ(f.list(0).node("L000")->foreground(0).color(), ToQColor(ColorToUpdate));
    // Desc and group code padded into columns, the matrix after them; a long desc shown whole.
    const auto text = [&](const char* key) { return f.list(0).node(key)->text(0); };
    EXPECT_EQ(text("L001"), QString("B STK NULL").leftJustified(34) + "BOS  MATB");
    EXPECT_EQ(text("L002"), QString("C EFF NULL").leftJustified(39));
    EXPECT_EQ(text("L004"), "E TOMORROW, A DESC OF FORTY CHARACTERS.EE   ");

    EXPECT_EQ(f.state.ListMarks.upperBound(), 10);
    for (int row = 0; row < 10; ++row)
        EXPECT_EQ(f.state.ListMarks(1, row), f.list(1).node(ListKey(row)) ? "1" : "") << row;
    // The pane is tied to the row again once the rows are walked.
    EXPECT_TRUE(f.binding.isBound());

    // The list selected is selected and shown again after a rebuild.
    f.list(0).selectNode(f.list(0).node("L006"));
    f.ui->refresh();
    EXPECT_EQ(KeyedTree::keyOf(f.list(0).selectedNode()), "L006");
    EXPECT_EQ(f.state.CurrentListRow, 6);
    EXPECT_EQ(f.configPane->lblConfig[1]->text(), "G UP TO DATE");
}

TEST(Trees, CatalogueTreesHoldTheAssociatedActivatedLists) {
    QList<ListRow> lists = {
        {"A TWO CATALOGUES", "AAA", true, Past, Past, "AB", false, 1.0, "", "ABC;XY;"},
        {"B NO SEMICOLON", "BBB", true, Past, Past, "", false, 1.0, "", "ABC"},
        {"C ONE CATALOGUE", "CCC", true, Past, {}, "", false, 1.0, "", "ABC;"},
        {"D NOT ACTIVATED", "DDD", false, Past, Past, "", false, 1.0, "", "XY;"},
    };
    const QDate older = Past.addDays(-1);
    QList<CatalogueRow> cats = {{"ABC", "Alpha"},
                                {"XY", "Xray"},
                                {"Q", "Quebec", true, {}, Past},
                                {"Z", "Zulu", false, Past, older},
                                {"UPD", "Update me", true, Past, older},
                                {"NEW", "New", true, Past}};
    ListFixture f(lists, cats);

    EXPECT_EQ(Keys(f.cat(0)), (QStringList{"CABC", "CNEW", "C  Q", "CUPD", "C XY"}));
    EXPECT_EQ(Keys(f.cat(1)), (QStringList{"C  Z"}));
    QTreeWidgetItem* abc = f.cat(0).node("CABC");
    ASSERT_EQ(abc->childCount(), 2);
    EXPECT_EQ(KeyedTree::keyOf(abc->child(0)), "L0000");
    EXPECT_EQ(KeyedTree::keyOf(abc->child(1)), "L0022");
    EXPECT_EQ(KeyedTree::keyOf(f.cat(0).node("C XY")->child(0)), "L0001");
    EXPECT_EQ(abc->child(1)->text(0), f.list(0).node("L002")->text(0));
    EXPECT_EQ(KeyedTree::rowOf(abc->child(1)), 2);

    // With lists: black and the closed picture; without: the up-to-date colour and no picture.
    EXPECT_EQ(KeyedTree::colorOf(abc), ColorBlack);
    EXPECT_EQ(abc->icon(0).cacheKey(), ImageList::image(ImageList::ClosedCatalogue).cacheKey());
    EXPECT_EQ(KeyedTree::colorOf(f.cat(0).node("C  Q")), ColorUpToDate);
    EXPECT_TRUE(f.cat(0).node("C  Q")->icon(0).isNull());

    // Catalist ticks the activated catalogues whose DATEEFF is set and differs, and only those.
    EXPECT_EQ(f.state.CheckedCatCount, 2);
    EXPECT_TRUE(KeyedTree::isChecked(f.cat(0).node("CUPD")));
    EXPECT_TRUE(KeyedTree::isChecked(f.cat(0).node("CNEW")));
    EXPECT_FALSE(KeyedTree::isChecked(abc));
}

TEST(Trees, ListMarksSurviveARebuildAndShiftWhenAListIsAdded) {
    QList<ListRow> lists = {{"B LIST", "BBB", true, Past, Past},
                            {"D LIST", "DDD", true, Past, {}},
                            {"F LIST", "FFF", true, Past, Past}};
    ListFixture f(lists, catalogues());
    f.state.ListMarks(0, 1) = "DDD";
    f.ui->refresh();
    EXPECT_TRUE(KeyedTree::isChecked(f.list(0).node("L001")));
    EXPECT_TRUE(KeyedTree::isChecked(f.list(1).node("L001")));
    EXPECT_FALSE(KeyedTree::isChecked(f.list(0).node("L000")));
    EXPECT_EQ(f.state.ListMarks(0, 1), "DDD");

    // A list sorted before D arrives: the mark stays on row 1, which is now C.
    lists.insert(1, {"C LIST", "CCC", true, Past, Past});
    WritePrixList(f.dir.path(), lists); // as another workstation would
    f.rsPrixList.requery();
    f.ui->refresh();
    EXPECT_EQ(f.state.ListCount, 4);
    EXPECT_TRUE(KeyedTree::isChecked(f.list(0).node("L001"))) << "now C LIST";
    EXPECT_FALSE(KeyedTree::isChecked(f.list(0).node("L002")));
    // D, to be updated, moved to row 2; row 1's update mark went with the list now there.
    EXPECT_EQ(f.state.ListMarks(1, 1), "");
    EXPECT_EQ(f.state.ListMarks(1, 2), "1");
}

// A list naming a catalogue the trees do not hold sends the table back to the conversion, once,
// and the rebuild stops there.
TEST(Trees, CatalogueCodeWithoutNodeRestartsTheConversion) {
    QList<ListRow> lists = {{"A LIST", "AAA", true, Past, Past, "", false, 1.0, "", "ABC;NOP;"},
                            {"B LIST", "BBB", true, Past, Past}};
    ListFixture f(lists, catalogues(), false);
    int restarts = 0;
    const ConversionRestart former = SetConversionRestart([&] { ++restarts; });
    f.ui->refresh(); // the conversion speaks for itself: no box here
    SetConversionRestart(former);
    EXPECT_EQ(restarts, 1);
    EXPECT_EQ(f.list(0).node("L001"), nullptr);
}

// A catalogue code given twice, and an activated catalogue that has no node (no code at all),
// are reported in their procedures' boxes; the other catalogues are built and ticked. No list
// gives empty trees and one mark row.
TEST(Trees, DuplicateOrMissingCatalogueNodesAreReported) {
    const QDate older = Past.addDays(-1);
    ListFixture f({},
                  {{"ABC", "Alpha"},
                   {"ABC", "Alpha again"},
                   {"", "No code", true, Past, older},
                   {"XY", "Xray", true, Past, older}},
                  false);
    ScriptedPrompter prompts;
    prompts.expectMessage("ErrSetupCat: 35602\nKey is not unique in collection\n" +
                          App().ContactLine);
    prompts.expectMessage("errCatalist:35601\nElement not found\n" + App().ContactLine);
    f.ui->refresh();
    EXPECT_EQ(Keys(f.cat(0)), (QStringList{"CABC", "C XY"}));
    EXPECT_EQ(f.state.CheckedCatCount, 1);
    EXPECT_TRUE(KeyedTree::isChecked(f.cat(0).node("C XY")));
    EXPECT_EQ(f.list(0).topLevelItemCount() + f.list(3).topLevelItemCount(), 0);
    EXPECT_EQ(f.state.ListMarks.upperBound(), 0);
}

// The headings are padded as the node texts are and drawn in the trees' fixed-pitch font, from
// where the node texts start: each heading stands over its column, in both languages.
TEST(Trees, ColumnHeadingsStandOverTheColumnsOfTheNodes) {
    ListFixture f(dateCases(), catalogues());
    QLabel* heading = f.listPane->lblTvw;
    KeyedTree& tree = f.list(0);
    EXPECT_TRUE(QFontInfo(heading->font()).fixedPitch());
    const QString node = tree.node("L001")->text(0); // B STK NULL, BOS, MATB
    for (int nation : {1000, 2000}) {
        App().Settings.Nation = nation;
        f.listPane->label();
        EXPECT_EQ(heading->text().indexOf("Code"), node.indexOf("BOS")) << nation;
        EXPECT_EQ(heading->text().indexOf(LoadText(63)), node.indexOf("MATB")) << nation;
    }
    App().Settings.Nation = 1000;

    const auto headingLeft = [&] { return heading->mapTo(f.listPane, QPoint(0, 0)).x(); };
    const auto nodeTextLeft = [&] {
        return tree.mapTo(f.listPane, QPoint(tree.textLeft(), 0)).x();
    };
    const QRect box = tree.checkBoxRect(tree.node("L001"));
    EXPECT_GT(nodeTextLeft(), tree.viewport()->mapTo(f.listPane, box.topRight()).x());
    EXPECT_EQ(headingLeft(), nodeTextLeft());
    tree.resize(150, tree.height()); // narrow: the tree scrolls sideways, the heading with it
    tree.horizontalScrollBar()->setValue(20);
    EXPECT_EQ(headingLeft(), nodeTextLeft());
}

// The trees show the values as the table reads them; blanks kept after a value do not count.
TEST(TreeRules, BlanksAfterAValueDoNotPushTheColumns) {
    EXPECT_EQ(ListNodeText("A   ", "AB  ", "M  "), ListNodeText("A", "AB", "M"));
}

// The trees apply the date rules to activated lists; the download's list reads this too.
TEST(TreeRules, AListNotActivatedIsInNoBranch) {
    const QDate today(2026, 3, 16);
    const ListBranches off = BranchesOf(false, std::nullopt, today.addDays(1), today);
    EXPECT_EQ(off.color, ColorInactive);
    EXPECT_FALSE(off.activated || off.toUpdate || off.upcoming);
}

TEST(TreeRules, CatnoIsReadCodeByCodeUpToEachSemicolon) {
    EXPECT_EQ(CatnoCodes("ABC;XYZ;"), (QStringList{"ABC", "XYZ"}));
    EXPECT_EQ(CatnoCodes("ABC;XYZ"), (QStringList{"ABC"}));
    EXPECT_TRUE(CatnoCodes("ABC").isEmpty());
    EXPECT_TRUE(CatnoCodes("").isEmpty());
    EXPECT_TRUE(CatnoCodes(";ABC;").isEmpty());
    EXPECT_EQ(CatnoCodes("AB;;XYZ;"), (QStringList{"AB"}));
}
