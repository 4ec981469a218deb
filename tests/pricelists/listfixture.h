#pragma once

// A small installation for the price-list tests, with what every test of them uses: PRIXLIST and
// CATALIST written in a temporary directory, the two recordsets opened on them as the program opens
// them, and the three panes with their logic composed as the main window composes them.

#include "listtables.h"
#include "scriptedprompter.h"
#include "testfiles.h"

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
#include <ostream>

// An activated list, up to date, with its group code and catalogues.
inline ListRow ActivatedList(const char* desc, const char* fichier, const char* code,
                             const char* catno, bool pasObliger = false) {
    return {desc, fichier, true, Past, Past, code, pasObliger, 1.0, {}, catno};
}

class ListFixture {
public:
    // The trees are built as the program starts, unless a test sets up first what the first
    // build meets.
    ListFixture(const QList<ListRow>& lists, const QList<CatalogueRow>& catalogues,
                bool built = true);

    // The rows of a SELECT on the tables as stored now, cells joined by '|'.
    QStringList rows(const QString& select) const { return TableRows(dir.path(), select); }
    // The context the main window hands the list commands.
    ListCommandContext commands();

    KeyedTree& list(int i) const { return *listPane->tvwList.at(i); }
    KeyedTree& cat(int i) const { return *catPane->tvwCat.at(i); }
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

// The table's texts, as text in the failure messages.
inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

// Texts of the top-level nodes of a tree, in order.
QStringList Keys(const KeyedTree& tree);
// A point on the text of a node, well clear of its check box.
QPoint OnText(KeyedTree& tree, QTreeWidgetItem* node);
