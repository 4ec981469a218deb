#pragma once

#include <QDialog>
#include <array>

class PartSearchPane;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;

// The part-number dialog: up to four current numbers to renumber or delete in the dealer's parts
// file. The changes go to a work table of the programs directory (MEREMPLA or MEEFFACE), which
// the service program applies ("2" renumbers, "3" deletes). While the user types a current
// number, the main window's part list shows the parts whose number starts with it.
//
// One operation per opening: after it both buttons stay disabled until the dialog is closed.
// The handlers are public so that tests run "Enter in this field" or "click" directly.
class frmStock : public QDialog {
    Q_OBJECT
public:
    static constexpr int RowCount = 4;

    // `parts` is the main window's part search, whose list shows the matches (none in tests
    // that do not look at it).
    explicit frmStock(PartSearchPane* parts, QWidget* parent = nullptr);

    QGroupBox* fraStock;
    QLabel* lblAnc;
    QLabel* lblNouv;
    std::array<QLineEdit*, RowCount> txtOri{};
    std::array<QLineEdit*, RowCount> txtNouv{};
    QPushButton* cmdRemplace;
    QPushButton* cmdEfface;
    QPushButton* cmdFermer;

    // keyAscii is the typed character; Enter (13) is dropped and moves the focus on, any other
    // character is put in capitals.
    void txtKeyPress(int& keyAscii);
    // Leaving txtOri(index): the part list shows the parts whose number starts with its text.
    void txtOriLostFocus(int index);
    void cmdRemplaceClick();
    void cmdEffaceClick();
    void cmdFermerClick();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void writeReplacements();
    void writeDeletions();
    void runOperation(void (frmStock::*writeTable)(), const QString& operationCode);

    PartSearchPane* parts_;
};
