#include "pricelists/pricelistsui.h"

#include "dbase/recordset.h"
#include "pricelists/configeditor.h"
#include "pricelists/configpane.h"
#include "pricelists/keyedtree.h"
#include "pricelists/runguarded.h"
#include "pricelists/treebuilder.h"
#include "pricelists/treeinteractions.h"
#include "pricelists/treepanes.h"

#include <QApplication>

PriceListsUi::PriceListsUi(Panes panes, PriceListState& state, Tables tables, QWidget* window)
    : QObject(window), panes_(panes), state_(state), rsPrixList_(tables.rsPrixList),
      window_(window),
      trees_(std::make_unique<TreeBuilder>(
          panes.lists, panes.catalogues, state,
          TreeBuilder::Tables{tables.rsPrixList, tables.rsCataList, tables.binding})),
      config_(std::make_unique<ConfigEditor>(
          panes.config, state,
          ConfigEditor::Tables{tables.rsPrixList, tables.rsDepart, tables.binding})),
      interactions_(std::make_unique<TreeInteractions>(panes.lists, panes.catalogues, state,
                                                       tables.rsPrixList)) {
    connect(interactions_.get(), &TreeInteractions::nodeclick, this, &PriceListsUi::Nodeclick);
    connect(interactions_.get(), &TreeInteractions::listTabShown, this, [this](bool activated) {
        panes_.config.setEnabled(activated);
        Q_EMIT listTabShown(activated);
    });
    connect(interactions_.get(), &TreeInteractions::catalogueNodeChosen, this,
            &PriceListsUi::catalogueNodeChosen);
}

PriceListsUi::~PriceListsUi() = default;

void PriceListsUi::refresh() {
    trees_->SetupCat();
    const TreeBuilder::Restored restored = trees_->SetupList();
    if (restored.list.node)
        Nodeclick(restored.list.tree, restored.list.node);
    if (restored.catalogueRestored)
        interactions_->tvwCatNodeClick(restored.catalogue.tree, restored.catalogue.node);
}

bool PriceListsUi::commitTyped() {
    return config_->commitTyped();
}

bool PriceListsUi::saveChanges() {
    if (!commitTyped())
        return false;
    QWidget* focused = QApplication::focusWidget();
    KeyedTree* tree = panes_.lists.tvwList.at(state_.CurrentListTab);
    tree->setEnabled(false);
    if (window_)
        window_->setCursor(Qt::WaitCursor);
    const bool saved = config_->SauveChange(state_.ConfigDirty, focused);
    state_.ConfigDirty = Dirty::None;
    refresh();
    if (window_)
        window_->unsetCursor();
    tree->setEnabled(true);
    tree->setFocus();
    return saved;
}

bool PriceListsUi::saveIfDirty() {
    if (state_.ConfigDirty == Dirty::None)
        return true;
    saveChanges();
    return false;
}

void PriceListsUi::Nodeclick(int, QTreeWidgetItem* node) {
    if (state_.ConfigDirty != Dirty::None) {
        saveChanges();
        state_.PendingCheckNode = nullptr;
        return;
    }
    const int row = KeyedTree::rowOf(node);
    if (row < 0)
        return;
    RunGuarded(ErrorHandler{QStringLiteral("errNodeclick: ")}, [&] {
        state_.CurrentListRow = row;
        rsPrixList_.move(row, MoveStart::First);
        config_->showList();
        Q_EMIT listShown(rsPrixList_.value(PrixField::CodeGro).toString().trimmed());
    });
}
