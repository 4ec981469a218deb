#pragma once

// The rules of the configuration pane: what a key typed in a field becomes, what an edit
// marks as pending (ConfigDirty), how a list is shown when its node is clicked, and
// SauveChange, which offers to save or drop what is pending.

#include "pricelists/configrules.h"

#include <QObject>

class ConfigField;
class PriceListsUi;

class ConfigEditor : public QObject {
    Q_OBJECT
public:
    explicit ConfigEditor(PriceListsUi& ui);

    // Ties the pane to the current PRIXLIST row, or unties it.
    void bind(bool bound);

    // Handlers of the pane's controls (connected to them; tests may call them directly).
    ConfigKey txtConfigKeyPress(ConfigField* field, QChar typed);
    void txtConfigChange(int index); // the user changed the text of txtConfig(index)
    void chkCHClick(int k);          // the user clicked chkCH(k)
    void cmbDepartClick();           // the user chose a department
    void optDeValidate(int k);       // the user chose optDe(k)

    // Shows the current PRIXLIST row in the pane: its heading (the list's desc, or message
    // 1029 for a list not activated), the cost level (an empty or 0 level becomes 3 and is
    // saved at once) and the optDe choice.
    void showList(bool activated);

    // Offers to save what is pending (mode: the value of ConfigDirty). True when the changes
    // were written. Always leaves ConfigDirty at 0 and the trees rebuilt.
    bool SauveChange(qint16 mode);

private:
    void registerControls();
    void fieldEdited(int field);
    void restoreFocusedControl(QWidget* focused);
    bool saveRow();
    void dropChanges(qint16 mode);

    PriceListsUi& ui_;
    bool saving_ = false;
};
