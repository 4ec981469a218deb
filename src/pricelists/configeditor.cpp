#include "pricelists/configeditor.h"

#include "app/messages.h"
#include "app/prompts.h"
#include "data/fieldbinding.h"
#include "dbase/recordset.h"
#include "pricelists/configpane.h"
#include "pricelists/runguarded.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWindow>

namespace {

const ErrorHandler PaneErrors{QStringLiteral("errConfig: ")};
const ErrorHandler SaveErrors{QStringLiteral("ErrSauveChange: ")};

} // namespace

ConfigEditor::ConfigEditor(ConfigPane& pane, PriceListState& state, Tables tables)
    : pane_(pane), paneAlive_(&pane), state_(state), tables_(tables) {
    for (ConfigField* field : pane.txtConfig) {
        if (!field)
            continue;
        field->setKeyFilter(
            [this](ConfigField* f, QChar typed) { return txtConfigKeyPress(f, typed); });
        field->setLeaveHandler([this](ConfigField* f) {
            if (tables_.binding)
                tables_.binding->commit(f);
        });
    }
    qApp->installEventFilter(this);
    for (int k = 0; k < 3; ++k)
        connect(pane.optDe[k], &QRadioButton::clicked, this, [this, k] { optDeValidate(k); });
    registerControls();
}

// Text box i edits field i, the department list field 16, the check boxes fields 17 to 19.
// The binding writes what the user changes into the current row and tells which field.
void ConfigEditor::registerControls() {
    FieldBinding* binding = tables_.binding;
    if (!binding)
        return;
    ConfigPane& pane = pane_;
    binding->clearControls();
    for (ConfigField* field : pane.txtConfig)
        if (field)
            binding->addLineEdit(field, field->index());
    if (Recordset* departments = tables_.rsDepart)
        binding->addComboBox(pane.cmbDepart, PrixField::Departem, *departments,
                             QStringLiteral("DESCR"), QStringLiteral("CODEP"));
    for (int k = 0; k < 3; ++k)
        binding->addCheckBox(pane.chkCH[k], PrixField::ChDesc1 + k);
    connect(binding, &FieldBinding::edited, this, [this](int field) { fieldEdited(field); });
    connect(binding, &FieldBinding::editRefused, this, [this](int field) { refuse(field); });
}

bool ConfigEditor::commitTyped() {
    return !tables_.binding || tables_.binding->commit();
}

// The field keeps the focus (taken back at once when it was leaving) and what was typed; the
// message says what the field takes.
void ConfigEditor::refuse(int field) {
    if (ConfigField* box =
            field >= 0 && field < PrixField::Count ? pane_.txtConfig[field] : nullptr)
        box->setFocus();
    int message = 148;
    switch (tables_.rsPrixList.field(field).type) {
    case 'D':
        message = 146;
        break;
    case 'N':
    case 'F':
        message = 147;
        break;
    default:
        break;
    }
    MsgBox(LoadText(message), Buttons::Ok, Icon::Warning);
}

// Looked at as the window system delivers the press, before any control takes the focus. The
// field is the window's focus, even while the window itself is not active.
bool ConfigEditor::eventFilter(QObject* watched, QEvent* event) {
    const bool press =
        event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick;
    if (!press || !tables_.binding || !paneAlive_)
        return false;
    QWidget* window = pane_.window();
    if (watched != static_cast<QObject*>(window->windowHandle()))
        return false;
    auto* field = qobject_cast<ConfigField*>(window->focusWidget());
    if (!field || !tables_.binding->hasTyped(field))
        return false;
    const auto* mouse = static_cast<QMouseEvent*>(event);
    if (QApplication::widgetAt(mouse->globalPosition().toPoint()) == field)
        return false;
    return !tables_.binding->commit(field);
}

void ConfigEditor::fieldEdited(int field) {
    if (field == PrixField::Departem)
        cmbDepartClick();
    else if (field >= PrixField::ChDesc1 && field < PrixField::ChDesc1 + 3)
        chkCHClick(field - PrixField::ChDesc1);
    else
        txtConfigChange(field);
}

ConfigKey ConfigEditor::txtConfigKeyPress(ConfigField* field, QChar typed) {
    const int kept = int(field->text().size() - field->selectedText().size());
    return ConfigKeyRule(field->index(), kept, typed);
}

void ConfigEditor::txtConfigChange(int) {
    RunGuarded(PaneErrors, [&] {
        state_.ConfigDirty = Dirty::Pane;
        tables_.rsPrixList.setValue(PrixField::Utiliser, true);
    });
}

void ConfigEditor::chkCHClick(int k) {
    RunGuarded(PaneErrors, [&] {
        state_.ConfigDirty = Dirty::Pane;
        tables_.rsPrixList.setValue(PrixField::ChDesc1 + k, pane_.chkCH[k]->isChecked());
    });
}

// A department chosen is a change of the row like any other, asked about before it is written.
void ConfigEditor::cmbDepartClick() {
    state_.ConfigDirty = Dirty::Pane;
}

void ConfigEditor::optDeValidate(int k) {
    RunGuarded(PaneErrors, [&] {
        Recordset& rs = tables_.rsPrixList;
        if (rs.value(PrixField::CoutDe).toDouble() == k + 1)
            return;
        pane_.optDe[k]->setChecked(true);
        state_.ConfigDirty = Dirty::Pane;
        rs.setValue(PrixField::CoutDe, k + 1);
    });
}

void ConfigEditor::showList() {
    Recordset& rs = tables_.rsPrixList;
    const bool activated = rs.value(PrixField::Utiliser).toBool();
    pane_.lblConfig[PrixField::Desc]->setText(activated ? rs.value(PrixField::Desc).toString()
                                                        : LoadText(29));
    const QVariant level = rs.value(PrixField::CoutDe);
    if (level.isNull() || level.toString().trimmed().isEmpty() || level.toDouble() == 0) {
        rs.setValue(PrixField::CoutDe, 3);
        rs.update();
    }
    const int choice = int(rs.value(PrixField::CoutDe).toDouble()) - 1;
    if (choice >= 0 && choice < 3)
        pane_.optDe[choice]->setChecked(true);
}

bool ConfigEditor::SauveChange(qint16 mode, QWidget* focused) {
    bool saved = false;
    if (MsgBox(LoadText(61), Buttons::YesNo, Icon::Warning) == Answer::No) {
        RunGuarded(SaveErrors, [&] { restoreFocusedControl(focused); });
        RunGuarded(SaveErrors, [&] { dropChanges(mode); });
        state_.ListMarks.clearSelection();
    } else if (mode == Dirty::Pane) {
        RunGuarded(SaveErrors, [&] { saved = saveRow(); });
    } else if (mode == Dirty::Batch) {
        RunGuarded(SaveErrors, [&] {
            tables_.rsPrixList.updateBatch();
            saved = true;
        });
    }
    return saved;
}

// A list whose group code is required cannot be saved without one: its stored code stays.
bool ConfigEditor::saveRow() {
    Recordset& rs = tables_.rsPrixList;
    const bool codeMissing = pane_.txtConfig[PrixField::CodeGro]->text().trimmed().isEmpty();
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
        tables_.rsPrixList.cancelBatch();
    else
        tables_.rsPrixList.cancelUpdate();
}

// The control being edited gets its stored value back.
void ConfigEditor::restoreFocusedControl(QWidget* focused) {
    ConfigPane& pane = pane_;
    Recordset& rs = tables_.rsPrixList;
    if (const int i = pane.fieldIndexOf(focused); i >= 0)
        pane.txtConfig[i]->setText(FieldBinding::displayText(rs.storedValue(i)));
    else if (const int k = pane.checkIndexOf(focused); k >= 0)
        pane.chkCH[k]->setChecked(rs.storedValue(PrixField::ChDesc1 + k).toBool());
}
