#include "pricelists/configeditor.h"

#include "app/messages.h"
#include "app/prompts.h"
#include "data/fieldbinding.h"
#include "dbase/recordset.h"
#include "pricelists/configpane.h"
#include "pricelists/pricelistsui.h"
#include "pricelists/treebuilder.h"
#include "pricelists/treepanes.h"

#include <QApplication>
#include <QScopeGuard>

namespace {

const QString PaneErrors = QStringLiteral("errConfig: ");

} // namespace

ConfigEditor::ConfigEditor(PriceListsUi& ui) : ui_(ui) {
    ConfigPane& pane = *ui_.configPane;
    for (ConfigField* field : pane.txtConfig)
        if (field)
            field->setKeyFilter(
                [this](ConfigField* f, QChar typed) { return txtConfigKeyPress(f, typed); });
    for (int k = 0; k < 3; ++k)
        connect(pane.optDe[k], &QRadioButton::clicked, this, [this, k] { optDeValidate(k); });
    registerControls();
}

// Text box i edits field i, the department list field 16, the check boxes fields 17 to 19.
// The binding writes what the user changes into the current row and tells which field.
void ConfigEditor::registerControls() {
    FieldBinding* binding = ui_.parts().binding;
    if (!binding)
        return;
    ConfigPane& pane = *ui_.configPane;
    binding->clearControls();
    for (ConfigField* field : pane.txtConfig)
        if (field)
            binding->addLineEdit(field, field->index());
    if (Recordset* departments = ui_.parts().rsDepart)
        binding->addComboBox(pane.cmbDepart, PrixField::Departem, *departments,
                             QStringLiteral("DESCR"), QStringLiteral("CODEP"));
    for (int k = 0; k < 3; ++k)
        binding->addCheckBox(pane.chkCH[k], PrixField::ChDesc1 + k);
    connect(binding, &FieldBinding::edited, this, [this](int field) { fieldEdited(field); });
}

void ConfigEditor::fieldEdited(int field) {
    if (field == PrixField::Departem)
        cmbDepartClick();
    else if (field >= PrixField::ChDesc1 && field < PrixField::ChDesc1 + 3)
        chkCHClick(field - PrixField::ChDesc1);
    else
        txtConfigChange(field);
}

void ConfigEditor::bind(bool bound) {
    FieldBinding* binding = ui_.parts().binding;
    if (!binding)
        return;
    if (bound)
        binding->bind(ui_.rsPrixList());
    else
        binding->unbind();
}

ConfigKey ConfigEditor::txtConfigKeyPress(ConfigField* field, QChar typed) {
    const int kept = int(field->text().size() - field->selectedText().size());
    return ConfigKeyRule(field->index(), kept, typed);
}

void ConfigEditor::txtConfigChange(int) {
    RunGuarded(PaneErrors, [&] {
        ui_.state().ConfigDirty = Dirty::Pane;
        ui_.rsPrixList().setValue(PrixField::Utiliser, true);
    });
}

void ConfigEditor::chkCHClick(int k) {
    RunGuarded(PaneErrors, [&] {
        ui_.state().ConfigDirty = Dirty::Pane;
        ui_.rsPrixList().setValue(PrixField::ChDesc1 + k, ui_.configPane->chkCH[k]->isChecked());
    });
}

// A department chosen is a change of the row like any other, asked about before it is written.
void ConfigEditor::cmbDepartClick() {
    ui_.state().ConfigDirty = Dirty::Pane;
}

void ConfigEditor::optDeValidate(int k) {
    RunGuarded(PaneErrors, [&] {
        Recordset& rs = ui_.rsPrixList();
        if (rs.value(PrixField::CoutDe).toDouble() == k + 1)
            return;
        ui_.configPane->optDe[k]->setChecked(true);
        ui_.state().ConfigDirty = Dirty::Pane;
        rs.setValue(PrixField::CoutDe, k + 1);
    });
}

void ConfigEditor::showList(bool activated) {
    Recordset& rs = ui_.rsPrixList();
    ConfigPane& pane = *ui_.configPane;
    pane.lblConfig[PrixField::Desc]->setText(activated ? rs.value(PrixField::Desc).toString()
                                                       : LoadText(29));
    const QVariant level = rs.value(PrixField::CoutDe);
    if (level.isNull() || level.toString().trimmed().isEmpty() || level.toDouble() == 0) {
        rs.setValue(PrixField::CoutDe, 3);
        rs.update();
    }
    const int choice = int(rs.value(PrixField::CoutDe).toDouble()) - 1;
    if (choice >= 0 && choice < 3)
        pane.optDe[choice]->setChecked(true);
}

bool ConfigEditor::SauveChange(qint16 mode) {
    if (saving_)
        return false;
    saving_ = true;
    const auto done = qScopeGuard([this] { saving_ = false; });
    const QString label = QStringLiteral("ErrSauveChange: ");
    PriceListState& state = ui_.state();
    QWidget* tree = ui_.listPane->tvwList.at(state.CurrentListTab);
    QWidget* focused = QApplication::focusWidget();
    QWidget* window = ui_.parts().window;

    tree->setEnabled(false);
    if (window)
        window->setCursor(Qt::WaitCursor);
    bool saved = false;
    if (MsgBox(LoadText(61), Buttons::YesNo, Icon::Warning) == Answer::No) {
        RunGuarded(label, [&] { restoreFocusedControl(focused); });
        RunGuarded(label, [&] { dropChanges(mode); });
        state.ListMarks.clearSelection();
    } else if (mode == Dirty::Pane) {
        RunGuarded(label, [&] { saved = saveRow(); });
    } else if (mode == Dirty::Batch) {
        RunGuarded(label, [&] {
            ui_.rsPrixList().updateBatch();
            saved = true;
        });
    }
    state.ConfigDirty = Dirty::None;
    ui_.refresh();
    if (window)
        window->unsetCursor();
    tree->setEnabled(true);
    tree->setFocus();
    return saved;
}

// A list whose group code is required cannot be saved without one: its stored code stays.
bool ConfigEditor::saveRow() {
    Recordset& rs = ui_.rsPrixList();
    const bool codeMissing =
        ui_.configPane->txtConfig[PrixField::CodeGro]->text().trimmed().isEmpty();
    if (codeMissing && !rs.value(PrixField::PasObliger).toBool()) {
        MsgBox(LoadText(138), Buttons::Ok, Icon::None, rs.value(PrixField::Desc).toString());
        rs.cancelUpdate();
        return false;
    }
    rs.update();
    return true;
}

// A batch of activations is dropped whole; an edit of the pane concerns the current row only.
void ConfigEditor::dropChanges(qint16 mode) {
    if (mode == Dirty::Batch)
        ui_.rsPrixList().cancelBatch();
    else
        ui_.rsPrixList().cancelUpdate();
}

// The control being edited gets its stored value back.
void ConfigEditor::restoreFocusedControl(QWidget* focused) {
    ConfigPane& pane = *ui_.configPane;
    Recordset& rs = ui_.rsPrixList();
    if (const int i = pane.fieldIndexOf(focused); i >= 0)
        pane.txtConfig[i]->setText(FieldBinding::displayText(rs.storedValue(i)));
    else if (const int k = pane.checkIndexOf(focused); k >= 0)
        pane.chkCH[k]->setChecked(rs.storedValue(PrixField::ChDesc1 + k).toBool());
}
