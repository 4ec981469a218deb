#pragma once

// Builds the list and catalogue trees from PRIXLIST and CATALIST: SetupCat (the catalogue
// trees), SetupList (the four list trees and the lists hung under their catalogues, then the
// saved selection and Catalist), Catalist (the catalogues to update) and SetList (empties the
// four list trees).

#include "pricelists/treerules.h"

#include <QString>
#include <functional>

class KeyedTree;
class PriceListsUi;
class QTreeWidgetItem;

class TreeBuilder {
public:
    explicit TreeBuilder(PriceListsUi& ui);

    void SetupCat();
    void SetupList();
    void Catalist();
    // Shows or hides the four list trees and empties them.
    void SetList(bool visible);

private:
    struct ListFields; // ordinals of the PRIXLIST fields read per row
    bool addListRow(int row, const ListFields& fields, int& childCount);
    bool addCatalogueChildren(int row, const QString& catno, const QString& text, OleColor color,
                              int& childCount);
    void restoreSelection();
    KeyedTree& listTree(int index) const;
    KeyedTree& catTree(int index) const;

    PriceListsUi& ui_;
};

// Runs one step of a procedure under its error handler: a failure shows the program's error
// box, label first ("ErrSetupList: " and so on), then the number, the description and the
// contact line. With endOnClosed, the number 3704 (the recordset is closed) ends the program
// instead.
enum class StepResult { Done, Failed, Ended };
StepResult RunGuarded(const QString& label, const std::function<void()>& step,
                      bool endOnClosed = false);
// The text of that box.
QString ErrorBoxText(const QString& label, qint64 number, const QString& description);
