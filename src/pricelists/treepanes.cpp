#include "pricelists/treepanes.h"

#include "app/messages.h"

#include <QFontDatabase>
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
    auto* heading = new QHBoxLayout(picTvw);
    heading->setContentsMargins(4, 2, 4, 2);
    lblTvw = new QLabel(picTvw);
    lblTvw->setObjectName(QStringLiteral("lblTvw"));
    lblTvw->setTextFormat(Qt::PlainText);
    heading->addWidget(lblTvw);
    layout->addWidget(picTvw);

    for (int i = 0; i < int(tvwList.size()); ++i) {
        tvwList[i] = new KeyedTree(QStringLiteral("tvwList"), i, this);
        tvwList[i]->setFont(ListTreeFont());
        tvwList[i]->setRootIsDecorated(false);
        tvwList[i]->setVisible(i == 0);
        layout->addWidget(tvwList[i], 1);
    }
}

void ListTreePane::label() {
    // The heading is in the pane's own font, whose narrow blanks bring "Code" and the matrix
    // heading over their columns of the fixed-pitch trees.
    lblTvw->setText(LoadText(62) + QString(60, QLatin1Char(' ')) + QStringLiteral("Code") +
                    QString(3, QLatin1Char(' ')) + LoadText(63));
    for (int i = 0; i < 4; ++i)
        tbsList->setTabText(i, LoadText(2 + i));
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

void CatTreePane::label() {
    tbsCat->setTabText(0, LoadText(6));
    tbsCat->setTabText(1, LoadText(41));
}
