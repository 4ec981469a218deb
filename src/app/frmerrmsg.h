#pragma once

#include <QDialog>

class QLabel;
class QPushButton;

// The error window: the application's error text, a line break and the support contact line.
// The caller sets App().ErrorText, then shows it with exec(); OK closes it. Keys do nothing
// (Escape does not close it: the dealer has to read the text).
class frmErrMsg : public QDialog {
    Q_OBJECT

public:
    explicit frmErrMsg(QWidget* parent = nullptr);

    void cmdOKClick();

    QLabel* lblMessage = nullptr;
    QPushButton* cmdOK = nullptr;

protected:
    void keyPressEvent(QKeyEvent* event) override;
};
