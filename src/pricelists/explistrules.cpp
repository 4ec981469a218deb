#include "pricelists/explistrules.h"

#include "pricelists/configrules.h"
#include "pricelists/treerules.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QLineEdit>

ExpListRules* ExpListRules::install(QLineEdit* field) {
    return new ExpListRules(field);
}

ExpListRules::ExpListRules(QLineEdit* field) : QObject(field), field_(field) {
    field->installEventFilter(this);
}

QChar ExpListRules::keyPress(QChar typed) {
    if (typed.unicode() == KeyEnter) {
        // A Tab key sent to the field moves the focus as the user's Tab would.
        QKeyEvent tab(QEvent::KeyPress, Qt::Key_Tab, Qt::NoModifier);
        QCoreApplication::sendEvent(field_, &tab);
        return {};
    }
    return typed.toUpper();
}

void ExpListRules::lostFocus() {
    if (!field_->text().trimmed().isEmpty())
        return;
    field_->setStyleSheet(QStringLiteral("background: %1;").arg(ToQColor(ColorInactive).name()));
    field_->setEnabled(false);
}

bool ExpListRules::eventFilter(QObject* watched, QEvent* event) {
    if (watched != field_)
        return false;
    if (event->type() == QEvent::FocusOut) {
        lostFocus();
        return false;
    }
    if (event->type() != QEvent::KeyPress)
        return false;
    auto* key = static_cast<QKeyEvent*>(event);
    if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
        keyPress(QChar(KeyEnter));
        return true;
    }
    const QString text = key->text();
    if (text.size() != 1 || !text.at(0).isLetter() || text.at(0).isUpper())
        return false;
    field_->insert(QString(keyPress(text.at(0))));
    return true;
}
