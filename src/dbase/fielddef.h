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
};
