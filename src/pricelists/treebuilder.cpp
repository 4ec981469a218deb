#include "pricelists/treebuilder.h"

#include "app/appstate.h"
#include "app/prompts.h"
#include "dbase/dberror.h"
#include "dbase/recordset.h"
#include "pricelists/configeditor.h"
#include "pricelists/imagelist.h"
#include "pricelists/keyedtree.h"
#include "pricelists/pricelistsui.h"
#include "pricelists/programend.h"
#include "pricelists/treeinteractions.h"
#include "pricelists/treepanes.h"

#include <QSignalBlocker>
#include <optional>

namespace {

constexpr qint64 RecordsetClosed = 3704;

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

QString ErrorBoxText(const QString& label, qint64 number, const QString& description) {
    return label + QString::number(number) + QLatin1Char('\n') + description + QLatin1Char('\n') +
           App().ContactLine;
}

StepResult RunGuarded(const QString& label, const std::function<void()>& step, bool endOnClosed) {
    try {
        step();
        return StepResult::Done;
    } catch (const DbError& error) {
        if (endOnClosed && error.number() == RecordsetClosed) {
            EndProgram();
            return StepResult::Ended;
        }
        MsgBox(ErrorBoxText(label, error.number(), error.description()));
    } catch (const std::exception& error) {
        MsgBox(ErrorBoxText(label, 0, QString::fromLocal8Bit(error.what())));
    }
    return StepResult::Failed;
}

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

TreeBuilder::TreeBuilder(PriceListsUi& ui) : ui_(ui) {}

KeyedTree& TreeBuilder::listTree(int index) const {
    return *ui_.listPane->tvwList.at(index);
}

KeyedTree& TreeBuilder::catTree(int index) const {
    return *ui_.catPane->tvwCat.at(index);
}

void TreeBuilder::SetupCat() {
    PriceListState& state = ui_.state();
    RunGuarded(QStringLiteral("ErrSetupCat: "), [&] {
        state.CurrentNode = nullptr;
        for (KeyedTree* tree : ui_.catPane->tvwCat) {
            tree->hide();
            tree->clearNodes();
        }
        {
            // Back to the first tab without the tab handlers: the trees are being rebuilt.
            const QSignalBlocker blocker(ui_.catPane->tbsCat);
            ui_.catPane->tbsCat->setCurrentIndex(0);
        }
        state.CurrentCatTab = 0;

        Recordset& rs = ui_.rsCataList();
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
            const QString key = CatalogueKey(code.toString());
            const QString text = rs.value(desc).toString();
            if (rs.value(utiliser).toBool())
                state.CurrentNode = catTree(0).addNode(key, text, ColorUpToDate);
            else
                state.CurrentNode = catTree(1).addNode(key, text, ColorInactive);
        }
        for (KeyedTree* tree : ui_.catPane->tvwCat)
            tree->fitColumn();
        catTree(0).show();
    });
}

void TreeBuilder::SetList(bool visible) {
    RunGuarded(QStringLiteral("errSetList: "), [&] {
        PriceListState& state = ui_.state();
        // The nodes go: nothing may keep pointing at them.
        state.PendingCheckNode = nullptr;
        state.CurrentNode = nullptr;
        for (KeyedTree* tree : ui_.listPane->tvwList) {
            tree->setVisible(visible);
            tree->clearNodes();
        }
    });
}

void TreeBuilder::SetupList() {
    const QString label = QStringLiteral("ErrSetupList: ");
    PriceListState& state = ui_.state();
    Recordset& rs = ui_.rsPrixList();
    auto step = [&](const std::function<void()>& body) { return RunGuarded(label, body, true); };

    if (step([&] { ui_.config().bind(false); }) == StepResult::Ended)
        return;
    KeyedTree& shown = listTree(state.CurrentListTab);
    if (QTreeWidgetItem* selected = shown.selectedNode())
        state.SavedListNode = shown.nodeIndex(selected);
    SetList(false);

    std::optional<ListFields> fields;
    const StepResult start = step([&] {
        state.ListCount = rs.recordCount();
        state.ListMarks.redim(state.ListCount);
        fields.emplace(rs);
        if (state.ListCount > 0)
            rs.moveFirst();
    });
    if (start == StepResult::Ended)
        return;
    if (start == StepResult::Done) {
        const Building building{&listTree(0), &listTree(1), &listTree(2), &listTree(3),
                                &catTree(0)};
        int childCount = 0;
        for (int row = 0; row <= state.ListMarks.upperBound(); ++row) {
            bool atEnd = true;
            bool known = true;
            StepResult result = step([&] {
                atEnd = rs.eof();
                if (!atEnd)
                    known = addListRow(row, *fields, childCount);
            });
            if (result == StepResult::Ended)
                return;
            if (atEnd)
                break;
            if (!known) {
                RestartForConversion();
                return;
            }
            if (step([&] { rs.moveNext(); }) != StepResult::Done)
                return;
        }
    }

    if (step([&] {
            if (rs.recordCount() > 0)
                rs.moveFirst();
            ui_.config().bind(true);
        }) == StepResult::Ended)
        return;
    for (KeyedTree* tree : ui_.listPane->tvwList)
        tree->fitColumn();
    catTree(0).fitColumn();
    listTree(state.CurrentListTab).show();
    restoreSelection();
    Catalist();
}

// Adds the nodes of the current PRIXLIST row. False when its CATNO names a catalogue that has
// no node in the activated-catalogue tree.
bool TreeBuilder::addListRow(int row, const ListFields& f, int& childCount) {
    PriceListState& state = ui_.state();
    Recordset& rs = ui_.rsPrixList();
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
        state.CurrentNode = node;
    };

    if (!rs.value(f.utiliser).toBool()) {
        // Not in the to-be-updated branch: a mark left at this position by another list goes.
        state.ListMarks(1, row).clear();
        add(3, ColorInactive, false);
        return true;
    }
    const ListBranches branches =
        BranchesOf(true, DateOf(rs.value(f.dateStk)), DateOf(rs.value(f.dateEff)), state.Today());
    const bool checked = !state.ListMarks(0, row).isEmpty();
    state.ListMarks(1, row).clear();
    add(0, branches.color, checked);
    if (branches.toUpdate) {
        add(1, branches.color, checked);
        state.ListMarks(1, row) = QStringLiteral("1");
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
    const QString fileCode = KeyedTree::fileCodeOf(ui_.state().CurrentNode);
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

void TreeBuilder::restoreSelection() {
    PriceListState& state = ui_.state();
    if (state.SavedListNode != 0) {
        KeyedTree& tree = listTree(state.CurrentListTab);
        if (QTreeWidgetItem* node = tree.node(state.SavedListNode)) {
            tree.selectNode(node);
            tree.scrollToItem(node);
            ui_.interactions().Nodeclick(tree.index(), node);
        }
    }
    if (state.SavedCatNode != 0) {
        if (QTreeWidgetItem* node = catTree(0).node(state.SavedCatNode)) {
            catTree(0).selectNode(node);
            catTree(0).scrollToItem(node);
        }
        KeyedTree& shown = catTree(state.CurrentCatTab);
        ui_.interactions().tvwCatNodeClick(shown.index(), shown.selectedNode());
    }
}

void TreeBuilder::Catalist() {
    PriceListState& state = ui_.state();
    RunGuarded(QStringLiteral("errCatalist:"), [&] {
        state.CheckedCatCount = 0;
        Recordset& rs = ui_.rsCataList();
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
            if (!node)
                continue;
            KeyedTree::setChecked(node, true);
            ++state.CheckedCatCount;
            KeyedTree::setColor(node, ColorToUpdate);
        }
    });
}
