#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <memory>
#include <vector>

struct TableHeader;
class TextCodec;

// A value inside a condition or a sort key. Text stays in the table's code page, trailing
// blanks removed, so that comparisons follow the byte order of the stored text.
struct SqlValue {
    enum class Type { Null, Text, Number, Date, Bool };
    Type type = Type::Null;
    QByteArray text;
    double number = 0; // numbers, dates (as Julian days), logicals (-1 / 0)

    bool isNull() const { return type == Type::Null; }
    static SqlValue null() { return {}; }
    static SqlValue ofText(QByteArray t);
    static SqlValue ofNumber(double n);
    static SqlValue ofDate(qint64 julianDay);
    static SqlValue ofBool(bool b);
};

// Order of two values for ORDER BY: Nulls first, then by value (byte order for text).
int compareForSort(const SqlValue& a, const SqlValue& b);

enum class CompareOp { Eq, Ne, Lt, Le, Gt, Ge };

// A parsed condition or expression: WHERE, ORDER BY keys, recordset filters and find criteria.
struct Expr {
    enum class Kind { Literal, Column, Compare, And, Or, Not, Add, Concat, IsNull, IsNotNull };
    Kind kind = Kind::Literal;
    // Literal: the text of a quoted literal is kept as typed until the table's code page is
    // known (bind); other literals are final.
    SqlValue literal;
    QString literalText;
    bool textLiteral = false;
    QString column;
    int field = -1; // the table field, once bound
    CompareOp op = CompareOp::Eq;
    std::vector<std::unique_ptr<Expr>> args;
};
using ExprPtr = std::unique_ptr<Expr>;

// Resolves field names and encodes text literals for one table; throws DbError for a field
// the table does not have.
void bindExpr(Expr& expr, const TableHeader& header, const TextCodec& codec);

// Value of a bound expression on one record (the record's bytes, deletion flag first).
SqlValue evaluate(const Expr& expr, const char* record, const TableHeader& header);
// True only when a bound condition is true (Null and false reject the row).
bool isTrue(const Expr& expr, const char* record, const TableHeader& header);

// The value of one field of a record, as conditions see it.
SqlValue fieldValue(const char* record, const TableHeader& header, int field);

// Checks that a condition is what recordset filters accept: an OR of AND groups of
// comparisons of a field with a literal (parentheses allowed). Throws DbError otherwise.
void checkFilterForm(const Expr& expr, const QString& text);
// Checks that a find criterion is one comparison of a field with a literal.
void checkCriterionForm(const Expr& expr, const QString& text);
