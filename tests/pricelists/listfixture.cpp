#include "listfixture.h"

#include <QHBoxLayout>

ListFixture::ListFixture(const QList<ListRow>& lists, const QList<CatalogueRow>& catalogues,
                         bool built) {
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
    listPane = new ListTreePane(window.get());
    catPane = new CatTreePane(window.get());
    configPane = new ConfigPane(window.get());
    for (QWidget* pane : std::initializer_list<QWidget*>{listPane, catPane, configPane})
        layout->addWidget(pane);
    ui = new PriceListsUi({*listPane, *catPane, *configPane}, state,
                          {rsPrixList, rsCataList, &rsDepart, &binding}, window.get());
    QObject::connect(ui, &PriceListsUi::listShown, [this](const QString& g) { groupCode = g; });
    QObject::connect(ui, &PriceListsUi::listTabShown, [this](bool a) { activatedTab = a; });
    QObject::connect(ui, &PriceListsUi::catalogueNodeChosen,
                     [this](bool l) { listUnderCatalogue = l; });
    listPane->label();
    catPane->label();
    configPane->label();
    window->resize(1400, 500);
    window->show();
    window->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
    if (built)
        ui->refresh();
}

ListCommandContext ListFixture::commands() {
    return {*ui,         state, *listPane, *catPane, {rsPrixList, rsCataList, nullptr, &binding},
            window.get()};
}

QStringList Keys(const KeyedTree& tree) {
    QStringList keys;
    for (int i = 0; i < tree.topLevelItemCount(); ++i)
        keys << KeyedTree::keyOf(tree.topLevelItem(i));
    return keys;
}

void ListFixture::show(const QString& key) {
    KeyedTree& tree = list(0);
    tree.selectNode(tree.node(key));
    ui->Nodeclick(0, tree.node(key));
}

QPoint OnText(KeyedTree& tree, QTreeWidgetItem* node) {
    const QRect box = tree.checkBoxRect(node);
    return {box.right() + 60, box.center().y()};
}
