#pragma once

// The catalogue association dialog: the dealer picks the product category of the selected
// catalogue in which the selected list is to be entered. The category then uses the list's
// group code: the lists of the code the category used before lose the catalogue, and every
// activated list of the new code gains it (its CATNO names the catalogue).
//
// Opened modally by the association command with a catalogue node and a list shown in the
// configuration pane; the pane is untied from the list recordset while it is open. Whatever
// closes it, the pane is tied again and the caller rebuilds the trees.

#include "pricelists/listcommands.h"

#include <QDialog>
#include <array>

class QLabel;
class QListWidget;
class QPushButton;
class RowUndo;

class frmCatalog : public QDialog {
    Q_OBJECT
public:
    // nodeText, nodeKey: the catalogue node selected in the catalogue tree.
    frmCatalog(const ListCommandContext& context, const QString& nodeText, const QString& nodeKey,
               QWidget* parent = nullptr);
    ~frmCatalog() override;

    void FillList();
    // Handlers, public so that tests can run them directly. row: a row of lstCatgroupe.
    void lstCatgroupeClick(int row);
    void OKButtonClick();
    void CancelButtonClick();

    // The category (1 to 9) a row of lstCatgroupe stands for; categories without a suggested
    // code have no row, so rows and categories need not run alike.
    int categoryOfRow(int row) const;

    void done(int result) override;

    QLabel* lblCat = nullptr;
    QLabel* lblCatgroupe = nullptr;
    QLabel* lblCode1 = nullptr;
    QLabel* lblDesc = nullptr;
    QLabel* lblCode2 = nullptr;
    QListWidget* lstCatgroupe = nullptr;
    QPushButton* OKButton = nullptr;
    QPushButton* CancelButton = nullptr;

private:
    void buildControls();
    QString newCodeFor(const QString& oldCode);
    void associate(int category, const QString& oldCode, const QString& newCode);
    void DissociateGroup(int category, const QString& oldCode, RowUndo& undo);
    void AssociateGroup(int category, const QString& newCode, RowUndo& undo);
    void findCatalogue();

    ListCommandContext context_;
    QString catalogue_;   // FICHIER of the catalogue
    QString listFichier_; // FICHIER and CODEGRO of the list shown in the pane
    QString listCode_;
    std::array<QString, 9> suggested_; // GR1 to GR9, GRD1 to GRD9, GRL1 to GRL9 as read
    std::array<QString, 9> descriptions_;
    std::array<QString, 9> used_;
    bool rebound_ = false;
};

// The text of a row of lstCatgroupe: the suggested code, the description in a column of 25
// characters (a longer one is cut, its end shown as "…"), then the code in use.
QString CategoryRowText(const QString& suggested, const QString& description, const QString& used);
