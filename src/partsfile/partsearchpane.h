#pragma once

#include <QString>
#include <QWidget>

class QLabel;
class QLineEdit;
class QListWidget;

// The part-number search of the main window's "Pièces" tab: the user types a number and presses
// Enter; the pane lists, in index order, the parts whose number starts with the group code of
// the selected price list followed by the typed text, up to the number of lines of txtMax.
//
// The handlers are public so that the window's wiring and the tests can run "Enter in this
// field" directly; the widgets' own events are routed to them.
class PartSearchPane : public QWidget {
    Q_OBJECT
public:
    explicit PartSearchPane(QWidget* parent = nullptr);

    QLabel* lblRecherche;
    QLineEdit* txtRecherche;
    QLabel* lblMax;
    QLineEdit* txtMax;
    QListWidget* lstPieces;
    QLineEdit* txtRechGroupe;

    // The pane's captions in the current language.
    void label();

    // A price list was selected: its group code (blanks trimmed; empty when it has none)
    // becomes the search prefix and ends the caption of lblRecherche, right-aligned in 4.
    void setGroupCode(const QString& groupCode);
    const QString& searchPrefix() const { return searchPrefix_; }

    // Enter in txtRecherche: clears the list, brings txtMax down to the most lines a search
    // gives and searches for the lines it asks for.
    void searchParts();

    // keyAscii is the typed character; a handler that drops it sets it to 0.
    void txtRechercheKeyPress(int& keyAscii);
    void txtMaxKeyPress(int& keyAscii);
    void lstPiecesKeyPress(int& keyAscii);
    void txtRechercheGotFocus();
    void txtRechGroupeChange();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool keyPressFor(QObject* watched, int& keyAscii);

    QString searchPrefix_;
};
