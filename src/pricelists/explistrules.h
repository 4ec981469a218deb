#pragma once

#include <QObject>

class QLineEdit;

// The rules of the download pane's "Lists containing" field (txtExpList): Enter moves to the
// next control and types nothing, letters are put in upper case, and a field left holding only
// blanks turns grey and is disabled. Installed on the field; lives as its child.
class ExpListRules : public QObject {
    Q_OBJECT
public:
    static ExpListRules* install(QLineEdit* field);

    // Handlers, public for tests: a typed character (returns what to type, null for nothing)
    // and the field losing the focus.
    QChar keyPress(QChar typed);
    void lostFocus();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit ExpListRules(QLineEdit* field);
    QLineEdit* field_;
};
