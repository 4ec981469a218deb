#include "pricelists/treeinteractions.h"

#include "dbase/recordset.h"
#include "pricelists/imagelist.h"
#include "pricelists/keyedtree.h"
#include "pricelists/runguarded.h"
#include "pricelists/treepanes.h"

namespace {

constexpr int DeactivatedTab = 3; // the tab of the lists not activated

} // namespace

TreeInteractions::TreeInteractions(ListTreePane& lists, CatTreePane& catalogues,
                                   PriceListState& state, Recordset& rsPrixList)
    : lists_(lists), catalogues_(catalogues), state_(state), rsPrixList_(rsPrixList) {
    connect(lists_.tbsList, &QTabBar::currentChanged, this, [this](int tab) {
        tbsListBeforeClick();
        tbsListClick(tab);
    });
    connect(catalogues_.tbsCat, &QTabBar::currentChanged, this, [this](int tab) {
        tbsCatBeforeClick();
        tbsCatClick(tab);
    });
    for (KeyedTree* tree : lists_.tvwList)
        connectListTree(tree);
    for (KeyedTree* tree : catalogues_.tvwCat)
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
    return *lists_.tvwList.at(i);
}

KeyedTree& TreeInteractions::catTree(int i) const {
    return *catalogues_.tvwCat.at(i);
}

void TreeInteractions::tbsListBeforeClick() {
    listTree(state_.CurrentListTab).hide();
}

// The configuration pane and the Désactiver button serve the activated lists; the tab of the
// lists not activated offers Activer instead.
void TreeInteractions::tbsListClick(int tab) {
    if (tab < 0 || tab > DeactivatedTab)
        return;
    KeyedTree& tree = listTree(tab);
    tree.show();
    state_.CurrentListTab = tab;
    Q_EMIT listTabShown(tab != DeactivatedTab);
    tree.setFocus();
}

void TreeInteractions::tbsCatBeforeClick() {
    catTree(state_.CurrentCatTab).hide();
}

void TreeInteractions::tbsCatClick(int tab) {
    if (tab < 0 || tab > 1)
        return;
    KeyedTree& tree = catTree(tab);
    tree.show();
    state_.CurrentCatTab = tab;
    if (tree.isVisible())
        tree.setFocus();
}

void TreeInteractions::tvwListGotFocus(int i) {
    state_.LastTreeFocus = listTree(i).objectName();
    Q_EMIT nodeclick(i, listTree(i).selectedNode());
}

void TreeInteractions::tvwListKeyDown(int i, int key) {
    if (key == Qt::Key_Space)
        state_.PendingCheckNode = listTree(i).selectedNode();
    else
        state_.KeyboardNavigation = true;
}

void TreeInteractions::tvwListMouseDown(int i, Qt::MouseButton button, const QPoint& pos) {
    PriceListState& state = state_;
    state.KeyboardNavigation = false;
    if (button != Qt::LeftButton)
        return;
    KeyedTree& tree = listTree(i);
    if (tree.isOnCheckBox(pos))
        state.PendingCheckNode = tree.itemAt(pos);
}

void TreeInteractions::tvwListMouseUp(int i, Qt::MouseButton, const QPoint& pos) {
    PriceListState& state = state_;
    if (state.PendingCheckNode)
        checkHandling(state.PendingCheckNode);
    KeyedTree& tree = listTree(i);
    if (QTreeWidgetItem* node = tree.itemAt(pos))
        tree.selectNode(node);
    Q_EMIT nodeclick(i, tree.selectedNode());
}

void TreeInteractions::tvwListNodeClick(int i, QTreeWidgetItem* node) {
    if (state_.KeyboardNavigation)
        Q_EMIT nodeclick(i, node);
}

void TreeInteractions::tvwListNodeCheck(int, QTreeWidgetItem* node) {
    if (node && node == state_.PendingCheckNode)
        checkHandling(node);
}

// The user ticked or cleared a list: its mark follows the check box.
void TreeInteractions::checkHandling(QTreeWidgetItem* node) {
    PriceListState& state = state_;
    state.PendingCheckNode = nullptr;
    const int row = KeyedTree::rowOf(node);
    if (row < 0 || row > state.ListMarks.upperBound())
        return;
    state.CurrentListRow = row;
    // With changes pending the recordset stays on the edited row: moving off it would write
    // them before the user is asked.
    if (state.ConfigDirty == Dirty::None)
        RunGuarded(ErrorHandler{QStringLiteral("errNodeCheck: ")},
                   [&] { rsPrixList_.move(row, MoveStart::First); });
    state.ListMarks(0, row) = KeyedTree::isChecked(node) ? KeyedTree::fileCodeOf(node) : QString();
}

void TreeInteractions::tvwCatGotFocus(int i) {
    state_.LastTreeFocus = catTree(i).objectName();
}

void TreeInteractions::tvwCatExpand(QTreeWidgetItem* node) {
    node->setIcon(0, ImageList::image(ImageList::OpenCatalogue));
}

void TreeInteractions::tvwCatCollapse(QTreeWidgetItem* node) {
    node->setIcon(0, ImageList::image(ImageList::ClosedCatalogue));
}

// A list under a catalogue can be dissociated from it; anything else offers the association.
void TreeInteractions::tvwCatNodeClick(int i, QTreeWidgetItem* node) {
    const bool listUnderCatalogue = i == 0 && node && node->childCount() == 0 && node->parent();
    Q_EMIT catalogueNodeChosen(listUnderCatalogue);
    if (listUnderCatalogue)
        Q_EMIT nodeclick(i, node);
    catTree(i).setFocus();
}

void TreeInteractions::tvwCatNodeCheck(int, QTreeWidgetItem* node) {
    state_.CheckedCatCount += KeyedTree::isChecked(node) ? 1 : -1;
}
