#pragma once

// The price lists and catalogues of the main window: the list trees, the catalogue trees and
// the configuration pane, with what ties them together. frmMain makes the three panes where
// they are shown and hands them here with the shared state and the tables:
//
//     priceLists = new PriceListsUi({*listPane, *catPane, *configPane}, listState,
//                                   {rsPrixList, rsCataList, &rsDepart, &ConfigBinding()},
//                                   this);
//
// then connects the signals below to the command strip and the part search. frmMain's load
// runs refresh() (SetupCat, SetupList); every command of the strip first calls saveIfDirty()
// and stops when it returns false. The state belongs to frmMain and must outlive this object.

#include "pricelists/pricelistsstate.h"

#include <QObject>
#include <memory>

class CatTreePane;
class ConfigEditor;
class ConfigPane;
class FieldBinding;
class ListTreePane;
class QTreeWidgetItem;
class QWidget;
class Recordset;
class TreeBuilder;
class TreeInteractions;

class PriceListsUi : public QObject {
    Q_OBJECT
public:
    struct Panes {
        ListTreePane& lists;
        CatTreePane& catalogues;
        ConfigPane& config;
    };
    struct Tables {
        Recordset& rsPrixList;
        Recordset& rsCataList;
        Recordset* rsDepart = nullptr; // the departments of cmbDepart
        // Where the configuration pane's controls are tied to the current PRIXLIST row.
        FieldBinding* binding = nullptr;
    };

    // window: the window that shows the hourglass while changes are saved.
    PriceListsUi(Panes panes, PriceListState& state, Tables tables, QWidget* window);
    ~PriceListsUi() override;

    TreeBuilder& trees() { return *trees_; }
    ConfigEditor& config() { return *config_; }
    TreeInteractions& interactions() { return *interactions_; }

    // The refresh of the whole view: SetupCat, SetupList, then the list selected again is
    // shown in the configuration pane.
    void refresh();
    // SauveChange for what is pending, then the refresh, the list tree shown given the focus
    // again: the one place where pending changes are saved. Nothing happens while a value
    // typed in the configuration pane is refused (its field keeps the focus). True when the
    // changes were written.
    bool saveChanges();
    // Writes what was typed in the configuration pane into the current row; false (after
    // telling the user) when its field cannot hold it.
    bool commitTyped();
    // Runs saveChanges() when the configuration pane or an activation left changes pending;
    // true when nothing was pending (the command may go on).
    bool saveIfDirty();
    // Shows the list a node stands for in the configuration pane (index: the tree's place in
    // its array). Offers to save first when changes are pending, and then shows nothing.
    void Nodeclick(int index, QTreeWidgetItem* node);

Q_SIGNALS:
    // A list is shown in the configuration pane; its group code leads the part search.
    void listShown(const QString& groupCode);
    // A list tab was chosen: one of the three of activated lists, or that of the others.
    void listTabShown(bool activatedLists);
    // A catalogue node was clicked: a list under a catalogue, or anything else.
    void catalogueNodeChosen(bool listUnderCatalogue);

private:
    Panes panes_;
    PriceListState& state_;
    Recordset& rsPrixList_;
    QWidget* window_;
    std::unique_ptr<TreeBuilder> trees_;
    std::unique_ptr<ConfigEditor> config_;
    std::unique_ptr<TreeInteractions> interactions_;
};
