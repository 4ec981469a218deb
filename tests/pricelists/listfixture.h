#pragma once

// A small installation for the price-list tests: PRIXLIST and CATALIST written in a temporary
// directory, the two recordsets opened on them as the program opens them, and the three panes
// with their logic composed as the main window composes them.

#include "listtables.h"

#include "data/fieldbinding.h"
#include "dbase/connection.h"
#include "dbase/recordset.h"
#include "pricelists/pricelistsui.h"

#include <QDate>
#include <QTemporaryDir>
#include <QVariant>
#include <QWidget>
#include <memory>
#include <optional>

class CatTreePane;
class ConfigPane;
class KeyedTree;
class ListTreePane;
class QTreeWidgetItem;
class QPoint;

class ListFixture {
public:
    ListFixture(const QList<ListRow>& lists, const QList<CatalogueRow>& catalogues);
    ~ListFixture();

    // Rewrites PRIXLIST and reads it again, as after another workstation's change.
    void rewriteLists(const QList<ListRow>& lists);
    // A PRIXLIST field of the row of a file code, as stored in the table now.
    QVariant storedField(const QString& fichier, const QString& field);

    KeyedTree& list(int i) const;
    KeyedTree& cat(int i) const;
    // Texts of the top-level nodes of a tree, in order.
    QStringList keys(const KeyedTree& tree) const;
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

// A point on the text of a node, well clear of its check box.
QPoint OnText(KeyedTree& tree, QTreeWidgetItem* node);
