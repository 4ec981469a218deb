#include "pricelists/treebuilder.h"

#include "data/fieldbinding.h"
#include "dbase/recordset.h"
#include "pricelists/imagelist.h"
#include "pricelists/keyedtree.h"
#include "pricelists/programend.h"
#include "pricelists/runguarded.h"
#include "pricelists/treepanes.h"

#include <QSignalBlocker>
#include <optional>

namespace {

const ErrorHandler SetupCatErrors{QStringLiteral("ErrSetupCat: ")};
const ErrorHandler SetupListErrors{QStringLiteral("ErrSetupList: "), QStringLiteral("\n"),
                                   QStringLiteral("\n"), true};
const ErrorHandler CatalistErrors{QStringLiteral("errCatalist:")};
const ErrorHandler SetListErrors{QStringLiteral("errSetList: ")};

// Trees being rebuilt: their new nodes enter them together when the rebuild ends, however
// it ends.
class Building {
public:
    explicit Building(std::initializer_list<KeyedTree*> trees) : trees_(trees) {
        for (KeyedTree* tree : trees_)
            tree->beginBuild();
    }
    ~Building() {
        for (KeyedTree* tree : trees_)
            tree->endBuild();
    }
    Building(const Building&) = delete;
    Building& operator=(const Building&) = delete;

private:
    QList<KeyedTree*> trees_;
};

} // namespace

// Ordinals of the PRIXLIST fields read for every row, looked up once per rebuild.
struct TreeBuilder::ListFields {
    int utiliser, desc, fichier, dateEff, dateStk, codeGro, ficFamille, catNo;

    explicit ListFields(const Recordset& rs)
        : utiliser(rs.fieldIndex(QStringLiteral("UTILISER"))),
          desc(rs.fieldIndex(QStringLiteral("DESC"))),
          fichier(rs.fieldIndex(QStringLiteral("FICHIER"))),
          dateEff(rs.fieldIndex(QStringLiteral("DATEEFF"))),
          dateStk(rs.fieldIndex(QStringLiteral("DATESTK"))),
          codeGro(rs.fieldIndex(QStringLiteral("CODEGRO"))),
          ficFamille(rs.fieldIndex(QStringLiteral("FICFAMILLE"))),
          catNo(rs.fieldIndex(QStringLiteral("CATNO"))) {}
};

TreeBuilder::TreeBuilder(ListTreePane& lists, CatTreePane& catalogues, PriceListState& state,
                         Tables tables)
    : lists_(lists), catalogues_(catalogues), state_(state), tables_(tables) {}

KeyedTree& TreeBuilder::listTree(int index) const {
    return *lists_.tvwList.at(index);
}

KeyedTree& TreeBuilder::catTree(int index) const {
    return *catalogues_.tvwCat.at(index);
}

void TreeBuilder::SetupCat() {
    RunGuarded(SetupCatErrors, [&] {
        state_.CurrentNode = nullptr;
        for (KeyedTree* tree : catalogues_.tvwCat) {
            tree->hide();
            tree->clearNodes();
        }
        {
            // Back to the first tab without the tab handlers: the trees are being rebuilt.
            const QSignalBlocker blocker(catalogues_.tbsCat);
            catalogues_.tbsCat->setCurrentIndex(0);
        }
        state_.CurrentCatTab = 0;

        Recordset& rs = tables_.rsCataList;
        const int fichier = rs.fieldIndex(QStringLiteral("FICHIER"));
        const int desc = rs.fieldIndex(QStringLiteral("DESC"));
        const int utiliser = rs.fieldIndex(QStringLiteral("UTILISER"));
        const int count = rs.recordCount();
        if (count > 0)
            rs.moveFirst();
        const Building building{&catTree(0), &catTree(1)};
        for (int i = 0; i < count && !rs.eof(); ++i, rs.moveNext()) {
            const QVariant code = rs.value(fichier);
            if (code.isNull())
                continue;
            const bool activated = rs.value(utiliser).toBool();
            KeyedTree& tree = catTree(activated ? 0 : 1);
            QTreeWidgetItem* node =
                tree.addNode(CatalogueKey(code.toString()), rs.value(desc).toString(),
                             activated ? ColorUpToDate : ColorInactive);
            // Two catalogues under one code: the second has no node of its own.
            if (!node)
                ShowErrorBox(SetupCatErrors, TreeErrors::KeyNotUnique,
                             TreeErrors::description(TreeErrors::KeyNotUnique));
            state_.CurrentNode = node;
        }
        for (KeyedTree* tree : catalogues_.tvwCat)
            tree->fitColumn();
        catTree(0).show();
    });
}

void TreeBuilder::SetList(bool visible) {
    RunGuarded(SetListErrors, [&] {
        // The nodes go: nothing may keep pointing at them.
        state_.PendingCheckNode = nullptr;
        state_.CurrentNode = nullptr;
        for (KeyedTree* tree : lists_.tvwList) {
            tree->setVisible(visible);
            tree->clearNodes();
        }
    });
}

TreeBuilder::Restored TreeBuilder::SetupList() {
    Recordset& rs = tables_.rsPrixList;
    const auto step = [](const std::function<void()>& body) {
        return RunGuarded(SetupListErrors, body);
    };
    if (step([&] {
            if (tables_.binding)
                tables_.binding->unbind();
        }) == StepResult::Ended)
        return {};
    KeyedTree& shown = listTree(state_.CurrentListTab);
    if (QTreeWidgetItem* selected = shown.selectedNode())
        state_.SavedListNode = shown.nodeIndex(selected);
    SetList(false);
    if (!walkLists())
        return {};
    if (step([&] {
            if (rs.recordCount() > 0)
                rs.moveFirst();
            if (tables_.binding)
                tables_.binding->bind(rs);
        }) == StepResult::Ended)
        return {};
    for (KeyedTree* tree : lists_.tvwList)
        tree->fitColumn();
    catTree(0).fitColumn();
    listTree(state_.CurrentListTab).show();
    const Restored restored = restoreSelection();
    Catalist();
    return restored;
}

// Adds the nodes of every PRIXLIST row. False when the program ends: the recordset was closed,
// or a list names a catalogue the trees do not hold.
bool TreeBuilder::walkLists() {
    Recordset& rs = tables_.rsPrixList;
    const auto step = [](const std::function<void()>& body) {
        return RunGuarded(SetupListErrors, body);
    };
    std::optional<ListFields> fields;
    const StepResult start = step([&] {
        state_.ListCount = rs.recordCount();
        state_.ListMarks.redim(state_.ListCount);
        fields.emplace(rs);
        if (state_.ListCount > 0)
            rs.moveFirst();
    });
    if (start != StepResult::Done)
        return start != StepResult::Ended;
    const Building building{&listTree(0), &listTree(1), &listTree(2), &listTree(3), &catTree(0)};
    int childCount = 0;
    for (int row = 0; row <= state_.ListMarks.upperBound(); ++row) {
        bool atEnd = true;
        bool known = true;
        const StepResult result = step([&] {
            atEnd = rs.eof();
            if (!atEnd)
                known = addListRow(row, *fields, childCount);
        });
        if (result == StepResult::Ended)
            return false;
        if (atEnd)
            break;
        if (!known) {
            RestartForConversion();
            return false;
        }
        const StepResult moved = step([&] { rs.moveNext(); });
        if (moved != StepResult::Done)
            return moved != StepResult::Ended;
    }
    return true;
}

// Adds the nodes of the current PRIXLIST row. False when its CATNO names a catalogue that has
// no node in the activated-catalogue tree.
bool TreeBuilder::addListRow(int row, const ListFields& f, int& childCount) {
    Recordset& rs = tables_.rsPrixList;
    const QString key = ListKey(row);
    const QString text = ListNodeText(rs.value(f.desc).toString(), rs.value(f.codeGro).toString(),
                                      rs.value(f.ficFamille).toString());
    const QString fileCode = rs.value(f.fichier).toString();
    auto add = [&](int tree, OleColor color, bool checked) {
        QTreeWidgetItem* node = listTree(tree).addNode(key, text, color);
        if (!node)
            return;
        KeyedTree::setRow(node, row);
        KeyedTree::setFileCode(node, fileCode);
        if (checked)
            KeyedTree::setChecked(node, true);
        state_.CurrentNode = node;
    };

    if (!rs.value(f.utiliser).toBool()) {
        // Not in the to-be-updated branch: a mark left at this position by another list goes.
        state_.ListMarks(1, row).clear();
        add(3, ColorInactive, false);
        return true;
    }
    const ListBranches branches =
        BranchesOf(true, DateOf(rs.value(f.dateStk)), DateOf(rs.value(f.dateEff)), state_.Today());
    const bool checked = !state_.ListMarks(0, row).isEmpty();
    state_.ListMarks(1, row).clear();
    add(0, branches.color, checked);
    if (branches.toUpdate) {
        add(1, branches.color, checked);
        state_.ListMarks(1, row) = QStringLiteral("1");
    } else if (branches.upcoming) {
        add(2, branches.color, checked);
    }
    const QVariant catno = rs.value(f.catNo);
    if (catno.isNull())
        return true;
    return addCatalogueChildren(row, catno.toString(), text, branches.color, childCount);
}

bool TreeBuilder::addCatalogueChildren(int row, const QString& catno, const QString& text,
                                       OleColor color, int& childCount) {
    KeyedTree& tree = catTree(0);
    const QString fileCode = KeyedTree::fileCodeOf(state_.CurrentNode);
    for (const QString& code : CatnoCodes(catno)) {
        const QString parentKey = CatalogueKey(code);
        QTreeWidgetItem* catalogue = tree.node(parentKey);
        if (!catalogue)
            return false;
        // Past row 999 a list key grows a digit, and the running count can then meet a key
        // already given; another mark keeps each child's key unique.
        QString key = ListChildKey(row, childCount);
        while (tree.node(key))
            key += QLatin1Char('_');
        QTreeWidgetItem* child = tree.addChild(parentKey, key, text, color);
        KeyedTree::setRow(child, row);
        KeyedTree::setFileCode(child, fileCode);
        ++childCount;
        // At its first list, the catalogue turns black and shows the closed picture.
        if (KeyedTree::colorOf(catalogue) != ColorBlack) {
            KeyedTree::setColor(catalogue, ColorBlack);
            catalogue->setIcon(0, ImageList::image(ImageList::ClosedCatalogue));
        }
    }
    return true;
}

TreeBuilder::Restored TreeBuilder::restoreSelection() {
    Restored restored;
    if (state_.SavedListNode != 0) {
        KeyedTree& tree = listTree(state_.CurrentListTab);
        if (QTreeWidgetItem* node = tree.node(state_.SavedListNode)) {
            tree.selectNode(node);
            tree.scrollToItem(node);
            restored.list = {tree.index(), node};
        }
    }
    if (state_.SavedCatNode != 0) {
        if (QTreeWidgetItem* node = catTree(0).node(state_.SavedCatNode)) {
            catTree(0).selectNode(node);
            catTree(0).scrollToItem(node);
        }
        KeyedTree& shown = catTree(state_.CurrentCatTab);
        restored.catalogue = {shown.index(), shown.selectedNode()};
        restored.catalogueRestored = true;
    }
    return restored;
}

// Ticks the activated catalogues whose dates differ: they are offered for download.
void TreeBuilder::Catalist() {
    RunGuarded(CatalistErrors, [&] {
        state_.CheckedCatCount = 0;
        Recordset& rs = tables_.rsCataList;
        const int fichier = rs.fieldIndex(QStringLiteral("FICHIER"));
        const int utiliser = rs.fieldIndex(QStringLiteral("UTILISER"));
        const int dateStk = rs.fieldIndex(QStringLiteral("DATESTK"));
        const int dateEff = rs.fieldIndex(QStringLiteral("DATEEFF"));
        if (rs.recordCount() == 0)
            return;
        for (rs.moveFirst(); !rs.eof(); rs.moveNext()) {
            if (!CatalogueToUpdate(rs.value(utiliser).toBool(), DateOf(rs.value(dateStk)),
                                   DateOf(rs.value(dateEff))))
                continue;
            QTreeWidgetItem* node = catTree(0).node(CatalogueKey(rs.value(fichier).toString()));
            if (!node) {
                ShowErrorBox(CatalistErrors, TreeErrors::ElementNotFound,
                             TreeErrors::description(TreeErrors::ElementNotFound));
                continue;
            }
            KeyedTree::setChecked(node, true);
            ++state_.CheckedCatCount;
            KeyedTree::setColor(node, ColorToUpdate);
        }
    });
}
