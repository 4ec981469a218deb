#pragma once

#include <QList>
#include <QString>
#include <array>

// The per-list selection table ListMarks(column, row), rows 0 to ListCount (one more than there
// are lists). Column 0 holds the list's FICHIER while its node is checked, column 1 "1" while
// the list is in the to-be-updated branch; column 2 is kept for the download. Rows are list
// positions, so the table is resized at every rebuild with its contents kept by position.
class ListMarkTable {
public:
    static constexpr int Columns = 3;

    ListMarkTable() { redim(0); }

    // Rows 0 to listCount; existing rows keep their values, new ones are empty.
    void redim(int listCount);
    // The highest row index (ListCount at the last rebuild).
    int upperBound() const { return int(columns_[0].size()) - 1; }

    QString& operator()(int column, int row) { return columns_.at(column)[row]; }
    const QString& operator()(int column, int row) const { return columns_.at(column).at(row); }

    // Empties column 0: no list is checked any more.
    void clearSelection();
    // Number of rows whose column 0 is not empty.
    int selectedCount() const;

private:
    std::array<QList<QString>, Columns> columns_;
};
