#include "listfixture.h"

#include "pricelists/configpane.h"
#include "pricelists/keyedtree.h"
#include "pricelists/treepanes.h"

#include <QHBoxLayout>
#include <QTest>
#include <gtest/gtest.h>

ListFixture::ListFixture(const QList<ListRow>& lists, const QList<CatalogueRow>& catalogues) {
    WritePrixList(dir.path(), lists);
    WriteCataList(dir.path(), catalogues);
    WriteDepart(dir.path(), 20);
    conn.open(dir.path() + QLatin1Char('/'));
    rsPrixList.open(QStringLiteral("SELECT * FROM PRIXLIST ORDER BY [DESC]"), conn,
                    CursorType::Keyset, LockType::Optimistic);
    rsCataList.open(QStringLiteral("SELECT * FROM CATALIST ORDER BY [DESC]"), conn,
                    CursorType::Keyset, LockType::Optimistic);
    rsDepart.open(QStringLiteral("SELECT TOP 13 * FROM DEPART"), conn, CursorType::Keyset,
                  LockType::Optimistic);
    state.Today = [] { return FixtureToday; };

    window = std::make_unique<QWidget>();
    auto* layout = new QHBoxLayout(window.get());
    PriceListsUi::Parts parts;
    parts.window = window.get();
    parts.rsPrixList = &rsPrixList;
    parts.rsCataList = &rsCataList;
    parts.rsDepart = &rsDepart;
    parts.binding = &binding;
    for (int i = 0; i < 7; ++i) {
        picMenu[i] = new QLabel(window.get());
        parts.buttons.picMenu[i] = picMenu[i];
    }
    for (int i = 0; i < 5; ++i) {
        lblMenu[i] = new QLabel(window.get());
        parts.buttons.lblMenu[i] = lblMenu[i];
    }
    ui = std::make_unique<PriceListsUi>(state, parts);
    layout->addWidget(ui->listPane);
    layout->addWidget(ui->catPane);
    layout->addWidget(ui->configPane);
    ui->label();
    window->resize(1400, 500);
    window->show();
    window->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
}

ListFixture::~ListFixture() {
    ui.reset();
    window.reset();
}

void ListFixture::rewriteLists(const QList<ListRow>& lists) {
    WritePrixList(dir.path(), lists);
    rsPrixList.requery();
}

QVariant ListFixture::storedField(const QString& fichier, const QString& field) {
    Recordset fresh;
    fresh.open(QStringLiteral("SELECT * FROM PRIXLIST"), conn, CursorType::Keyset,
               LockType::Optimistic);
    fresh.find(QStringLiteral("FICHIER = '%1'").arg(fichier), 0, SearchDirection::Forward,
               MoveStart::First);
    EXPECT_FALSE(fresh.eof()) << fichier.toStdString();
    return fresh.eof() ? QVariant() : fresh.value(field);
}

KeyedTree& ListFixture::list(int i) const {
    return *ui->listPane->tvwList.at(i);
}

KeyedTree& ListFixture::cat(int i) const {
    return *ui->catPane->tvwCat.at(i);
}

QStringList ListFixture::keys(const KeyedTree& tree) const {
    QStringList keys;
    for (int i = 0; i < tree.topLevelItemCount(); ++i)
        keys << KeyedTree::keyOf(tree.topLevelItem(i));
    return keys;
}
