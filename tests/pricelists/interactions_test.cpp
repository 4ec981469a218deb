// The user's actions on the trees and the tab strips.

#include "listfixture.h"

#include "pricelists/explistrules.h"
#include "pricelists/programend.h"

#include <QLineEdit>

namespace {

QList<ListRow> lists() {
    return {{"A FREINS", "AAA", true, Past, Past, "AB", false, 1.0, "", "ABC;"},
            {"B FILTRES", "BBB", true, Past, {}, "BOS"},
            {"C BOUGIES", "CCC", true, Past, Past, "", false, 2.0, "", "ABC;"},
            {"D COURROIES", "DDD", false, Past, Past}};
}

QList<CatalogueRow> catalogues() {
    return {{"ABC", "Alpha"}, {"XY", "Xray"}};
}

void click(KeyedTree& tree, QPoint at) {
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, at);
}

// The list shown in the pane: its row and the heading of the pane.
void expectShown(ListFixture& f, int row, const QString& heading) {
    EXPECT_EQ(f.state.CurrentListRow, row);
    EXPECT_EQ(f.configPane->lblConfig[1]->text(), heading);
}

} // namespace

TEST(Interactions, TickingTheBoxClickingTheTextTheSpaceBarAndTheArrows) {
    ListFixture f(lists(), catalogues());
    KeyedTree& tree = f.list(0);
    QTreeWidgetItem* b = tree.node("L001");
    QTreeWidgetItem* c = tree.node("L002");

    // On the box: ticked, marked, selected and shown.
    click(tree, tree.checkBoxRect(b).center());
    EXPECT_TRUE(KeyedTree::isChecked(b));
    EXPECT_EQ(f.state.ListMarks(0, 1), "BBB");
    EXPECT_EQ(tree.selectedNode(), b);
    expectShown(f, 1, "B FILTRES");

    // On the text: selected and shown, the mark left as it was.
    click(tree, OnText(tree, c));
    EXPECT_FALSE(KeyedTree::isChecked(c));
    EXPECT_TRUE(f.state.ListMarks(0, 2).isEmpty());
    EXPECT_EQ(tree.selectedNode(), c);
    expectShown(f, 2, "C BOUGIES");

    // The space bar toggles the selected list's mark.
    QTest::keyClick(&tree, Qt::Key_Space);
    EXPECT_TRUE(KeyedTree::isChecked(c));
    EXPECT_EQ(f.state.ListMarks(0, 2), "CCC");
    QTest::keyClick(&tree, Qt::Key_Space);
    EXPECT_FALSE(KeyedTree::isChecked(c));
    EXPECT_TRUE(f.state.ListMarks(0, 2).isEmpty());

    // A move by the keyboard shows the list reached.
    EXPECT_FALSE(f.state.KeyboardNavigation);
    QTest::keyClick(&tree, Qt::Key_Up);
    EXPECT_TRUE(f.state.KeyboardNavigation);
    expectShown(f, 1, "B FILTRES");
    EXPECT_EQ(f.state.LastTreeFocus, "tvwList");

    // The box again clears the mark.
    click(tree, tree.checkBoxRect(b).center());
    EXPECT_TRUE(f.state.ListMarks(0, 1).isEmpty());

    // A check mark the program sets leaves the selection alone.
    KeyedTree::setChecked(tree.node("L000"), true);
    EXPECT_TRUE(f.state.ListMarks(0, 0).isEmpty());
}

// The tab strips: the fourth list tab disables the pane and offers activation; the catalogue
// tree's nodes offer association or dissociation; a rebuild keeps the list tab and goes back to
// the first catalogue tab.
TEST(Interactions, TheTabStripsAndTheCatalogueNodes) {
    ListFixture f(lists(), catalogues());
    QTabBar* tabs = f.listPane->tbsList;
    tabs->setCurrentIndex(3);
    EXPECT_EQ(f.state.CurrentListTab, 3);
    EXPECT_FALSE(f.configPane->isEnabled());
    EXPECT_EQ(f.activatedTab, false);
    // A list not activated is shown with message 1029 for a heading.
    click(f.list(3), OnText(f.list(3), f.list(3).node("L003")));
    EXPECT_EQ(f.configPane->lblConfig[1]->text(), LoadText(29));
    tabs->setCurrentIndex(1);
    EXPECT_TRUE(f.configPane->isEnabled());
    EXPECT_EQ(f.activatedTab, true);

    KeyedTree& cats = f.cat(0);
    QTreeWidgetItem* abc = cats.node("CABC");
    abc->setExpanded(true);
    click(cats, OnText(cats, abc->child(1))); // C BOUGIES under Alpha
    EXPECT_EQ(f.listUnderCatalogue, true);
    expectShown(f, 2, "C BOUGIES");
    EXPECT_EQ(f.state.LastTreeFocus, "tvwCat");
    click(cats, OnText(cats, cats.node("C XY")));
    EXPECT_EQ(f.listUnderCatalogue, false);

    // Ticking a catalogue counts it; the count is made afresh at each rebuild.
    QTreeWidgetItem* xy = cats.node("C XY");
    click(cats, cats.checkBoxRect(xy).center());
    EXPECT_EQ(f.state.CheckedCatCount, 1);
    click(cats, cats.checkBoxRect(xy).center());
    EXPECT_EQ(f.state.CheckedCatCount, 0);

    f.catPane->tbsCat->setCurrentIndex(1);
    EXPECT_EQ(f.state.CurrentCatTab, 1);
    EXPECT_TRUE(f.cat(1).isVisible());
    EXPECT_FALSE(cats.isVisible());
    f.ui->refresh();
    EXPECT_EQ(f.state.CurrentCatTab, 0);
    EXPECT_TRUE(cats.isVisible());
    EXPECT_TRUE(f.list(1).isVisible());
    EXPECT_FALSE(f.list(0).isVisible());

    // A list table that can no longer be read ends the program.
    f.rsPrixList.close();
    int ends = 0;
    const ProgramEnd former = SetProgramEnd([&] { ++ends; });
    f.ui->refresh();
    SetProgramEnd(former);
    EXPECT_EQ(ends, 1);
}

TEST(Interactions, ListFilterFieldUpperCasesMovesOnEnterAndIsDisabledWhenBlank) {
    QWidget window;
    auto* field = new QLineEdit(&window);
    auto* next = new QLineEdit(&window);
    ExpListRules::install(field);
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    field->setFocus();
    QTest::keyClicks(field, "bos 2");
    EXPECT_EQ(field->text(), "BOS 2");
    QTest::keyClick(field, Qt::Key_Return);
    EXPECT_TRUE(next->hasFocus());
    EXPECT_TRUE(field->isEnabled());

    field->setFocus();
    field->setText("   ");
    next->setFocus();
    EXPECT_FALSE(field->isEnabled());
}
