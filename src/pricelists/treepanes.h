#pragma once

// The contents of the two upper panes of the main window: the list trees under their tab strip
// (picForm 0) and the catalogue trees under theirs (picForm 1). Widgets only; what the user's
// actions do is TreeInteractions', what the trees hold is TreeBuilder's.

#include "pricelists/keyedtree.h"

#include <QLabel>
#include <QTabBar>
#include <QWidget>
#include <array>

class ListTreePane : public QWidget {
    Q_OBJECT
public:
    explicit ListTreePane(QWidget* parent = nullptr);

    // Captions, in the order the main window sets them: the heading lblTvw, then the tabs.
    void label();
    // Puts the column headings over the columns of the list tree shown.
    void alignHeading();
    // The list tree of a tab: shown, or given the keyboard focus.
    void showTree(int tab);
    void focusTree(int tab);
    // The tab strip and the list tree of a tab taken out of use, or given back (a download).
    void enableTabs(int tab, bool enabled);
    bool isTreeEnabled(int tab) const;

    QTabBar* tbsList = nullptr;
    QWidget* picTvw = nullptr; // the strip holding the column heading
    QLabel* lblTvw = nullptr;  // in the trees' font, padded as the node texts are
    std::array<KeyedTree*, 4> tvwList{};

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

class CatTreePane : public QWidget {
    Q_OBJECT
public:
    explicit CatTreePane(QWidget* parent = nullptr);

    void label();
    // Shows the catalogue tree of a tab.
    void showTree(int tab);
    // The tab strip and the catalogue tree of a tab taken out of use, or given back.
    void enableTabs(int tab, bool enabled);
    // Whether the catalogue of that code is ticked in the tree of activated catalogues.
    bool isCatalogueChecked(const QString& code) const;

    QTabBar* tbsCat = nullptr;
    std::array<KeyedTree*, 2> tvwCat{};
};

// The fixed-pitch font of the trees, so that the padded columns of a node line up.
QFont ListTreeFont();
