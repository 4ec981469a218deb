#pragma once

#include <QDialog>
#include <optional>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

// The options window: working language, working (data) directory, the update server's host and
// port, and two behaviours (clearing the list selection after an update, saving the pane layout
// when quitting). It edits the settings in memory only; they reach the settings store when the
// program closes.
//
// The working directory is checked when the focus leaves its box, as the dealer moves on to
// another control: a directory without the price-list table is refused with message 1058 and
// the focus goes back to the box. Cancel (and Escape, and the close box) leaves without checking
// anything, so a wrong directory never traps the dealer in the window.
class frmOptions : public QDialog {
    Q_OBJECT

public:
    explicit frmOptions(QWidget* parent = nullptr);

    // Event handlers, public so that tests can run them directly.
    // Checks the working directory; false (after message 1058, the focus back in the box) when
    // it is not a data directory.
    bool txtRepTravailValidate();
    void cmdDefaultClick();
    void cmdOKClick();
    void cmdCancelClick();

    QLabel* lblLangue = nullptr;
    QComboBox* cmbLangue = nullptr;
    QLabel* lblRepTravail = nullptr;
    QLineEdit* txtRepTravail = nullptr;
    QLabel* lblIP = nullptr;
    QLineEdit* txtIP = nullptr;
    QLabel* lblPort = nullptr;
    QLineEdit* txtPort = nullptr;
    QCheckBox* chkSelection = nullptr;
    QCheckBox* chkSauve = nullptr;
    QPushButton* cmdDefault = nullptr;
    QPushButton* cmdOK = nullptr;
    QPushButton* cmdCancel = nullptr;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildControls();
    void load();
    void validateAfterLeaving();
    // The port typed, or nothing (after a message, the focus in the box) when it is no port.
    std::optional<int> portEntered();
    bool hostEntered();

    // Set when the focus has left the directory box and the check has not run yet.
    bool validationPending_ = false;
};
