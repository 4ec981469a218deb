#pragma once

#include "dbase/connectionstate.h"
#include "dbase/sqlparser.h"
#include "dbase/tablefile.h"

#include <memory>
#include <vector>

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
