#pragma once

#include "dbase/connection.h"
#include "dbase/sqlparser.h"
#include "dbase/tablefile.h"

#include <memory>
#include <vector>

// What a connection keeps and its recordsets share: a recordset notices when its connection
// was closed.
struct ConnectionState {
    QString directory; // ends with '/'
    bool open = false;
    CursorLocation location = CursorLocation::Server;

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

// The rows of a SELECT: a snapshot of its table, the table fields it shows in order, and the
// record numbers of its rows in their order.
struct QueryResult {
    std::shared_ptr<TableSnapshot> table;
    QList<int> columns;
    std::vector<quint32> recnos;
};

// Binds the statement's conditions to the table and runs it.
QueryResult runSelect(SelectStatement& select, const ConnectionState& connection);

// Record numbers that satisfy a condition (null: every live record), in file order.
std::vector<quint32> matchingRecords(const TableSnapshot& table, const Expr* where);
