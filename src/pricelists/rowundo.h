#pragma once

// The association writes several rows of PRIXLIST and CATALIST, one at a time, through the
// shared recordsets. Another workstation may have changed or may hold one of those rows; its
// write then fails. So that the lists and the catalogue never stay half associated, every
// field is remembered as it was before its first change, and a failure puts back what the
// operation had already written.

#include <QList>
#include <QString>
#include <QVariant>

class Recordset;

class RowUndo {
public:
    // Changes a field of the current row (identified by its FICHIER) and remembers the value
    // it had before the operation first changed it. The caller saves the row.
    void set(Recordset& rs, const QString& field, const QVariant& value);
    // Writes back every remembered value, latest first, each row found again by its FICHIER
    // in its unfiltered recordset. The current row's unsaved edits are dropped first. A row
    // that cannot be written back is left as the other workstation has it.
    void undo();
    bool empty() const { return entries_.isEmpty(); }

private:
    struct Entry {
        Recordset* rs;
        QString fichier;
        QString field;
        QVariant before;
    };
    QList<Entry> entries_;
};
