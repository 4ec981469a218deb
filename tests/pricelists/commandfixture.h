#pragma once

// The list commands of the strip over a ListFixture, as the main window hands them their
// context; and the stored state of CATALIST for the checks.

#include "listfixture.h"

#include "pricelists/listcommands.h"

#include <QStringList>

inline ListCommandContext Commands(ListFixture& f) {
    return {*f.ui,
            f.state,
            *f.listPane,
            *f.catPane,
            {f.rsPrixList, f.rsCataList, nullptr, &f.binding},
            f.window.get()};
}

// A CATALIST field of the row of a catalogue code, as stored in the table now.
inline QVariant StoredCatalogueField(ListFixture& f, const QString& fichier, const QString& field) {
    Recordset fresh;
    fresh.open(QStringLiteral("SELECT * FROM CATALIST"), f.conn, CursorType::Keyset,
               LockType::Optimistic);
    fresh.find(QStringLiteral("FICHIER = '%1'").arg(fichier), 0, SearchDirection::Forward,
               MoveStart::First);
    return fresh.eof() ? QVariant() : fresh.value(field);
}

// GRL1 to GRL9 of a catalogue as stored, each as text (empty for Null).
inline QStringList StoredCategories(ListFixture& f, const QString& fichier) {
    QStringList codes;
    for (int n = 1; n <= 9; ++n)
        codes << StoredCatalogueField(f, fichier, QStringLiteral("GRL%1").arg(n)).toString();
    return codes;
}
