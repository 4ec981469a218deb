#pragma once

#include "dbase/fielddef.h"

#include <QList>
#include <QString>
#include <QVariant>

// Writes a whole new table of any field types (CREATE TABLE makes text fields only): the
// installation builder and the tests use it. Each row gives one value per field, in field
// order (a null QVariant for Null); a row whose `deleted` entry is true is written deleted.
// An existing file is replaced by rename, as every rewrite of the engine. Throws DbError.
struct NewTable {
    QList<FieldDef> fields;
    QList<QVariantList> rows;
    QList<bool> deleted;          // optional, by row
    quint8 languageDriver = 0x57; // Windows-1252
};

void writeNewTable(const QString& path, const NewTable& table);
