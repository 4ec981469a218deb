#include "pricelists/treepanes.h"

#include "app/messages.h"

#include "pricelists/keyedtree.h"
#include "pricelists/treerules.h"

#include <QEvent>
#include <QFontDatabase>
#include <QScrollBar>
#include <QVBoxLayout>

QFont ListTreeFont() {
    return QFontDatabase::systemFont(QFontDatabase::FixedFont);
}

namespace {

QTabBar* makeTabBar(const QString& name, int tabs, QWidget* parent) {
    auto* bar = new QTabBar(parent);
    bar->setObjectName(name);
    bar->setExpanding(false);
    bar->setDrawBase(true);
    for (int i = 0; i < tabs; ++i)
        bar->addTab(QString());
    return bar;
}

QVBoxLayout* paneLayout(QWidget* pane) {
    auto* layout = new QVBoxLayout(pane);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    return layout;
}

} // namespace

ListTreePane::ListTreePane(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("picListTrees"));
    QVBoxLayout* layout = paneLayout(this);
    tbsList = makeTabBar(QStringLiteral("tbsList"), 4, this);
    layout->addWidget(tbsList);

    picTvw = new QWidget(this);
    picTvw->setObjectName(QStringLiteral("picTvw"));
    lblTvw = new QLabel(picTvw);
    lblTvw->setObjectName(QStringLiteral("lblTvw"));
    lblTvw->setTextFormat(Qt::PlainText);
    lblTvw->setFont(ListTreeFont());
    picTvw->setFixedHeight(lblTvw->sizeHint().height() + 4);
    layout->addWidget(picTvw);

    for (int i = 0; i < int(tvwList.size()); ++i) {
        tvwList[i] = new KeyedTree(QStringLiteral("tvwList"), i, this);
        tvwList[i]->setFont(ListTreeFont());
        tvwList[i]->setRootIsDecorated(false);
        tvwList[i]->setVisible(i == 0);
        layout->addWidget(tvwList[i], 1);
        // The heading follows the tree shown: its size, its place and its sideways scrolling.
        tvwList[i]->installEventFilter(this);
        connect(tvwList[i]->horizontalScrollBar(), &QScrollBar::valueChanged, this,
                &ListTreePane::alignHeading);
    }
}

bool ListTreePane::eventFilter(QObject* watched, QEvent* event) {
    const QEvent::Type type = event->type();
    if (type == QEvent::Show || type == QEvent::Resize || type == QEvent::Move)
        alignHeading();
    return QWidget::eventFilter(watched, event);
}

void ListTreePane::alignHeading() {
    for (const KeyedTree* tree : tvwList) {
        if (tree->isHidden())
            continue;
        // The strip clips what scrolls off its left edge, as the tree does.
        const int textLeft = tree->mapTo(this, QPoint(tree->textLeft(), 0)).x() - picTvw->x();
        lblTvw->adjustSize();
        lblTvw->move(textLeft, 2);
        return;
    }
}

void ListTreePane::label() {
    // Laid out as a node's text, in the same fixed-pitch font: each heading over its column.
    lblTvw->setText(ListNodeText(LoadText(62), QStringLiteral("Code"), LoadText(63)));
    alignHeading();
    for (int i = 0; i < 4; ++i) {
        tbsList->setTabText(i, LoadText(2 + i));
        tvwList[i]->setAccessibleName(tbsList->tabText(i)); // for screen readers
    }
}

CatTreePane::CatTreePane(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("picCatTrees"));
    QVBoxLayout* layout = paneLayout(this);
    tbsCat = makeTabBar(QStringLiteral("tbsCat"), 2, this);
    layout->addWidget(tbsCat);
    for (int i = 0; i < int(tvwCat.size()); ++i) {
        tvwCat[i] = new KeyedTree(QStringLiteral("tvwCat"), i, this);
        tvwCat[i]->setFont(ListTreeFont());
        tvwCat[i]->setVisible(i == 0);
        layout->addWidget(tvwCat[i], 1);
    }
}

void ListTreePane::showTree(int tab) {
    tvwList.at(tab)->setVisible(true);
}

void ListTreePane::focusTree(int tab) {
    tvwList.at(tab)->setFocus();
}

void ListTreePane::enableTabs(int tab, bool enabled) {
    tbsList->setEnabled(enabled);
    tvwList.at(tab)->setEnabled(enabled);
}

bool ListTreePane::isTreeEnabled(int tab) const {
    return tvwList.at(tab)->isEnabled();
}

void CatTreePane::showTree(int tab) {
    tvwCat.at(tab)->setVisible(true);
}

void CatTreePane::enableTabs(int tab, bool enabled) {
    tbsCat->setEnabled(enabled);
    tvwCat.at(tab)->setEnabled(enabled);
}

bool CatTreePane::isCatalogueChecked(const QString& code) const {
    const QTreeWidgetItem* node = tvwCat[0]->node(CatalogueKey(code));
    return node && KeyedTree::isChecked(node);
}

void CatTreePane::label() {
    tbsCat->setTabText(0, LoadText(6));
    tbsCat->setTabText(1, LoadText(41));
    for (int i = 0; i < 2; ++i)
        tvwCat[i]->setAccessibleName(tbsCat->tabText(i)); // for screen readers
}
