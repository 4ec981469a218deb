#include "pricelists/activation.h"

#include "app/events.h"
#include "app/messages.h"
#include "app/prompts.h"
#include "data/prixfields.h"
#include "dbase/recordset.h"
#include "pricelists/catnorules.h"
#include "pricelists/keyedtree.h"
#include "pricelists/listcommands.h"
#include "pricelists/pricelistsui.h"
#include "pricelists/runguarded.h"
#include "pricelists/treepanes.h"

namespace {

const ErrorHandler ActivateErrors{QStringLiteral("errMPActivate: ")};
const ErrorHandler DesactivateErrors{QStringLiteral("errMPDesactivate: ")};

constexpr int MatrixLength = 8;
constexpr int SupplierLength = 25;
constexpr int GroupCodeLength = 4;
const QString DefaultDepartement = QStringLiteral("F");

QString text(const Recordset& rs, int field) {
    return rs.value(field).toString().trimmed();
}

// Closes the list recordset and opens it again from its source with another lock type: the
// activations are kept as one batch, which the dealer saves or drops whole.
void reopenPrixList(Recordset& rs, LockType lockType) {
    rs.close();
    DoEvents();
    rs.setLockType(lockType);
    rs.open();
    if (rs.recordCount() > 0)
        rs.moveFirst();
}

// The list's default group code: the first of CODENVC, CODEUNI, CODEACK that is not empty,
// else CODEUAP (possibly empty).
QString defaultGroupCode(const Recordset& rs) {
    for (int field : {PrixField::CodeNvc, PrixField::CodeUni, PrixField::CodeAck})
        if (const QString code = text(rs, field); !code.isEmpty())
            return code;
    return text(rs, PrixField::CodeUap);
}

// One run of MPActivate: the answers carried from one list to the next, the apply-to-all
// switches, and the state of the question dialog, which keeps its check box and department
// from one question to the next.
class ActivationRun {
public:
    explicit ActivationRun(const ListCommandContext& c) : c_(c), rs_(c.tables.rsPrixList) {}

    void run() {
        const ListMarkTable& marks = c_.state.ListMarks;
        const int last = std::min(c_.state.ListCount, marks.upperBound());
        for (int r = 0; r <= last && !abandoned_; ++r)
            if (!marks(0, r).isEmpty())
                RunGuarded(ActivateErrors, [&] { activateRow(r); });
    }
    bool handled() const { return handled_; }

private:
    void activateRow(int r) {
        rs_.move(r, MoveStart::First);
        question_ = Question{};
        question_.title = rs_.value(PrixField::Desc).toString();
        question_.optionCaption = LoadText(144);
        question_.option = true;
        handled_ = true;
        if (rs_.value(PrixField::Utiliser).toBool())
            return;
        if (!matrixForAll_ && !ask(LoadText(15), lastMatrix_, LoadText(63), matrixForAll_))
            return;
        if (!supplierForAll_ && !ask(LoadText(132), lastSupplier_, LoadText(14), supplierForAll_))
            return;
        question_.departement = rs_.value(PrixField::Departem).isNull()
                                    ? DefaultDepartement
                                    : text(rs_, PrixField::Departem);
        QString groupCode;
        if (!askGroupCode(groupCode))
            return;
        write(groupCode);
    }

    // Asks one question; on OK the text typed becomes `answer` and the check box `forAll`.
    // False on "Abandon", which stops the run.
    bool ask(const QString& message, QString& answer, const QString& fieldLabel, bool& forAll) {
        question_.text = QStringLiteral("\n") + message;
        question_.defaultValue = answer;
        question_.fieldLabel = fieldLabel;
        const QuestionAnswer reply = show();
        if (abandoned_)
            return false;
        answer = reply.text;
        forAll = reply.option;
        return true;
    }

    bool askGroupCode(QString& code) {
        const bool notRequired = rs_.value(PrixField::PasObliger).toBool();
        const QString proposed = defaultGroupCode(rs_);
        if (useDefaultCodes_ && (notRequired || !proposed.isEmpty())) {
            code = proposed;
            return true;
        }
        question_.text = QStringLiteral("\n") + LoadText(134);
        if (!notRequired)
            question_.text += QStringLiteral("\n\n") + LoadText(143);
        question_.defaultValue = proposed;
        question_.fieldLabel = LoadText(10);
        question_.showDepartement = true;
        question_.optionCaption = LoadText(145);
        for (;;) {
            question_.option = useDefaultCodes_;
            const QuestionAnswer reply = show();
            if (abandoned_)
                return false;
            code = reply.text.trimmed();
            useDefaultCodes_ = reply.option;
            if (code.size() > GroupCodeLength) {
                MsgBox(LoadText(42), Buttons::Ok, Icon::Warning);
                continue;
            }
            if (!code.isEmpty() || notRequired)
                return true;
        }
    }

    QuestionAnswer show() {
        const QuestionAnswer reply = AskQuestion(question_);
        abandoned_ = reply.bouton == QuestionAnswer::Abandon;
        if (!abandoned_) {
            question_.option = reply.option;
            if (question_.showDepartement)
                question_.departement = reply.departement;
        }
        return reply;
    }

    void write(const QString& groupCode) {
        rs_.setValue(PrixField::CodeGro, groupCode.toUpper());
        if (!lastMatrix_.isEmpty()) {
            rs_.setValue(PrixField::FicFamille, lastMatrix_.left(MatrixLength).trimmed().toUpper());
            rs_.setValue(PrixField::LFamille, true);
        }
        if (!lastSupplier_.isEmpty())
            rs_.setValue(PrixField::Fournis,
                         lastSupplier_.left(SupplierLength).trimmed().toUpper());
        rs_.setValue(PrixField::Utiliser, true);
        for (int k = 0; k < 3; ++k)
            rs_.setValue(PrixField::ChDesc1 + k, true);
        rs_.setValue(PrixField::Departem, question_.departement);
        rs_.update();
        c_.state.ConfigDirty = Dirty::Batch;
    }

    const ListCommandContext& c_;
    Recordset& rs_;
    Question question_;
    QString lastMatrix_;
    QString lastSupplier_;
    bool matrixForAll_ = false;
    bool supplierForAll_ = false;
    bool useDefaultCodes_ = false;
    bool handled_ = false;
    bool abandoned_ = false;
};

// Clears the group code from the categories (GRL1 to GRL9) of the catalogues of a CATNO.
void clearCategoriesOf(Recordset& catalogues, const QString& catno, const QString& groupCode) {
    for (const QString& code : CatnoCodes(catno)) {
        catalogues.setFilter(QStringLiteral("[FICHIER] = '%1'").arg(code));
        for (; !catalogues.eof(); catalogues.moveNext()) {
            for (int k = 1; k <= 9; ++k) {
                const QString field = QStringLiteral("GRL%1").arg(k);
                if (catalogues.value(field).toString().trimmed() == groupCode)
                    catalogues.setValue(field, QVariant());
            }
            catalogues.update();
        }
    }
}

void deactivateList(const ListCommandContext& c, int r) {
    Recordset& rs = c.tables.rsPrixList;
    Recordset& catalogues = c.tables.rsCataList;
    QString& mark = c.state.ListMarks(0, r);
    rs.move(r, MoveStart::First);
    const QString groupCode = c.shownField(PrixField::CodeGro).trimmed();
    if (!groupCode.isEmpty()) {
        rs.setFilter(QStringLiteral("[UTILISER] = True AND [CODEGRO] = '%1'").arg(groupCode));
        // The last activated list of its code takes the code out of its catalogues.
        if (rs.recordCount() == 1 && text(rs, PrixField::Fichier) == mark)
            clearCategoriesOf(catalogues, rs.value(PrixField::CatNo).toString(), groupCode);
    }
    rs.setFilter(QString());
    rs.find(QStringLiteral("[FICHIER] = '%1'").arg(mark), 0, SearchDirection::Forward,
            MoveStart::First);
    mark.clear();
    rs.setValue(PrixField::Utiliser, false);
    rs.setValue(PrixField::CatNo, QString());
    rs.update();
    catalogues.setFilter(QString());
}

void deactivateLists(const ListCommandContext& c) {
    const ListMarkTable& marks = c.state.ListMarks;
    const int last = std::min(c.state.ListCount, marks.upperBound());
    for (int r = 0; r <= last; ++r)
        if (!marks(0, r).isEmpty())
            RunGuarded(DesactivateErrors, [&] { deactivateList(c, r); });
    RunGuarded(DesactivateErrors, [&] {
        c.tables.rsCataList.requery();
        c.tables.rsPrixList.requery();
        if (c.tables.rsPrixCodes)
            c.tables.rsPrixCodes->requery();
    });
    DoEvents();
}

// A catalogue is withdrawn only once no list is associated with it any more.
void deactivateCatalogue(const ListCommandContext& c) {
    const QTreeWidgetItem* node = c.catalogues.tvwCat[0]->selectedNode();
    if (!node)
        return;
    if (node->childCount() > 0 || node->parent()) {
        MsgBox(LoadText(139), Buttons::Ok, Icon::Critical);
        return;
    }
    if (MsgBox(LoadText(129), Buttons::YesNo, Icon::Warning) != Answer::Yes)
        return;
    RunGuarded(DesactivateErrors, [&] {
        Recordset& catalogues = c.tables.rsCataList;
        catalogues.find(
            QStringLiteral("[FICHIER] = '%1'").arg(CatalogueCodeOfKey(KeyedTree::keyOf(node))), 0,
            SearchDirection::Forward, MoveStart::First);
        catalogues.setValue(QStringLiteral("UTILISER"), false);
        catalogues.update();
    });
}

} // namespace

void MPActivate(const ListCommandContext& c) {
    if (!c.ui.saveIfDirty())
        return;
    Recordset& rs = c.tables.rsPrixList;
    ActivationRun run(c);
    // A list table that cannot be opened again in batch mode is not walked.
    const bool opened = RunGuarded(ActivateErrors, [&] {
                            reopenPrixList(rs, LockType::BatchOptimistic);
                        }) == StepResult::Done;
    if (opened)
        run.run();
    if (c.state.ConfigDirty != Dirty::None)
        c.ui.saveChanges();
    RunGuarded(ActivateErrors, [&] { reopenPrixList(rs, LockType::Optimistic); });
    if (run.handled())
        c.ui.refresh();
    else if (opened)
        MsgBox(LoadText(141), Buttons::Ok, Icon::Warning);
}

void MPDesactivate(const ListCommandContext& c) {
    if (c.state.LastTreeFocus == QLatin1String("tvwList"))
        deactivateLists(c);
    else if (c.state.CurrentCatTab == 0 && c.state.LastTreeFocus == QLatin1String("tvwCat"))
        deactivateCatalogue(c);
    c.ui.refresh();
}
