#pragma once

// What the user's actions on the two tab strips and the six trees do: switching tabs, clicking
// a node, ticking a check box with the mouse or the space bar, expanding a catalogue, and
// Nodeclick, which loads the list clicked into the configuration pane. A check mark in a list
// tree changes ListMarks only when the user ticked it.

#include <QObject>
#include <QPoint>

class KeyedTree;
class PriceListsUi;
class QTreeWidgetItem;

class TreeInteractions : public QObject {
    Q_OBJECT
public:
    explicit TreeInteractions(PriceListsUi& ui);

    // Tab strips: the tree of the tab left is hidden, that of the tab chosen shown.
    void tbsListBeforeClick();
    void tbsListClick(int tab);
    void tbsCatBeforeClick();
    void tbsCatClick(int tab);

    // List trees tvwList(i); positions are in the tree's viewport.
    void tvwListGotFocus(int i);
    void tvwListKeyDown(int i, int key);
    void tvwListMouseDown(int i, Qt::MouseButton button, const QPoint& pos);
    void tvwListMouseUp(int i, Qt::MouseButton button, const QPoint& pos);
    void tvwListNodeClick(int i, QTreeWidgetItem* node);
    void tvwListNodeCheck(int i, QTreeWidgetItem* node);

    // Catalogue trees tvwCat(i).
    void tvwCatGotFocus(int i);
    void tvwCatExpand(QTreeWidgetItem* node);
    void tvwCatCollapse(QTreeWidgetItem* node);
    void tvwCatNodeClick(int i, QTreeWidgetItem* node);
    void tvwCatNodeCheck(int i, QTreeWidgetItem* node);

    // Shows the list a node stands for in the configuration pane (index: the tree's place in
    // its array). Offers to save first when changes are pending, and then shows nothing.
    void Nodeclick(int index, QTreeWidgetItem* node);

private:
    void connectListTree(KeyedTree* tree);
    void connectCatTree(KeyedTree* tree);
    void checkHandling(QTreeWidgetItem* node);
    KeyedTree& listTree(int i) const;
    KeyedTree& catTree(int i) const;

    PriceListsUi& ui_;
};
