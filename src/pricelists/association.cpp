#include "pricelists/association.h"

#include "app/events.h"
#include "app/messages.h"
#include "app/prompts.h"
#include "data/prixfields.h"
#include "dbase/dberror.h"
#include "dbase/recordset.h"
#include "pricelists/catnorules.h"
#include "pricelists/frmcatalog.h"
#include "pricelists/keyedtree.h"
#include "pricelists/listcommands.h"
#include "pricelists/pricelistsui.h"
#include "pricelists/rowundo.h"
#include "pricelists/runguarded.h"
#include "pricelists/treepanes.h"

namespace {

const ErrorHandler DissociateErrors{QStringLiteral("errDissociate: ")};

// Clears the group code from the catalogue's categories and takes the catalogue out of the
// CATNO of the lists of the code. All of it is written, or none of it.
void dissociateRows(const ListCommandContext& c, const QString& catalogueCode,
                    const QString& groupCode, const QString& listFichier, bool lastList) {
    Recordset& catalogue = c.tables.rsCataList;
    Recordset& lists = c.tables.rsPrixList;
    RowUndo undo;
    try {
        catalogue.find(QStringLiteral("[FICHIER] = '%1'").arg(catalogueCode), 0,
                       SearchDirection::Forward, MoveStart::First);
        for (int k = 1; k <= 9 && !catalogue.eof(); ++k) {
            const QString field = QStringLiteral("GRL%1").arg(k);
            if (catalogue.value(field).toString().trimmed() == groupCode)
                undo.set(catalogue, field, QVariant());
        }
        lists.setFilter(
            groupCode.isEmpty()
                ? QStringLiteral("[FICHIER] = '%1'").arg(listFichier)
                : QStringLiteral("[CODEGRO] = '%1' AND [UTILISER]=True").arg(groupCode));
        if (lists.recordCount() > 0) {
            for (lists.moveFirst(); !lists.eof(); lists.moveNext()) {
                const QString catno = lists.value(PrixField::CatNo).toString();
                const QString kept = RemoveCatnoEntry(catno, catalogueCode);
                if (kept == catno)
                    continue;
                undo.set(lists, QStringLiteral("CATNO"), kept);
                lists.update();
            }
        }
        if (lastList && !catalogue.eof() &&
            MsgBox(LoadText(129), Buttons::YesNo, Icon::None) == Answer::Yes)
            undo.set(catalogue, QStringLiteral("UTILISER"), false);
        if (!catalogue.eof())
            catalogue.update();
    } catch (const DbError& error) {
        undo.undo();
        ShowErrorBox(DissociateErrors, error.number(), error.description());
    }
}

} // namespace

void Dissociate(const ListCommandContext& c) {
    c.bindConfig(false);
    const QTreeWidgetItem* node = c.catalogues.tvwCat[0]->selectedNode();
    const QTreeWidgetItem* parent = node ? node->parent() : nullptr;
    if (parent) {
        const QString catalogueCode = CatalogueCodeOfKey(KeyedTree::keyOf(parent));
        const QString groupCode = c.shownField(PrixField::CodeGro).trimmed();
        const QString listFichier = c.shownField(PrixField::Fichier).trimmed();
        dissociateRows(c, catalogueCode, groupCode, listFichier, parent->childCount() == 1);
    }
    RunGuarded(DissociateErrors, [&] {
        c.tables.rsCataList.requery();
        c.tables.rsPrixList.setFilter(QString());
        c.tables.rsPrixList.requery();
        DoEvents();
        if (c.tables.rsPrixCodes)
            c.tables.rsPrixCodes->requery();
    });
    c.bindConfig(true);
}

void AssociationCommand(const ListCommandContext& c) {
    PriceListState& state = c.state;
    KeyedTree& listTree = *c.lists.tvwList.at(state.CurrentListTab);
    KeyedTree& catTree = *c.catalogues.tvwCat.at(state.CurrentCatTab);
    if (QTreeWidgetItem* node = listTree.selectedNode())
        state.SavedListNode = listTree.nodeIndex(node);
    QTreeWidgetItem* catNode = catTree.selectedNode();
    if (catNode)
        state.SavedCatNode = catTree.nodeIndex(catNode);
    const bool catalogueChosen = catNode && (catNode->childCount() > 0 || !catNode->parent());
    if (!catalogueChosen && state.CurrentCatTab == 0) {
        if (state.SavedCatNode == 0 || !catNode) {
            MsgBox(LoadText(127));
            return;
        }
        state.SavedCatNode = catTree.nodeIndex(catNode->parent());
        Dissociate(c);
    } else {
        if (state.SavedListNode == 0 || !catNode) {
            MsgBox(LoadText(catNode ? 128 : 127));
            return;
        }
        frmCatalog dialog(c, catNode->text(0), KeyedTree::keyOf(catNode),
                          c.window ? c.window->window() : nullptr);
        dialog.exec();
    }
    c.ui.refresh();
}
