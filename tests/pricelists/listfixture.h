#pragma once

// A small installation for the price-list tests, with what every test of them uses: PRIXLIST and
// CATALIST written in a temporary directory, the two recordsets opened on them as the program opens
// them, and the three panes with their logic composed as the main window composes them.

#include "listtables.h"
#include "scriptedprompter.h"

#include "app/messages.h"
#include "data/fieldbinding.h"
#include "dbase/connection.h"
#include "dbase/recordset.h"
#include "pricelists/configpane.h"
#include "pricelists/keyedtree.h"
#include "pricelists/listcommands.h"
#include "pricelists/pricelistsui.h"
#include "pricelists/treepanes.h"

#include <QTemporaryDir>
#include <QTest>
#include <QWidget>
#include <gtest/gtest.h>
#include <memory>
#include <optional>

// An activated list, up to date, with its group code and catalogues.
inline ListRow ActivatedList(const char* desc, const char* fichier, const char* code,
                             const char* catno, bool pasObliger = false) {
    return {.desc = desc,
            .fichier = fichier,
            .dateEff = Past,
            .dateStk = Past,
            .codeGro = code,
            .pasObliger = pasObliger,
            .catNo = catno};
}

class ListFixture {
public:
    ListFixture(const QList<ListRow>& lists, const QList<CatalogueRow>& catalogues);

    // A field of the row of a file code in PRIXLIST (or CATALIST), as stored in the table now.
    QVariant storedField(const QString& fichier, const QString& field,
                         const char* table = "PRIXLIST");
    // GRL1 to GRL9 of a catalogue as stored, each as text (empty for Null).
    QStringList storedCategories(const QString& fichier);
    // The context the main window hands the list commands.
    ListCommandContext commands();

    KeyedTree& list(int i) const;
    KeyedTree& cat(int i) const;
    // Shows a list as a click on its node in the first tree does.
    void show(const QString& key);

    QTemporaryDir dir;
    Connection conn;
    Recordset rsPrixList;
    Recordset rsCataList;
    Recordset rsDepart;
    FieldBinding binding;
    PriceListState state;
    std::unique_ptr<QWidget> window;
    ListTreePane* listPane = nullptr;
    CatTreePane* catPane = nullptr;
    ConfigPane* configPane = nullptr;
    PriceListsUi* ui = nullptr; // a child of the window
    // What the panes asked of the window: the last group code shown, the last list tab and
    // catalogue node kind chosen.
    QString groupCode;
    std::optional<bool> activatedTab;
    std::optional<bool> listUnderCatalogue;
};

// Texts of the top-level nodes of a tree, in order.
QStringList Keys(const KeyedTree& tree);
// A point on the text of a node, well clear of its check box.
QPoint OnText(KeyedTree& tree, QTreeWidgetItem* node);
