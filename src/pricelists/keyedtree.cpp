#include "pricelists/keyedtree.h"

#include <QFocusEvent>
#include <QFontMetrics>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>
#include <QStyle>
#include <QTimer>
#include <utility>

namespace {

constexpr int KeyRole = Qt::UserRole;
constexpr int RowRole = Qt::UserRole + 1;
constexpr int ColorRole = Qt::UserRole + 2;
constexpr int FileCodeRole = Qt::UserRole + 3;

} // namespace

QString TreeErrors::description(qint64 number) {
    switch (number) {
    case ElementNotFound:
        return QStringLiteral("Element not found");
    case KeyNotUnique:
        return QStringLiteral("Key is not unique in collection");
    default:
        return {};
    }
}

// A node that tells its tree when its check state changes.
class TreeNode final : public QTreeWidgetItem {
public:
    using QTreeWidgetItem::QTreeWidgetItem;

    void setData(int column, int role, const QVariant& value) override {
        if (role != Qt::CheckStateRole) {
            QTreeWidgetItem::setData(column, role, value);
            return;
        }
        const Qt::CheckState before = checkState(0);
        QTreeWidgetItem::setData(column, role, value);
        if (checkState(0) != before)
            if (auto* tree = qobject_cast<KeyedTree*>(treeWidget()))
                tree->checkChanged(this);
    }
};

KeyedTree::KeyedTree(const QString& name, int index, QWidget* parent)
    : QTreeWidget(parent), index_(index) {
    setObjectName(name);
    setColumnCount(1);
    setHeaderHidden(true);
    setRootIsDecorated(true);
    setUniformRowHeights(true);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    // Sized once per rebuild (fitColumn): sizing to the contents would lay out every text
    // again at each node added.
    header()->setStretchLastSection(false);
    connect(this, &QTreeWidget::currentItemChanged, this,
            [this](QTreeWidgetItem* current) { currentChanged(current); });
}

void KeyedTree::clearNodes() {
    ++generation_;
    qDeleteAll(std::exchange(pendingTop_, {}));
    for (const auto& pending : std::exchange(pendingChildren_, {}))
        delete pending.second;
    byKey_.clear();
    nodes_.clear();
    longestText_ = 0;
    checked_.clear();
    reached_ = nullptr;
    clear();
}

QTreeWidgetItem* KeyedTree::makeNode(const QString& key, const QString& text, OleColor color) {
    if (byKey_.contains(key))
        return nullptr;
    auto* item = new TreeNode(QStringList{text});
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
    item->setData(0, KeyRole, key);
    item->setCheckState(0, Qt::Unchecked);
    setColor(item, color);
    byKey_.insert(key, item);
    nodes_.append(item);
    longestText_ = qMax(longestText_, text.size());
    return item;
}

void KeyedTree::fitColumn() {
    // The trees draw in a fixed-pitch font: every character is as wide as any other. Room is
    // left for two levels of indentation, the check box and a picture.
    const QFontMetrics metrics(font());
    const int text = metrics.horizontalAdvance(QString(longestText_ + 2, QLatin1Char('M')));
    const int box = style()->pixelMetric(QStyle::PM_IndicatorWidth) + iconSize().width() + 16;
    header()->resizeSection(0, qMax(text + box + 2 * indentation(), viewport()->width()));
}

void KeyedTree::beginBuild() {
    building_ = true;
    setUpdatesEnabled(false);
}

void KeyedTree::endBuild() {
    if (!building_)
        return;
    building_ = false;
    addTopLevelItems(std::exchange(pendingTop_, {}));
    // Children of one parent arrive together, in the order they were added.
    QHash<QTreeWidgetItem*, QList<QTreeWidgetItem*>> byParent;
    QList<QTreeWidgetItem*> parents;
    for (const auto& [parent, child] : std::exchange(pendingChildren_, {})) {
        QList<QTreeWidgetItem*>& children = byParent[parent];
        if (children.isEmpty())
            parents.append(parent);
        children.append(child);
    }
    for (QTreeWidgetItem* parent : parents)
        parent->addChildren(byParent.value(parent));
    setUpdatesEnabled(true);
}

QTreeWidgetItem* KeyedTree::addNode(const QString& key, const QString& text, OleColor color) {
    QTreeWidgetItem* item = makeNode(key, text, color);
    if (item && building_)
        pendingTop_.append(item);
    else if (item)
        addTopLevelItem(item);
    return item;
}

QTreeWidgetItem* KeyedTree::addChild(const QString& parentKey, const QString& key,
                                     const QString& text, OleColor color) {
    QTreeWidgetItem* parent = node(parentKey);
    if (!parent)
        return nullptr;
    QTreeWidgetItem* item = makeNode(key, text, color);
    if (item && building_)
        pendingChildren_.append(std::make_pair(parent, item));
    else if (item)
        parent->addChild(item);
    return item;
}

QTreeWidgetItem* KeyedTree::node(const QString& key) const {
    return byKey_.value(key);
}

QTreeWidgetItem* KeyedTree::node(int oneBasedIndex) const {
    if (oneBasedIndex < 1 || oneBasedIndex > nodes_.size())
        return nullptr;
    return nodes_.at(oneBasedIndex - 1);
}

int KeyedTree::nodeIndex(const QTreeWidgetItem* item) const {
    // Asked for once per rebuild (the selection kept across it): a scan will do.
    const qsizetype at = nodes_.indexOf(const_cast<QTreeWidgetItem*>(item));
    return at < 0 ? 0 : int(at) + 1;
}

QString KeyedTree::keyOf(const QTreeWidgetItem* item) {
    return item ? item->data(0, KeyRole).toString() : QString();
}

OleColor KeyedTree::colorOf(const QTreeWidgetItem* item) {
    return item ? OleColor(item->data(0, ColorRole).toUInt()) : ColorBlack;
}

void KeyedTree::setColor(QTreeWidgetItem* item, OleColor color) {
    item->setData(0, ColorRole, uint(color));
    item->setForeground(0, ToQColor(color));
}

bool KeyedTree::isChecked(const QTreeWidgetItem* item) {
    return item && item->checkState(0) == Qt::Checked;
}

void KeyedTree::setChecked(QTreeWidgetItem* item, bool checked) {
    item->setCheckState(0, checked ? Qt::Checked : Qt::Unchecked);
}

int KeyedTree::rowOf(const QTreeWidgetItem* item) {
    if (!item)
        return -1;
    const QVariant row = item->data(0, RowRole);
    return row.isValid() ? row.toInt() : -1;
}

void KeyedTree::setRow(QTreeWidgetItem* item, int row) {
    item->setData(0, RowRole, row);
}

QString KeyedTree::fileCodeOf(const QTreeWidgetItem* item) {
    return item ? item->data(0, FileCodeRole).toString() : QString();
}

void KeyedTree::setFileCode(QTreeWidgetItem* item, const QString& fileCode) {
    item->setData(0, FileCodeRole, fileCode);
}

QTreeWidgetItem* KeyedTree::selectedNode() const {
    const QList<QTreeWidgetItem*> selected = selectedItems();
    return selected.isEmpty() ? nullptr : selected.first();
}

void KeyedTree::selectNode(QTreeWidgetItem* item) {
    if (!item)
        return;
    setCurrentItem(item);
    item->setSelected(true);
}

QRect KeyedTree::checkBoxRect(const QTreeWidgetItem* item) const {
    if (!item)
        return {};
    const QModelIndex index = indexFromItem(item);
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    option.rect = visualRect(index);
    option.index = index;
    option.features |= QStyleOptionViewItem::HasCheckIndicator | QStyleOptionViewItem::HasDisplay;
    option.checkState = item->checkState(0);
    option.text = item->text(0);
    if (!item->icon(0).isNull()) {
        option.features |= QStyleOptionViewItem::HasDecoration;
        option.icon = item->icon(0);
    }
    return style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, this);
}

int KeyedTree::textLeft() const {
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    option.rect = QRect(0, 0, qMax(1, columnWidth(0)), fontMetrics().height() + 4);
    option.features |= QStyleOptionViewItem::HasCheckIndicator | QStyleOptionViewItem::HasDisplay;
    option.text = QStringLiteral("M");
    const QRect text = style()->subElementRect(QStyle::SE_ItemViewItemText, &option, this);
    // The delegate keeps a margin inside the text's rectangle.
    const int margin = style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, this) + 1;
    const int decoration = rootIsDecorated() ? indentation() : 0;
    return viewport()->x() + decoration + text.left() + margin - horizontalScrollBar()->value();
}

bool KeyedTree::isOnCheckBox(const QPoint& viewportPos) const {
    const QTreeWidgetItem* item = itemAt(viewportPos);
    return item && checkBoxRect(item).contains(viewportPos);
}

void KeyedTree::checkChanged(QTreeWidgetItem* item) {
    if (userAction_)
        checked_.append(item);
}

void KeyedTree::currentChanged(QTreeWidgetItem* item) {
    if (userAction_)
        reached_ = item;
}

// The user's check changes and keyboard moves are reported once QTreeWidget has finished its
// own handling, so that whatever their handlers do (even rebuilding the tree) does not run in
// the middle of it and is not taken for a user action.
void KeyedTree::emitPending() {
    const QList<QTreeWidgetItem*> checked = std::exchange(checked_, {});
    QTreeWidgetItem* reached = std::exchange(reached_, nullptr);
    for (QTreeWidgetItem* item : checked)
        Q_EMIT nodeCheck(item);
    if (reached)
        Q_EMIT nodeClick(reached);
}

// A press that gives the tree the focus may rebuild it (pending changes saved first): the
// nodes it was aimed at are gone, so it selects nothing, and the node shown stays highlighted.
void KeyedTree::focusInEvent(QFocusEvent* event) {
    QTreeWidget::focusInEvent(event);
    const int before = generation_;
    Q_EMIT focusReceived();
    pressSpent_ = event->reason() == Qt::MouseFocusReason && generation_ != before;
    // The press follows at once, unless it was aimed at a part of the tree that takes no
    // focus of its own (a scroll bar): then it is not waited for.
    if (pressSpent_)
        QTimer::singleShot(0, this, [this] { pressSpent_ = false; });
}

void KeyedTree::keyPressEvent(QKeyEvent* event) {
    Q_EMIT keyDown(event->key());
    userAction_ = true;
    QTreeWidget::keyPressEvent(event);
    userAction_ = false;
    emitPending();
}

void KeyedTree::mousePressEvent(QMouseEvent* event) {
    // A release that went elsewhere while a question was asked is not waited for.
    releaseSpent_ = false;
    if (std::exchange(pressSpent_, false)) {
        releaseSpent_ = true;
        event->accept();
        return;
    }
    Q_EMIT mouseDown(event->button(), event->position().toPoint());
    userAction_ = true;
    QTreeWidget::mousePressEvent(event);
    userAction_ = false;
    reached_ = nullptr; // a mouse press is reported as a click on release
    emitPending();
}

void KeyedTree::mouseReleaseEvent(QMouseEvent* event) {
    if (std::exchange(releaseSpent_, false)) {
        event->accept();
        return;
    }
    const QPoint pos = event->position().toPoint();
    userAction_ = true;
    QTreeWidget::mouseReleaseEvent(event);
    userAction_ = false;
    reached_ = nullptr;
    emitPending();
    // A click on the node itself, not on its expand sign.
    QTreeWidgetItem* item = itemAt(pos);
    if (item && event->button() == Qt::LeftButton && visualItemRect(item).contains(pos))
        Q_EMIT nodeClick(item);
    Q_EMIT mouseUp(event->button(), pos);
}
