#pragma once

#include <QDialog>

class QPlainTextEdit;
class QPushButton;

// The report window at the end of a download session: the session report in a read-only text
// box; OK closes it.
class frmRapport : public QDialog {
    Q_OBJECT

public:
    explicit frmRapport(const QString& reportText, QWidget* parent = nullptr);

    void cmdOKClick();

    QPlainTextEdit* txtRapport = nullptr;
    QPushButton* cmdOK = nullptr;
};
