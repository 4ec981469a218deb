#pragma once

// The rules of the configuration pane: what a key typed in a field becomes, what an edit
// marks as pending (ConfigDirty), how a list is shown when its node is clicked, and
// SauveChange, which offers to save or drop what is pending.

#include "pricelists/configrules.h"
#include "pricelists/pricelistsstate.h"

#include <QObject>
#include <QPointer>

class ConfigField;
class ConfigPane;
class FieldBinding;
class Recordset;

class ConfigEditor : public QObject {
    Q_OBJECT
public:
    struct Tables {
        Recordset& rsPrixList;
        Recordset* rsDepart = nullptr; // the departments of cmbDepart; may be null
        // Where the pane's controls are tied to the current PRIXLIST row; may be null.
        FieldBinding* binding = nullptr;
    };
    ConfigEditor(ConfigPane& pane, PriceListState& state, Tables tables);

    // Writes what was typed in the pane into the current row. A value its field cannot hold is
    // refused at once with a message; its field keeps the focus and the text. False then.
    bool commitTyped();

    // Handlers of the pane's controls (connected to them; tests may call them directly).
    ConfigKey txtConfigKeyPress(ConfigField* field, QChar typed);
    void txtConfigChange(int index); // the user changed the text of txtConfig(index)
    void chkCHClick(int k);          // the user clicked chkCH(k)
    void cmbDepartClick();           // the user chose a department
    void optDeValidate(int k);       // the user chose optDe(k)

    // Shows the current PRIXLIST row in the pane: its heading (the list's desc, or message
    // 1029 for a list not activated), the cost level (an empty or 0 level becomes 3 and is
    // saved at once) and the optDe choice.
    void showList();

    // Asks whether to save what is pending (mode: the value of ConfigDirty) and saves it or
    // drops it; `focused` is the control that had the focus when the question came. True when
    // the changes were written. The trees are the caller's to rebuild.
    bool SauveChange(qint16 mode, QWidget* focused);

protected:
    // A press elsewhere in the window while a field holds a value it cannot take goes nowhere.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void registerControls();
    void refuse(int field);
    void fieldEdited(int field);
    void restoreFocusedControl(QWidget* focused);
    bool saveRow();
    void dropChanges(qint16 mode);

    ConfigPane& pane_;
    QPointer<ConfigPane> paneAlive_; // the window may take the pane down first
    PriceListState& state_;
    Tables tables_;
};
