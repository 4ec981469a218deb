#pragma once

// Builds the list and catalogue trees from PRIXLIST and CATALIST: SetupCat (the catalogue
// trees), SetupList (the four list trees and the lists hung under their catalogues, the saved
// selection selected again, then Catalist), Catalist (the catalogues to update) and SetList
// (empties the four list trees). What a restored selection shows is the caller's business.

#include "pricelists/pricelistsstate.h"
#include "pricelists/treerules.h"

#include <QString>

class CatTreePane;
class FieldBinding;
class KeyedTree;
class ListTreePane;
class QTreeWidgetItem;
class Recordset;

class TreeBuilder {
public:
    struct Tables {
        Recordset& rsPrixList;
        Recordset& rsCataList;
        // Where the configuration pane is tied to the current PRIXLIST row: untied while the
        // rows are walked. May be null.
        FieldBinding* binding = nullptr;
    };
    TreeBuilder(ListTreePane& lists, CatTreePane& catalogues, PriceListState& state, Tables tables);

    // A node selected again after a rebuild, and the tree it is in.
    struct Selected {
        int tree = -1;
        QTreeWidgetItem* node = nullptr;
    };
    struct Restored {
        Selected list; // to be shown in the configuration pane
        Selected catalogue;
        bool catalogueRestored = false; // a catalogue node was saved: its click handling runs
    };

    void SetupCat();
    // Returns the nodes selected again; null nodes when nothing was saved or the program ends.
    Restored SetupList();
    void Catalist();
    // Shows or hides the four list trees and empties them.
    void SetList(bool visible);

private:
    struct ListFields; // ordinals of the PRIXLIST fields read per row
    bool walkLists();
    bool addListRow(int row, const ListFields& fields, int& childCount);
    bool addCatalogueChildren(int row, const QString& catno, const QString& text, OleColor color,
                              int& childCount);
    Restored restoreSelection();
    KeyedTree& listTree(int index) const;
    KeyedTree& catTree(int index) const;

    ListTreePane& lists_;
    CatTreePane& catalogues_;
    PriceListState& state_;
    Tables tables_;
};
