#include "dbase/expression.h"

#include "dbase/dberror.h"
#include "dbase/dbfformat.h"
#include "dbase/textcodec.h"

#include <QDate>
#include <cstring>

namespace {

[[noreturn]] void mismatch() {
    throw DbError(DbErrors::TypeMismatch,
                  QStringLiteral("Data type mismatch in criteria expression."));
}

enum class Truth { False, True, Unknown };

Truth truthOf(const SqlValue& v) {
    if (v.isNull())
        return Truth::Unknown;
    if (v.type == SqlValue::Type::Text)
        mismatch();
    return v.number != 0 ? Truth::True : Truth::False;
}

SqlValue fromTruth(Truth t) {
    return t == Truth::Unknown ? SqlValue::null() : SqlValue::ofBool(t == Truth::True);
}

int compareBytes(const QByteArray& a, const QByteArray& b) {
    const qsizetype n = std::min(a.size(), b.size());
    const int c = n ? std::memcmp(a.constData(), b.constData(), size_t(n)) : 0;
    if (c != 0)
        return c < 0 ? -1 : 1;
    return a.size() == b.size() ? 0 : (a.size() < b.size() ? -1 : 1);
}

int compareNumbers(double a, double b) {
    return a < b ? -1 : (a > b ? 1 : 0);
}

bool numeric(SqlValue::Type t) {
    return t != SqlValue::Type::Null && t != SqlValue::Type::Text;
}

// A date compared with a text literal takes the text as a date.
SqlValue asDateIfText(const SqlValue& v) {
    if (v.type != SqlValue::Type::Text)
        return v;
    const QString s = QString::fromLatin1(v.text);
    for (const char* format : {"yyyyMMdd", "yyyy-MM-dd", "MM/dd/yyyy", "yyyy/MM/dd"}) {
        const QDate d = QDate::fromString(s, QLatin1String(format));
        if (d.isValid())
            return SqlValue::ofDate(d.toJulianDay());
    }
    mismatch();
}

int compareValues(const SqlValue& a0, const SqlValue& b0) {
    SqlValue a = a0;
    SqlValue b = b0;
    if (a.type == SqlValue::Type::Date)
        b = asDateIfText(b);
    if (b.type == SqlValue::Type::Date)
        a = asDateIfText(a);
    if (a.type == SqlValue::Type::Text && b.type == SqlValue::Type::Text)
        return compareBytes(a.text, b.text);
    if (numeric(a.type) && numeric(b.type))
        return compareNumbers(a.number, b.number);
    mismatch();
}

bool holds(CompareOp op, int c) {
    switch (op) {
    case CompareOp::Eq:
        return c == 0;
    case CompareOp::Ne:
        return c != 0;
    case CompareOp::Lt:
        return c < 0;
    case CompareOp::Le:
        return c <= 0;
    case CompareOp::Gt:
        return c > 0;
    case CompareOp::Ge:
        return c >= 0;
    }
    return false;
}

QByteArray textForm(const SqlValue& v) {
    switch (v.type) {
    case SqlValue::Type::Text:
        return v.text;
    case SqlValue::Type::Null:
        return {};
    case SqlValue::Type::Date:
        return QDate::fromJulianDay(qint64(v.number))
            .toString(QStringLiteral("yyyyMMdd"))
            .toLatin1();
    default:
        return QByteArray::number(v.number, 'g', 15);
    }
}

SqlValue add(const SqlValue& a, const SqlValue& b) {
    if (a.isNull() || b.isNull())
        return SqlValue::null();
    if (a.type == SqlValue::Type::Text && b.type == SqlValue::Type::Text)
        return SqlValue::ofText(a.text + b.text);
    if (a.type == SqlValue::Type::Number && b.type == SqlValue::Type::Number)
        return SqlValue::ofNumber(a.number + b.number);
    mismatch();
}

SqlValue compare(const Expr& e, const char* rec, const TableHeader& h) {
    const SqlValue a = evaluate(*e.args[0], rec, h);
    const SqlValue b = evaluate(*e.args[1], rec, h);
    if (a.isNull() || b.isNull())
        return SqlValue::null();
    return SqlValue::ofBool(holds(e.op, compareValues(a, b)));
}

SqlValue logical(const Expr& e, const char* rec, const TableHeader& h) {
    const bool isAnd = e.kind == Expr::Kind::And;
    const Truth decisive = isAnd ? Truth::False : Truth::True;
    const Truth a = truthOf(evaluate(*e.args[0], rec, h));
    if (a == decisive)
        return fromTruth(a);
    const Truth b = truthOf(evaluate(*e.args[1], rec, h));
    if (b == decisive)
        return fromTruth(b);
    if (a == Truth::Unknown || b == Truth::Unknown)
        return SqlValue::null();
    return fromTruth(isAnd ? Truth::True : Truth::False);
}

bool isFieldLiteralComparison(const Expr& e) {
    if (e.kind == Expr::Kind::IsNull || e.kind == Expr::Kind::IsNotNull)
        return e.args[0]->kind == Expr::Kind::Column;
    if (e.kind != Expr::Kind::Compare)
        return false;
    const Expr::Kind a = e.args[0]->kind;
    const Expr::Kind b = e.args[1]->kind;
    return (a == Expr::Kind::Column && b == Expr::Kind::Literal) ||
           (a == Expr::Kind::Literal && b == Expr::Kind::Column);
}

bool isFilterForm(const Expr& e) {
    if (e.kind == Expr::Kind::And || e.kind == Expr::Kind::Or)
        return isFilterForm(*e.args[0]) && isFilterForm(*e.args[1]);
    return isFieldLiteralComparison(e);
}

} // namespace

SqlValue SqlValue::ofText(QByteArray t) {
    if (t.isEmpty())
        return null();
    SqlValue v;
    v.type = Type::Text;
    v.text = std::move(t);
    return v;
}

SqlValue SqlValue::ofNumber(double n) {
    SqlValue v;
    v.type = Type::Number;
    v.number = n;
    return v;
}

SqlValue SqlValue::ofDate(qint64 day) {
    SqlValue v;
    v.type = Type::Date;
    v.number = double(day);
    return v;
}

SqlValue SqlValue::ofBool(bool b) {
    SqlValue v;
    v.type = Type::Bool;
    v.number = b ? -1 : 0;
    return v;
}

int compareForSort(const SqlValue& a, const SqlValue& b) {
    if (a.isNull() || b.isNull())
        return a.isNull() == b.isNull() ? 0 : (a.isNull() ? -1 : 1);
    if (a.type == SqlValue::Type::Text && b.type == SqlValue::Type::Text)
        return compareBytes(a.text, b.text);
    if (numeric(a.type) && numeric(b.type))
        return compareNumbers(a.number, b.number);
    return a.type == SqlValue::Type::Text ? 1 : -1;
}

SqlValue fieldValue(const char* record, const TableHeader& h, int field) {
    const FieldDef& f = h.fields[field];
    const char* data = record + h.offsets[field];
    switch (f.type) {
    case 'C': {
        int n = f.length;
        while (n > 0 && (data[n - 1] == ' ' || data[n - 1] == '\0'))
            --n;
        return SqlValue::ofText(QByteArray(data, n));
    }
    case 'N':
    case 'F': {
        double n = 0;
        return Dbf::parseNumber(data, f.length, n) ? SqlValue::ofNumber(n) : SqlValue::null();
    }
    case 'D': {
        QDate d;
        return Dbf::parseDate(data, d) ? SqlValue::ofDate(d.toJulianDay()) : SqlValue::null();
    }
    case 'L':
        if (QByteArrayView("TtYy").contains(data[0]))
            return SqlValue::ofBool(true);
        if (QByteArrayView("FfNn").contains(data[0]))
            return SqlValue::ofBool(false);
        return SqlValue::null();
    default:
        return SqlValue::null();
    }
}

void bindExpr(Expr& e, const TableHeader& h, const TextCodec& codec) {
    if (e.kind == Expr::Kind::Column) {
        e.field = h.fieldIndex(e.column);
        if (e.field < 0)
            throw DbError(DbErrors::NoSuchField,
                          QStringLiteral("The field '%1' is not in the table.").arg(e.column));
    } else if (e.kind == Expr::Kind::Literal && e.textLiteral) {
        qsizetype n = e.literalText.size();
        while (n > 0 && e.literalText[n - 1] == QLatin1Char(' '))
            --n;
        e.literal = SqlValue::ofText(codec.encode(e.literalText.left(n)));
    }
    for (auto& a : e.args)
        bindExpr(*a, h, codec);
}

SqlValue evaluate(const Expr& e, const char* rec, const TableHeader& h) {
    switch (e.kind) {
    case Expr::Kind::Literal:
        return e.literal;
    case Expr::Kind::Column:
        return fieldValue(rec, h, e.field);
    case Expr::Kind::Compare:
        return compare(e, rec, h);
    case Expr::Kind::And:
    case Expr::Kind::Or:
        return logical(e, rec, h);
    case Expr::Kind::Not: {
        const Truth t = truthOf(evaluate(*e.args[0], rec, h));
        return t == Truth::Unknown ? SqlValue::null() : SqlValue::ofBool(t == Truth::False);
    }
    case Expr::Kind::Add:
        return add(evaluate(*e.args[0], rec, h), evaluate(*e.args[1], rec, h));
    case Expr::Kind::Concat:
        return SqlValue::ofText(textForm(evaluate(*e.args[0], rec, h)) +
                                textForm(evaluate(*e.args[1], rec, h)));
    case Expr::Kind::IsNull:
        return SqlValue::ofBool(evaluate(*e.args[0], rec, h).isNull());
    case Expr::Kind::IsNotNull:
        return SqlValue::ofBool(!evaluate(*e.args[0], rec, h).isNull());
    }
    return SqlValue::null();
}

bool isTrue(const Expr& e, const char* rec, const TableHeader& h) {
    return truthOf(evaluate(e, rec, h)) == Truth::True;
}

void checkFilterForm(const Expr& e, const QString& text) {
    if (!isFilterForm(e))
        throw DbError(DbErrors::Syntax,
                      QStringLiteral("The filter \"%1\" is not a list of comparisons of a field "
                                     "with a value joined by AND and OR.")
                          .arg(text));
}

void checkCriterionForm(const Expr& e, const QString& text) {
    if (!isFieldLiteralComparison(e))
        throw DbError(DbErrors::Syntax,
                      QStringLiteral("The search criterion \"%1\" is not one comparison of a "
                                     "field with a value.")
                          .arg(text));
}
