#pragma once

// The state of the main window that the trees, the configuration pane, activation and the
// download share. frmMain owns one instance for its lifetime and hands it to each of them.

#include "pricelists/listmarks.h"
#include "pricelists/treerules.h"

#include <QString>
#include <QTreeWidgetItem>

// ConfigDirty values: what is waiting for SauveChange.
namespace Dirty {
inline constexpr qint16 None = 0;
inline constexpr qint16 Pane = 1;  // the configuration pane changed the current record
inline constexpr qint16 Batch = 3; // a batch of activations is pending
} // namespace Dirty

struct PriceListState {
    int ListCount = 0;       // PRIXLIST record count at the last rebuild
    ListMarkTable ListMarks; // rows 0 to ListCount
    qint16 ConfigDirty = Dirty::None;
    int CheckedCatCount = 0; // catalogue nodes checked
    int CurrentListTab = 0;  // 0-3: the list tree shown
    int CurrentCatTab = 0;   // 0-1: the catalogue tree shown
    int SavedListNode = 0;   // 1-based node index to select again after a rebuild; 0: none
    int SavedCatNode = 0;
    int CurrentListRow = 0;                 // row of the list last clicked or ticked
    QTreeWidgetItem* CurrentNode = nullptr; // node last added by a rebuild
    // The list node whose check box the user is about to change, or null. Cleared whenever
    // the list trees are emptied.
    QTreeWidgetItem* PendingCheckNode = nullptr;
    // True after a key other than the space bar in a list tree, false after a mouse press.
    bool KeyboardNavigation = false;
    // objectName of the tree that last received the focus: "tvwList" or "tvwCat".
    QString LastTreeFocus;
    // "Today" for the branch rules.
    TodayFunction Today = SystemToday;
};
