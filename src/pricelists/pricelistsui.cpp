#include "pricelists/pricelistsui.h"

#include "pricelists/configeditor.h"
#include "pricelists/configpane.h"
#include "pricelists/treebuilder.h"
#include "pricelists/treeinteractions.h"
#include "pricelists/treepanes.h"

PriceListsUi::PriceListsUi(PriceListState& state, Parts parts)
    : state_(state), parts_(std::move(parts)) {
    listPane = new ListTreePane;
    catPane = new CatTreePane;
    configPane = new ConfigPane;
    panes_ = {listPane, catPane, configPane};
    trees_ = std::make_unique<TreeBuilder>(*this);
    config_ = std::make_unique<ConfigEditor>(*this);
    interactions_ = std::make_unique<TreeInteractions>(*this);
}

PriceListsUi::~PriceListsUi() {
    interactions_.reset();
    config_.reset();
    for (const QPointer<QWidget>& pane : panes_)
        if (pane && !pane->parent())
            delete pane.data();
}

void PriceListsUi::label() {
    listPane->label();
    catPane->label();
    configPane->label();
}

void PriceListsUi::refresh() {
    trees_->SetupCat();
    trees_->SetupList();
}

bool PriceListsUi::saveIfDirty() {
    if (state_.ConfigDirty == Dirty::None)
        return true;
    config_->SauveChange(state_.ConfigDirty);
    return false;
}
