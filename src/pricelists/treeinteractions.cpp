#include "pricelists/treeinteractions.h"

#include "app/messages.h"
#include "dbase/recordset.h"
#include "partsfile/partsearchpane.h"
#include "pricelists/configeditor.h"
#include "pricelists/configpane.h"
#include "pricelists/imagelist.h"
#include "pricelists/keyedtree.h"
#include "pricelists/pricelistsui.h"
#include "pricelists/treebuilder.h"
#include "pricelists/treepanes.h"

namespace {

constexpr int DeactivatedTab = 3; // the tab of the lists not activated

} // namespace

TreeInteractions::TreeInteractions(PriceListsUi& ui) : ui_(ui) {
    connect(ui_.listPane->tbsList, &QTabBar::currentChanged, this, [this](int tab) {
        tbsListBeforeClick();
        tbsListClick(tab);
    });
    connect(ui_.catPane->tbsCat, &QTabBar::currentChanged, this, [this](int tab) {
        tbsCatBeforeClick();
        tbsCatClick(tab);
    });
    for (KeyedTree* tree : ui_.listPane->tvwList)
        connectListTree(tree);
    for (KeyedTree* tree : ui_.catPane->tvwCat)
        connectCatTree(tree);
}

void TreeInteractions::connectListTree(KeyedTree* tree) {
    const int i = tree->index();
    connect(tree, &KeyedTree::focusReceived, this, [this, i] { tvwListGotFocus(i); });
    connect(tree, &KeyedTree::keyDown, this, [this, i](int key) { tvwListKeyDown(i, key); });
    connect(tree, &KeyedTree::mouseDown, this,
            [this, i](Qt::MouseButton b, const QPoint& p) { tvwListMouseDown(i, b, p); });
    connect(tree, &KeyedTree::mouseUp, this,
            [this, i](Qt::MouseButton b, const QPoint& p) { tvwListMouseUp(i, b, p); });
    connect(tree, &KeyedTree::nodeClick, this,
            [this, i](QTreeWidgetItem* node) { tvwListNodeClick(i, node); });
    connect(tree, &KeyedTree::nodeCheck, this,
            [this, i](QTreeWidgetItem* node) { tvwListNodeCheck(i, node); });
}

void TreeInteractions::connectCatTree(KeyedTree* tree) {
    const int i = tree->index();
    connect(tree, &KeyedTree::focusReceived, this, [this, i] { tvwCatGotFocus(i); });
    connect(tree, &QTreeWidget::itemExpanded, this,
            [this](QTreeWidgetItem* node) { tvwCatExpand(node); });
    connect(tree, &QTreeWidget::itemCollapsed, this,
            [this](QTreeWidgetItem* node) { tvwCatCollapse(node); });
    connect(tree, &KeyedTree::nodeClick, this,
            [this, i](QTreeWidgetItem* node) { tvwCatNodeClick(i, node); });
    connect(tree, &KeyedTree::nodeCheck, this,
            [this, i](QTreeWidgetItem* node) { tvwCatNodeCheck(i, node); });
}

KeyedTree& TreeInteractions::listTree(int i) const {
    return *ui_.listPane->tvwList.at(i);
}

KeyedTree& TreeInteractions::catTree(int i) const {
    return *ui_.catPane->tvwCat.at(i);
}

void TreeInteractions::tbsListBeforeClick() {
    listTree(ui_.state().CurrentListTab).hide();
}

// The configuration pane and the Désactiver button serve the activated lists; the tab of the
// lists not activated offers Activer instead.
void TreeInteractions::tbsListClick(int tab) {
    if (tab < 0 || tab > DeactivatedTab)
        return;
    KeyedTree& tree = listTree(tab);
    tree.show();
    ui_.state().CurrentListTab = tab;
    const CommandButtons& buttons = ui_.parts().buttons;
    const bool activated = tab != DeactivatedTab;
    ui_.configPane->setEnabled(activated);
    if (activated)
        buttons.showInPlaceOf(4, 1);
    else
        buttons.showInPlaceOf(1, 4);
    buttons.setMenuCaption(1, LoadText(activated ? 121 : 122));
    tree.setFocus();
}

void TreeInteractions::tbsCatBeforeClick() {
    catTree(ui_.state().CurrentCatTab).hide();
}

void TreeInteractions::tbsCatClick(int tab) {
    if (tab < 0 || tab > 1)
        return;
    KeyedTree& tree = catTree(tab);
    tree.show();
    ui_.state().CurrentCatTab = tab;
    if (tree.isVisible())
        tree.setFocus();
}

void TreeInteractions::tvwListGotFocus(int i) {
    ui_.state().LastTreeFocus = listTree(i).objectName();
    Nodeclick(i, listTree(i).selectedNode());
}

void TreeInteractions::tvwListKeyDown(int i, int key) {
    if (key == Qt::Key_Space)
        ui_.state().PendingCheckNode = listTree(i).selectedNode();
    else
        ui_.state().KeyboardNavigation = true;
}

void TreeInteractions::tvwListMouseDown(int i, Qt::MouseButton button, const QPoint& pos) {
    PriceListState& state = ui_.state();
    state.KeyboardNavigation = false;
    if (button != Qt::LeftButton)
        return;
    KeyedTree& tree = listTree(i);
    if (tree.isOnCheckBox(pos))
        state.PendingCheckNode = tree.itemAt(pos);
}

void TreeInteractions::tvwListMouseUp(int i, Qt::MouseButton, const QPoint& pos) {
    PriceListState& state = ui_.state();
    if (state.PendingCheckNode)
        checkHandling(state.PendingCheckNode);
    KeyedTree& tree = listTree(i);
    if (QTreeWidgetItem* node = tree.itemAt(pos))
        tree.selectNode(node);
    Nodeclick(i, tree.selectedNode());
}

void TreeInteractions::tvwListNodeClick(int i, QTreeWidgetItem* node) {
    if (ui_.state().KeyboardNavigation)
        Nodeclick(i, node);
}

void TreeInteractions::tvwListNodeCheck(int, QTreeWidgetItem* node) {
    if (node && node == ui_.state().PendingCheckNode)
        checkHandling(node);
}

// The user ticked or cleared a list: its mark follows the check box.
void TreeInteractions::checkHandling(QTreeWidgetItem* node) {
    PriceListState& state = ui_.state();
    state.PendingCheckNode = nullptr;
    const int row = KeyedTree::rowOf(node);
    if (row < 0 || row > state.ListMarks.upperBound())
        return;
    state.CurrentListRow = row;
    // With changes pending the recordset stays on the edited row: moving off it would write
    // them before the user is asked.
    if (state.ConfigDirty == Dirty::None)
        RunGuarded(QStringLiteral("errNodeCheck: "),
                   [&] { ui_.rsPrixList().move(row, MoveStart::First); });
    state.ListMarks(0, row) = KeyedTree::isChecked(node) ? KeyedTree::fileCodeOf(node) : QString();
}

void TreeInteractions::tvwCatGotFocus(int i) {
    ui_.state().LastTreeFocus = catTree(i).objectName();
}

void TreeInteractions::tvwCatExpand(QTreeWidgetItem* node) {
    node->setIcon(0, ImageList::image(ImageList::OpenCatalogue));
}

void TreeInteractions::tvwCatCollapse(QTreeWidgetItem* node) {
    node->setIcon(0, ImageList::image(ImageList::ClosedCatalogue));
}

// A list under a catalogue can be dissociated from it; anything else offers the association.
void TreeInteractions::tvwCatNodeClick(int i, QTreeWidgetItem* node) {
    const CommandButtons& buttons = ui_.parts().buttons;
    const bool listUnderCatalogue = i == 0 && node && node->childCount() == 0 && node->parent();
    if (listUnderCatalogue) {
        buttons.setMenuCaption(4, LoadText(125));
        buttons.showInPlaceOf(6, 5);
        Nodeclick(i, node);
    } else {
        buttons.setMenuCaption(4, LoadText(124));
        buttons.showInPlaceOf(5, 6);
    }
    catTree(i).setFocus();
}

void TreeInteractions::tvwCatNodeCheck(int, QTreeWidgetItem* node) {
    ui_.state().CheckedCatCount += KeyedTree::isChecked(node) ? 1 : -1;
}

void TreeInteractions::Nodeclick(int, QTreeWidgetItem* node) {
    PriceListState& state = ui_.state();
    if (state.ConfigDirty != Dirty::None) {
        ui_.config().SauveChange(state.ConfigDirty);
        state.PendingCheckNode = nullptr;
        return;
    }
    const int row = KeyedTree::rowOf(node);
    if (row < 0)
        return;
    RunGuarded(QStringLiteral("errNodeclick: "), [&] {
        state.CurrentListRow = row;
        Recordset& rs = ui_.rsPrixList();
        rs.move(row, MoveStart::First);
        ui_.config().showList(KeyedTree::colorOf(node) != ColorInactive);
        if (PartSearchPane* search = ui_.parts().partSearch)
            search->setGroupCode(rs.value(PrixField::CodeGro).toString().trimmed());
    });
}
