#pragma once

#include "dbase/expression.h"
#include "dbase/fielddef.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <variant>

struct OrderKey {
    ExprPtr expr;
    bool descending = false;
};

// SELECT [TOP n] * | columns [INTO table] FROM table [WHERE condition] [ORDER BY keys]
struct SelectStatement {
    qint64 top = -1; // -1: every row
    bool allColumns = true;
    QStringList columns;
    QString into;
    QString from;
    ExprPtr where;
    std::vector<OrderKey> orderBy;
};

// INSERT INTO table SELECT ...
struct InsertStatement {
    QString into;
    SelectStatement select;
};

// CREATE TABLE t (c TEXT(n), ...)
struct CreateStatement {
    QString table;
    QList<FieldDef> fields;
};

// ALTER TABLE t ADD [COLUMN] c TEXT(n)
struct AlterStatement {
    QString table;
    FieldDef field;
};

using Statement = std::variant<SelectStatement, InsertStatement, CreateStatement, AlterStatement>;

namespace Sql {
// Parses one statement of the forms above; anything else throws DbError (DbErrors::Syntax)
// saying what was expected.
Statement parseStatement(const QString& sql);
// Parses a condition alone: a recordset filter or a find criterion.
ExprPtr parseCondition(const QString& text);
// True when a recordset source is a statement rather than a table name.
bool isStatement(const QString& source);
// A table name as written in a statement or a source ("PRIXTEMP.DBF", "[prixlist]"), less
// its brackets.
QString tableName(const QString& written);
} // namespace Sql
