#include "data/fieldbinding.h"

#include "dbase/dberror.h"
#include "dbase/recordset.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDate>
#include <QLineEdit>

FieldBinding::FieldBinding(QObject* parent) : QObject(parent) {}

FieldBinding::~FieldBinding() {
    unbind();
}

void FieldBinding::addLineEdit(QLineEdit* edit, int field) {
    controls_.append({Kind::Text, edit, field, nullptr, {}, {}, false});
    if (isBound())
        connectControl(controls_.last());
}

void FieldBinding::addCheckBox(QCheckBox* box, int field) {
    controls_.append({Kind::Check, box, field, nullptr, {}, {}, false});
    if (isBound())
        connectControl(controls_.last());
}

void FieldBinding::addComboBox(QComboBox* combo, int field, Recordset& rowSource,
                               const QString& listField, const QString& boundColumn) {
    controls_.append({Kind::Combo, combo, field, &rowSource, listField, boundColumn, false});
    if (isBound())
        connectControl(controls_.last());
}

void FieldBinding::clearControls() {
    unbind();
    controls_.clear();
}

void FieldBinding::bind(Recordset& recordset) {
    unbind();
    recordset_ = &recordset;
    connections_ << connect(&recordset, &Recordset::currentRowChanged, this, [this] { refresh(); });
    connections_ << connect(&recordset, &Recordset::valueChanged, this, [this](int field) {
        if (!writing_)
            refresh(field);
    });
    for (const Control& c : std::as_const(controls_))
        connectControl(c);
    refresh();
}

void FieldBinding::unbind() {
    for (const auto& c : std::as_const(connections_))
        disconnect(c);
    connections_.clear();
    recordset_ = nullptr;
}

void FieldBinding::connectControl(const Control& c) {
    const int field = c.field;
    if (auto* edit = qobject_cast<QLineEdit*>(c.widget.data())) {
        connections_ << connect(edit, &QLineEdit::textEdited, this, [this, edit, field] {
            if (Control* typed = find(edit))
                typed->typed = true;
            Q_EMIT edited(field);
        });
    } else if (auto* box = qobject_cast<QCheckBox*>(c.widget.data())) {
        connections_ << connect(box, &QCheckBox::clicked, this, [this, field](bool checked) {
            if (write(field, checked))
                Q_EMIT edited(field);
        });
    } else if (auto* combo = qobject_cast<QComboBox*>(c.widget.data())) {
        fillCombo(c);
        connections_ << connect(combo, &QComboBox::activated, this, [this, field, combo](int i) {
            if (write(field, combo->itemData(i)))
                Q_EMIT edited(field);
        });
    }
}

// The list's entries are read once per binding, from the first row of its source to the last.
void FieldBinding::fillCombo(const Control& c) {
    auto* combo = qobject_cast<QComboBox*>(c.widget.data());
    combo->clear();
    Recordset* source = c.rowSource.data();
    if (!source || !source->isOpen())
        return;
    try {
        for (source->moveFirst(); !source->eof(); source->moveNext())
            combo->addItem(source->value(c.listField).toString(),
                           source->value(c.boundColumn).toString().trimmed());
    } catch (const DbError& e) {
        Q_EMIT editRefused(c.field, e.description());
    }
    combo->setCurrentIndex(-1);
}

void FieldBinding::refresh(int onlyField) {
    for (Control& c : controls_)
        if (c.widget && (onlyField < 0 || c.field == onlyField))
            show(c);
}

FieldBinding::Control* FieldBinding::find(const QWidget* widget) {
    for (Control& c : controls_)
        if (c.widget == widget)
            return &c;
    return nullptr;
}

bool FieldBinding::hasTyped(const QWidget* control) const {
    for (const Control& c : controls_)
        if (c.widget == control)
            return c.typed;
    return false;
}

bool FieldBinding::commit(const QWidget* control) {
    for (Control& c : controls_) {
        auto* edit = qobject_cast<QLineEdit*>(c.widget.data());
        if (!edit || !c.typed || (control && c.widget != control))
            continue;
        if (!write(c.field, edit->text()))
            return false;
        c.typed = false;
    }
    return true;
}

QString FieldBinding::displayText(const QVariant& value) {
    if (value.isNull())
        return {};
    switch (value.typeId()) {
    case QMetaType::Double: {
        QString text = QString::number(value.toDouble(), 'f', 6);
        while (text.endsWith(QLatin1Char('0')))
            text.chop(1);
        if (text.endsWith(QLatin1Char('.')))
            text.chop(1);
        return text == QLatin1String("-0") ? QStringLiteral("0") : text;
    }
    case QMetaType::QDate:
        return value.toDate().toString(QStringLiteral("yyyy.MM.dd"));
    case QMetaType::Bool:
        return value.toBool() ? QStringLiteral("True") : QStringLiteral("False");
    default:
        return value.toString();
    }
}

void FieldBinding::show(Control& c) {
    c.typed = false;
    QVariant value;
    Recordset* rs = recordset_.data();
    const bool onRow = rs && rs->isOpen() && !rs->eof() && !rs->bof();
    if (onRow && c.field < rs->fieldCount())
        value = rs->value(c.field);
    if (auto* edit = qobject_cast<QLineEdit*>(c.widget.data())) {
        const QString text = displayText(value);
        if (edit->text() != text)
            edit->setText(text);
    } else if (auto* box = qobject_cast<QCheckBox*>(c.widget.data())) {
        box->setChecked(!value.isNull() && value.toBool());
    } else if (auto* combo = qobject_cast<QComboBox*>(c.widget.data())) {
        combo->setCurrentIndex(value.isNull() ? -1 : combo->findData(value.toString().trimmed()));
    }
}

// A user's edit goes into the current row's pending values; nothing escapes to the caller's
// event loop. False when the field refused the value.
bool FieldBinding::write(int field, const QVariant& value) {
    Recordset* rs = recordset_.data();
    if (!rs || !rs->isOpen() || rs->eof() || rs->bof())
        return true;
    writing_ = true;
    try {
        rs->setValue(field, value);
        writing_ = false;
        return true;
    } catch (const DbError& e) {
        writing_ = false;
        Q_EMIT editRefused(field, e.description());
        return false;
    }
}
