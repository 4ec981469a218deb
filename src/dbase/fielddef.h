#pragma once

#include <QString>

// One field of a table or of a recordset: its name as stored (upper case in the dealer's
// tables), its dBASE type letter (C, N, F, D, L or M), its width and its decimals.
struct FieldDef {
    QString name;
    char type = 'C';
    int length = 0;
    int decimals = 0;

    bool operator==(const FieldDef&) const = default;

    static FieldDef text(const QString& name, int length) { return {name, 'C', length, 0}; }
    static FieldDef number(const QString& name, int length, int decimals = 0) {
        return {name, 'N', length, decimals};
    }
    static FieldDef date(const QString& name) { return {name, 'D', 8, 0}; }
    static FieldDef logical(const QString& name) { return {name, 'L', 1, 0}; }
};
