#pragma once

#include "dbase/tablefile.h"

#include <QString>

enum class CursorLocation { Server, Client };

// What a connection keeps and its recordsets share: a recordset notices when its connection
// was closed.
struct ConnectionState {
    QString directory; // ends with '/'
    bool open = false;
    CursorLocation location = CursorLocation::Server;
    TableFile::OutputWrapper output; // what the tables it rewrites are written through

    // Throws DbError 3704 while closed.
    void checkOpen() const;
    // The file of an existing table (any case on disk), or empty.
    QString findTable(const QString& written) const;
    // The file of an existing table; throws DbErrors::NoSuchTable naming it when missing.
    QString tablePath(const QString& written) const;
    // Where a new table of this name goes when none exists yet.
    QString newTablePath(const QString& written) const;
};

// The table name without directory or ".DBF", upper-cased, as messages show it.
QString displayName(const QString& written);
