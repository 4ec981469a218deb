#pragma once

// A tree of the main window: a QTreeWidget whose nodes carry the keys and the 1-based indexes
// the program names them by, with check boxes, and whose user actions are passed on as
// signals in the order the handlers expect them.

#include "pricelists/treerules.h"

#include <QHash>
#include <QList>
#include <QTreeWidget>

// The errors of the tree control that the program names by number.
namespace TreeErrors {
inline constexpr qint64 ElementNotFound = 35601; // no node has the key asked for
inline constexpr qint64 KeyNotUnique = 35602;    // a node already has the key given
// The control's description of the error.
QString description(qint64 number);
} // namespace TreeErrors

class KeyedTree : public QTreeWidget {
    Q_OBJECT
public:
    // index: the tree's place in its control array (tvwList(index) or tvwCat(index)).
    KeyedTree(const QString& name, int index, QWidget* parent = nullptr);

    int index() const { return index_; }

    // Removes every node.
    void clearNodes();
    // Nodes added between beginBuild() and endBuild() enter the tree together at the end,
    // which spares the view one update per node; they can be looked up by key meanwhile.
    void beginBuild();
    void endBuild();
    // Adds a node at the top level, or as the last child of the node parentKey. Returns null
    // when the key is already taken or the parent does not exist.
    QTreeWidgetItem* addNode(const QString& key, const QString& text, OleColor color);
    QTreeWidgetItem* addChild(const QString& parentKey, const QString& key, const QString& text,
                              OleColor color);
    // Widens the column to the longest node text added since the nodes were last removed,
    // so that the padded columns of the texts stay whole and the tree scrolls sideways.
    void fitColumn();
    // Node by key (hash look-up) or by 1-based index in the order the nodes were added.
    QTreeWidgetItem* node(const QString& key) const;
    QTreeWidgetItem* node(int oneBasedIndex) const;
    int nodeCount() const { return int(nodes_.size()); }
    int nodeIndex(const QTreeWidgetItem* item) const;

    static QString keyOf(const QTreeWidgetItem* item);
    static OleColor colorOf(const QTreeWidgetItem* item);
    static void setColor(QTreeWidgetItem* item, OleColor color);
    static bool isChecked(const QTreeWidgetItem* item);
    static void setChecked(QTreeWidgetItem* item, bool checked);
    // The row of the list a node stands for, kept on the node when it was added (-1: none).
    static int rowOf(const QTreeWidgetItem* item);
    static void setRow(QTreeWidgetItem* item, int row);
    // The file code (FICHIER) of the list a node stands for, kept on the node.
    static QString fileCodeOf(const QTreeWidgetItem* item);
    static void setFileCode(QTreeWidgetItem* item, const QString& fileCode);

    // The selected node, or null; selecting a node also makes it the current one.
    QTreeWidgetItem* selectedNode() const;
    void selectNode(QTreeWidgetItem* item);

    // Where the text of a top-level node starts, in the tree's own coordinates (after the
    // frame, the check box and the scrolled part), as the view's style lays it out.
    int textLeft() const;

    // True when a point of the viewport lies on the check box of the node under it: the check
    // indicator's rectangle as the view's style lays it out for that node.
    bool isOnCheckBox(const QPoint& viewportPos) const;
    QRect checkBoxRect(const QTreeWidgetItem* item) const;

Q_SIGNALS:
    void focusReceived();
    void keyDown(int key);
    void mouseDown(Qt::MouseButton button, const QPoint& viewportPos);
    void mouseUp(Qt::MouseButton button, const QPoint& viewportPos);
    // A node was clicked with the mouse or reached with the keyboard.
    void nodeClick(QTreeWidgetItem* item);
    // The user changed a node's check box (mouse or space bar); changes made by the program
    // are not reported.
    void nodeCheck(QTreeWidgetItem* item);

protected:
    void focusInEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    friend class TreeNode;
    void checkChanged(QTreeWidgetItem* item);
    void currentChanged(QTreeWidgetItem* item);
    void emitPending();
    QTreeWidgetItem* makeNode(const QString& key, const QString& text, OleColor color);

    int index_;
    QHash<QString, QTreeWidgetItem*> byKey_;
    QList<QTreeWidgetItem*> nodes_;
    qsizetype longestText_ = 0;
    bool building_ = false;
    QList<QTreeWidgetItem*> pendingTop_;
    QList<std::pair<QTreeWidgetItem*, QTreeWidgetItem*>> pendingChildren_; // parent, child
    bool userAction_ = false;            // inside QTreeWidget's own handling of a user action
    QList<QTreeWidgetItem*> checked_;    // user check changes to report once it is done
    QTreeWidgetItem* reached_ = nullptr; // node reached by the keyboard, to report
    int generation_ = 0;                 // counts the times the nodes were removed
    bool pressSpent_ = false;            // the coming press brought the focus and was handled
    bool releaseSpent_ = false;          // ... and so is its release
};
