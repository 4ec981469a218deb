#pragma once

// What the commands of the strip that work on the price lists (selection by name, activation
// and deactivation, association) are given by the main window: the price-list panes with their
// logic, the state they share, and the tables. frmMain makes one for its lifetime:
//
//     ListCommandContext{*priceLists, listState, *listPane, *catPane,
//                        {rsPrixList, rsCataList, &rsPrixCodes, &ConfigBinding()}, this}
//
// Each command ends by the refresh of the trees (PriceListsUi::refresh).

#include "pricelists/pricelistsstate.h"

#include <QString>

class CatTreePane;
class FieldBinding;
class ListTreePane;
class PriceListsUi;
class QWidget;
class Recordset;

struct ListCommandTables {
    Recordset& rsPrixList;
    Recordset& rsCataList;
    Recordset* rsPrixCodes = nullptr; // requeried after a change of codes; may be null
    // Where the configuration pane is tied to the current PRIXLIST row; may be null.
    FieldBinding* binding = nullptr;
};

struct ListCommandContext {
    PriceListsUi& ui;
    PriceListState& state;
    ListTreePane& lists;
    CatTreePane& catalogues;
    ListCommandTables tables;
    QWidget* window = nullptr; // owner of the commands' dialogs

    // BindConfig: ties the configuration pane to the current PRIXLIST row, or unties it.
    void bindConfig(bool bind) const;
    // The list shown in the configuration pane (the current PRIXLIST row): its field as the
    // pane shows it.
    QString shownField(int field) const;
};
