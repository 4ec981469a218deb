#include "pricelists/selectbyname.h"

#include "app/messages.h"
#include "app/prompts.h"
#include "data/prixfields.h"
#include "dbase/recordset.h"
#include "pricelists/keyedtree.h"
#include "pricelists/listcommands.h"
#include "pricelists/runguarded.h"
#include "pricelists/treepanes.h"

namespace {

const ErrorHandler SelectErrors{QStringLiteral("errSelection: ")};

// What the answer does to one list: an empty answer unchecks it, "*" checks it, a word checks
// it when its description holds the word exactly (WIRE finds WIRE HARNESS, not Wire harness),
// and leaves it alone otherwise.
enum class NameSelection { Check, Uncheck, Keep };

NameSelection SelectionFor(const QString& answer, const QString& desc) {
    if (answer.isEmpty())
        return NameSelection::Uncheck;
    if (answer == QLatin1String("*") || desc.contains(answer, Qt::CaseSensitive))
        return NameSelection::Check;
    return NameSelection::Keep;
}

} // namespace

void SelectByName(const ListCommandContext& c) {
    c.bindConfig(false);
    const QString answer = InputBox(LoadText(135) + QStringLiteral("\n") + LoadText(136)).toUpper();
    KeyedTree& tree = *c.lists.tvwList.at(c.state.CurrentListTab);
    Recordset& rs = c.tables.rsPrixList;
    for (int i = 1; i <= tree.nodeCount(); ++i) {
        RunGuarded(SelectErrors, [&] {
            QTreeWidgetItem* node = tree.node(i);
            const int r = KeyedTree::rowOf(node);
            rs.move(r, MoveStart::First);
            const NameSelection selection =
                SelectionFor(answer, rs.value(PrixField::Desc).toString());
            if (selection == NameSelection::Keep)
                return;
            const bool check = selection == NameSelection::Check;
            c.state.ListMarks(0, r) = check ? KeyedTree::fileCodeOf(node) : QString();
            KeyedTree::setChecked(node, check);
        });
    }
    c.bindConfig(true);
}
