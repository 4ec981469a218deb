#pragma once

// The price lists and catalogues of the main window, composed in one place.
//
// frmMain creates one PriceListsUi once its command strip exists and the data store is open:
//
//     PriceListsUi::Parts parts;
//     parts.window = this;                        // shows the hourglass while saving
//     parts.rsPrixList = &rsPrixList;             // the shared recordsets, open for the run
//     parts.rsCataList = &rsCataList;
//     parts.rsDepart = &rsDepart;
//     parts.binding = &ConfigBinding();           // the pane registers its controls there
//     parts.buttons = {picMenu, lblMenu};         // lent, not owned
//     parts.partSearch = partSearchPane;          // may be null
//     priceLists = std::make_unique<PriceListsUi>(listState, parts);
//     picForm[0]->layout()->addWidget(priceLists->listPane);
//     picForm[1]->layout()->addWidget(priceLists->catPane);
//     configPage->layout()->addWidget(priceLists->configPane);
//
// Label() calls listPane->label(), catPane->label(), configPane->labelFields() and, after
// fraMAJ, configPane->labelFrames(). The load then runs refresh() (SetupCat, SetupList).
// Every command of the strip first calls saveIfDirty() and stops when it returns false.
//
// The panes are created without a parent; adding them to a layout parents them, and those
// left without a parent are deleted with this object. The state belongs to frmMain and must
// outlive this object.

#include "pricelists/commandbuttons.h"
#include "pricelists/pricelistsstate.h"

#include <QPointer>
#include <array>
#include <memory>

class CatTreePane;
class ConfigEditor;
class ConfigPane;
class FieldBinding;
class ListTreePane;
class PartSearchPane;
class Recordset;
class TreeBuilder;
class TreeInteractions;

class PriceListsUi {
public:
    struct Parts {
        QWidget* window = nullptr;
        Recordset* rsPrixList = nullptr;
        Recordset* rsCataList = nullptr;
        Recordset* rsDepart = nullptr; // the departments of cmbDepart
        // Where the configuration pane's controls are tied to the current PRIXLIST row.
        FieldBinding* binding = nullptr;
        CommandButtons buttons;
        PartSearchPane* partSearch = nullptr;
    };

    PriceListsUi(PriceListState& state, Parts parts);
    ~PriceListsUi();
    PriceListsUi(const PriceListsUi&) = delete;
    PriceListsUi& operator=(const PriceListsUi&) = delete;

    // The panes, for frmMain's layouts: picForm 0, picForm 1 and the configuration tab.
    ListTreePane* listPane = nullptr;
    CatTreePane* catPane = nullptr;
    ConfigPane* configPane = nullptr;

    PriceListState& state() { return state_; }
    const Parts& parts() const { return parts_; }
    Recordset& rsPrixList() const { return *parts_.rsPrixList; }
    Recordset& rsCataList() const { return *parts_.rsCataList; }

    TreeBuilder& trees() { return *trees_; }
    ConfigEditor& config() { return *config_; }
    TreeInteractions& interactions() { return *interactions_; }

    // All captions of the three panes, in the order the main window sets them.
    void label();
    // The refresh of the whole view: SetupCat, then SetupList.
    void refresh();
    // Runs SauveChange when the configuration pane or an activation left changes pending;
    // true when nothing was pending (the command may go on).
    bool saveIfDirty();

private:
    PriceListState& state_;
    Parts parts_;
    std::unique_ptr<TreeBuilder> trees_;
    std::unique_ptr<ConfigEditor> config_;
    std::unique_ptr<TreeInteractions> interactions_;
    std::array<QPointer<QWidget>, 3> panes_;
};
