#pragma once

// What the user's actions on the two tab strips and the six trees do: switching tabs, clicking
// a node, ticking a check box with the mouse or the space bar, expanding a catalogue, and
// asking for Nodeclick, which loads the list clicked into the configuration pane. A check mark
// in a list tree changes ListMarks only when the user ticked it.

#include "pricelists/pricelistsstate.h"

#include <QObject>
#include <QPoint>

class CatTreePane;
class KeyedTree;
class ListTreePane;
class QTreeWidgetItem;
class Recordset;

class TreeInteractions : public QObject {
    Q_OBJECT
public:
    TreeInteractions(ListTreePane& lists, CatTreePane& catalogues, PriceListState& state,
                     Recordset& rsPrixList);

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

Q_SIGNALS:
    // Nodeclick is to run for a node (index: the tree's place in its array; node may be null).
    void nodeclick(int index, QTreeWidgetItem* node);
    // A list tab was chosen: one of the three tabs of activated lists, or the fourth.
    void listTabShown(bool activatedLists);
    // A node of a catalogue tree was clicked: a list under a catalogue, or anything else.
    void catalogueNodeChosen(bool listUnderCatalogue);

private:
    void connectListTree(KeyedTree* tree);
    void connectCatTree(KeyedTree* tree);
    void checkHandling(QTreeWidgetItem* node);
    KeyedTree& listTree(int i) const;
    KeyedTree& catTree(int i) const;

    ListTreePane& lists_;
    CatTreePane& catalogues_;
    PriceListState& state_;
    Recordset& rsPrixList_;
};
