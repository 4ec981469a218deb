#pragma once

#include "dbase/recordset.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QWidget;

// Ties widgets to fields of the current row of a recordset, as data-bound controls did: while
// bound, each control shows its field of the current row (again after every move) and a user
// edit writes into that row's pending values: a check box or a list at once, a text box when
// its text is committed (the window commits it when the box is left). Unbinding stops both;
// the controls keep what they show. The controls are registered once; bind() and unbind()
// switch them.
class FieldBinding : public QObject {
    Q_OBJECT
public:
    explicit FieldBinding(QObject* parent = nullptr);
    ~FieldBinding() override;

    // A text box editing field ordinal `field` as text.
    void addLineEdit(QLineEdit* edit, int field);
    // A check box editing a logical field.
    void addCheckBox(QCheckBox* box, int field);
    // A list whose entries are the rows of `rowSource`: it shows `listField` and writes the
    // row's `boundColumn` into `field` (the department list: DESCR shown, CODEP stored).
    void addComboBox(QComboBox* combo, int field, Recordset& rowSource, const QString& listField,
                     const QString& boundColumn);
    // Forgets every control (unbinding first).
    void clearControls();

    void bind(Recordset& recordset);
    void unbind();

    // Writes what the user typed in a text box (in every text box: null) into the current row.
    // A text the field cannot hold is refused (editRefused): nothing is written and the text
    // stays in its box, still to be committed. False when something was refused.
    bool commit(const QWidget* control = nullptr);
    // True while a text box holds typed text not yet written.
    bool hasTyped(const QWidget* control) const;
    bool isBound() const { return recordset_ != nullptr; }
    Recordset* recordset() const { return recordset_; }

    // How a value shows in a text box: numbers without useless zeros and with a point, dates
    // as yyyy.MM.dd, logicals as True/False, Null as nothing.
    static QString displayText(const QVariant& value);

Q_SIGNALS:
    // The user changed a bound control: typed in a text box, or a check box or list whose
    // field now holds the new pending value.
    void edited(int field);
    // The user's value does not fit the field (a bad date, a number too wide...); the row
    // keeps its former value. The description says why.
    void editRefused(int field, const QString& description);

private:
    enum class Kind { Text, Check, Combo };
    struct Control {
        Kind kind;
        QPointer<QWidget> widget;
        int field;
        QPointer<Recordset> rowSource;
        QString listField;
        QString boundColumn;
        bool typed = false; // a text box's text not yet written
    };

    void connectControl(const Control& control);
    void fillCombo(const Control& control);
    void refresh(int onlyField = -1);
    Control* find(const QWidget* widget);
    void show(Control& control);
    bool write(int field, const QVariant& value);

    QList<Control> controls_;
    QPointer<Recordset> recordset_;
    QList<QMetaObject::Connection> connections_;
    bool writing_ = false;
};
