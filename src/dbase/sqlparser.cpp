#include "dbase/sqlparser.h"

#include "dbase/dberror.h"

#include <QDate>

namespace {

struct Token {
    enum class Kind { End, Word, Name, String, Number, Date, Symbol };
    Kind kind = Kind::End;
    QString text; // words keep their case
    int position = 0;
};

[[noreturn]] void syntaxError(const QString& sql, const QString& what, int position) {
    throw DbError(DbErrors::Syntax, QStringLiteral("Syntax error in \"%1\" at character %2: %3.")
                                        .arg(sql)
                                        .arg(position + 1)
                                        .arg(what));
}

bool isWordChar(QChar c) {
    return c.isLetterOrNumber() || c == QLatin1Char('_') || c == QLatin1Char('$');
}

class Lexer {
public:
    explicit Lexer(const QString& sql) : sql_(sql) {}

    QList<Token> run() {
        QList<Token> tokens;
        while (true) {
            while (pos_ < sql_.size() && sql_[pos_].isSpace())
                ++pos_;
            Token t;
            t.position = int(pos_);
            if (pos_ >= sql_.size()) {
                tokens.append(t);
                return tokens;
            }
            tokens.append(next(t));
        }
    }

private:
    Token next(Token t) {
        const QChar c = sql_[pos_];
        if (c == QLatin1Char('\'') || c == QLatin1Char('"'))
            return quoted(t, c, Token::Kind::String);
        if (c == QLatin1Char('['))
            return bracketed(t);
        if (c == QLatin1Char('#'))
            return quoted(t, QLatin1Char('#'), Token::Kind::Date);
        const bool pointNumber =
            c == QLatin1Char('.') && pos_ + 1 < sql_.size() && sql_[pos_ + 1].isDigit();
        if (c.isDigit() || pointNumber)
            return number(t);
        if (isWordChar(c)) {
            t.kind = Token::Kind::Word;
            while (pos_ < sql_.size() && isWordChar(sql_[pos_]))
                t.text += sql_[pos_++];
            return t;
        }
        return symbol(t);
    }

    Token quoted(Token t, QChar quote, Token::Kind kind) {
        t.kind = kind;
        ++pos_;
        while (true) {
            if (pos_ >= sql_.size())
                syntaxError(sql_, QStringLiteral("a text or date has no closing %1").arg(quote),
                            t.position);
            if (sql_[pos_] == quote) {
                const bool doubled =
                    quote != QLatin1Char('#') && pos_ + 1 < sql_.size() && sql_[pos_ + 1] == quote;
                if (!doubled) {
                    ++pos_;
                    return t;
                }
                t.text += quote;
                pos_ += 2;
                continue;
            }
            t.text += sql_[pos_++];
        }
    }

    Token bracketed(Token t) {
        t.kind = Token::Kind::Name;
        const qsizetype close = sql_.indexOf(QLatin1Char(']'), pos_);
        if (close < 0)
            syntaxError(sql_, QStringLiteral("a name in brackets has no closing ]"), t.position);
        t.text = sql_.mid(pos_ + 1, close - pos_ - 1);
        if (t.text.trimmed().isEmpty())
            syntaxError(sql_, QStringLiteral("empty name in brackets"), t.position);
        pos_ = close + 1;
        return t;
    }

    Token number(Token t) {
        t.kind = Token::Kind::Number;
        while (pos_ < sql_.size() && (sql_[pos_].isDigit() || sql_[pos_] == QLatin1Char('.')))
            t.text += sql_[pos_++];
        return t;
    }

    Token symbol(Token t) {
        t.kind = Token::Kind::Symbol;
        static const QStringList twoChar = {QStringLiteral("<>"), QStringLiteral("<="),
                                            QStringLiteral(">="), QStringLiteral("!=")};
        const QString two = sql_.mid(pos_, 2);
        if (twoChar.contains(two)) {
            t.text = two;
            pos_ += 2;
            return t;
        }
        const QChar c = sql_[pos_];
        if (!QStringLiteral("=<>+&-(),*;.").contains(c))
            syntaxError(sql_, QStringLiteral("unexpected character '%1'").arg(c), t.position);
        t.text = c;
        ++pos_;
        return t;
    }

    const QString& sql_;
    qsizetype pos_ = 0;
};

class Parser {
public:
    explicit Parser(const QString& sql) : sql_(sql), tokens_(Lexer(sql).run()) {}

    Statement statement() {
        if (peekWord("SELECT")) {
            SelectStatement s = select();
            finish();
            return s;
        }
        if (acceptWord("INSERT"))
            return insert();
        if (acceptWord("CREATE"))
            return create();
        if (acceptWord("ALTER"))
            return alter();
        fail(QStringLiteral("the engine runs SELECT, INSERT INTO ... SELECT, CREATE TABLE and "
                            "ALTER TABLE ... ADD COLUMN statements only"));
    }

    ExprPtr conditionOnly() {
        ExprPtr e = orExpr();
        finish();
        return e;
    }

private:
    // Statements

    InsertStatement insert() {
        InsertStatement s;
        expectWord("INTO");
        s.into = tableName();
        if (!peekWord("SELECT"))
            fail(QStringLiteral("INSERT INTO is followed by a SELECT statement"));
        s.select = select();
        if (!s.select.into.isEmpty())
            fail(QStringLiteral("INSERT INTO ... SELECT cannot have INTO twice"));
        finish();
        return s;
    }

    CreateStatement create() {
        expectWord("TABLE");
        CreateStatement s;
        s.table = tableName();
        expectSymbol("(");
        do
            s.fields.append(columnDefinition());
        while (acceptSymbol(QStringLiteral(",")));
        expectSymbol(")");
        finish();
        return s;
    }

    AlterStatement alter() {
        expectWord("TABLE");
        AlterStatement s;
        s.table = tableName();
        expectWord("ADD");
        acceptWord("COLUMN");
        s.field = columnDefinition();
        finish();
        return s;
    }

    SelectStatement select() {
        expectWord("SELECT");
        SelectStatement s;
        if (acceptWord("TOP")) {
            const Token t = take();
            bool ok = false;
            s.top = t.text.toLongLong(&ok);
            if (t.kind != Token::Kind::Number || !ok || s.top < 0)
                fail(QStringLiteral("TOP is followed by a whole number"), t.position);
        }
        s.allColumns = acceptSymbol(QStringLiteral("*"));
        if (!s.allColumns) {
            do
                s.columns.append(name(QStringLiteral("a field name or *")));
            while (acceptSymbol(QStringLiteral(",")));
        }
        if (acceptWord("INTO"))
            s.into = tableName();
        expectWord("FROM");
        s.from = tableName();
        if (acceptWord("WHERE"))
            s.where = orExpr();
        if (acceptWord("ORDER")) {
            expectWord("BY");
            do
                s.orderBy.push_back(orderKey());
            while (acceptSymbol(QStringLiteral(",")));
        }
        return s;
    }

    OrderKey orderKey() {
        OrderKey k;
        k.expr = concatExpr();
        if (acceptWord("DESC"))
            k.descending = true;
        else
            acceptWord("ASC");
        return k;
    }

    FieldDef columnDefinition() {
        FieldDef f;
        f.name = name(QStringLiteral("a field name")).toUpper();
        const Token t = take();
        const QString type = t.text.toUpper();
        if (t.kind != Token::Kind::Word || !QStringList{"TEXT", "CHAR", "VARCHAR"}.contains(type))
            fail(QStringLiteral("fields are created as TEXT(n)"), t.position);
        f.type = 'C';
        f.length = 254;
        if (acceptSymbol(QStringLiteral("("))) {
            const Token n = take();
            f.length = n.text.toInt();
            if (n.kind != Token::Kind::Number || f.length < 1 || f.length > 254)
                fail(QStringLiteral("a text width is a number from 1 to 254"), n.position);
            expectSymbol(")");
        }
        return f;
    }

    QString tableName() {
        QString n = name(QStringLiteral("a table name"));
        if (acceptSymbol(QStringLiteral("."))) {
            const Token ext = take();
            if (ext.kind != Token::Kind::Word || ext.text.toUpper() != QLatin1String("DBF"))
                fail(QStringLiteral("a table name ends with .DBF or nothing"), ext.position);
            n += QLatin1Char('.') + ext.text;
        }
        return n;
    }

    QString name(const QString& expected) {
        const Token t = take();
        if (t.kind != Token::Kind::Word && t.kind != Token::Kind::Name)
            fail(QStringLiteral("expected %1").arg(expected), t.position);
        return t.text.trimmed();
    }

    // Conditions: OR of AND of NOT of comparisons of concatenations of primaries.

    ExprPtr orExpr() {
        ExprPtr left = andExpr();
        while (acceptWord("OR"))
            left = binary(Expr::Kind::Or, std::move(left), andExpr());
        return left;
    }

    ExprPtr andExpr() {
        ExprPtr left = notExpr();
        while (acceptWord("AND"))
            left = binary(Expr::Kind::And, std::move(left), notExpr());
        return left;
    }

    ExprPtr notExpr() {
        if (!acceptWord("NOT"))
            return comparison();
        auto e = std::make_unique<Expr>();
        e->kind = Expr::Kind::Not;
        e->args.push_back(notExpr());
        return e;
    }

    ExprPtr comparison() {
        ExprPtr left = concatExpr();
        if (acceptWord("IS")) {
            auto e = std::make_unique<Expr>();
            e->kind = acceptWord("NOT") ? Expr::Kind::IsNotNull : Expr::Kind::IsNull;
            expectWord("NULL");
            e->args.push_back(std::move(left));
            return e;
        }
        static const QList<QPair<QString, CompareOp>> ops = {
            {QStringLiteral("="), CompareOp::Eq},  {QStringLiteral("<>"), CompareOp::Ne},
            {QStringLiteral("!="), CompareOp::Ne}, {QStringLiteral("<="), CompareOp::Le},
            {QStringLiteral(">="), CompareOp::Ge}, {QStringLiteral("<"), CompareOp::Lt},
            {QStringLiteral(">"), CompareOp::Gt}};
        for (const auto& [text, op] : ops) {
            if (acceptSymbol(text)) {
                ExprPtr e = binary(Expr::Kind::Compare, std::move(left), concatExpr());
                e->op = op;
                return e;
            }
        }
        if (peekWord("LIKE") || peekWord("IN") || peekWord("BETWEEN"))
            fail(QStringLiteral("%1 is not supported").arg(peek().text.toUpper()));
        return left;
    }

    ExprPtr concatExpr() {
        ExprPtr left = primary();
        while (true) {
            if (acceptSymbol(QStringLiteral("+")))
                left = binary(Expr::Kind::Add, std::move(left), primary());
            else if (acceptSymbol(QStringLiteral("&")))
                left = binary(Expr::Kind::Concat, std::move(left), primary());
            else
                return left;
        }
    }

    ExprPtr primary() {
        const Token t = take();
        auto e = std::make_unique<Expr>();
        switch (t.kind) {
        case Token::Kind::String:
            e->textLiteral = true;
            e->literalText = t.text;
            return e;
        case Token::Kind::Number:
            e->literal = numberLiteral(t, false);
            return e;
        case Token::Kind::Date:
            e->literal = dateLiteral(t);
            return e;
        case Token::Kind::Name:
            e->kind = Expr::Kind::Column;
            e->column = t.text.trimmed();
            return e;
        case Token::Kind::Symbol:
            return symbolPrimary(t, std::move(e));
        case Token::Kind::Word:
            return wordPrimary(t, std::move(e));
        case Token::Kind::End:
            break;
        }
        fail(QStringLiteral("the condition ends too early"), t.position);
    }

    ExprPtr symbolPrimary(const Token& t, ExprPtr e) {
        if (t.text == QLatin1String("(")) {
            ExprPtr inner = orExpr();
            expectSymbol(")");
            return inner;
        }
        if (t.text == QLatin1String("-")) {
            const Token n = take();
            if (n.kind != Token::Kind::Number)
                fail(QStringLiteral("a minus sign is followed by a number"), n.position);
            e->literal = numberLiteral(n, true);
            return e;
        }
        fail(QStringLiteral("unexpected '%1'").arg(t.text), t.position);
    }

    ExprPtr wordPrimary(const Token& t, ExprPtr e) {
        const QString upper = t.text.toUpper();
        if (upper == QLatin1String("TRUE") || upper == QLatin1String("YES"))
            e->literal = SqlValue::ofBool(true);
        else if (upper == QLatin1String("FALSE") || upper == QLatin1String("NO"))
            e->literal = SqlValue::ofBool(false);
        else if (upper == QLatin1String("NULL"))
            e->literal = SqlValue::null();
        else if (isReserved(upper))
            fail(QStringLiteral("expected a field or a value, found %1").arg(upper), t.position);
        else {
            e->kind = Expr::Kind::Column;
            e->column = t.text;
        }
        return e;
    }

    static bool isReserved(const QString& upper) {
        static const QStringList words = {"SELECT", "FROM", "WHERE", "ORDER", "BY", "AND",
                                          "OR",     "NOT",  "INTO",  "IS",    "TOP"};
        return words.contains(upper);
    }

    SqlValue numberLiteral(const Token& t, bool negative) {
        bool ok = false;
        const double n = t.text.toDouble(&ok);
        if (!ok)
            fail(QStringLiteral("'%1' is not a number").arg(t.text), t.position);
        return SqlValue::ofNumber(negative ? -n : n);
    }

    SqlValue dateLiteral(const Token& t) {
        for (const char* format : {"yyyy-MM-dd", "M/d/yyyy", "yyyy/MM/dd"}) {
            const QDate d = QDate::fromString(t.text.trimmed(), QLatin1String(format));
            if (d.isValid())
                return SqlValue::ofDate(d.toJulianDay());
        }
        fail(QStringLiteral("'%1' is not a date").arg(t.text), t.position);
    }

    static ExprPtr binary(Expr::Kind kind, ExprPtr a, ExprPtr b) {
        auto e = std::make_unique<Expr>();
        e->kind = kind;
        e->args.push_back(std::move(a));
        e->args.push_back(std::move(b));
        return e;
    }

    // Tokens

    const Token& peek() const { return tokens_[index_]; }
    Token take() {
        const Token t = tokens_[index_];
        if (t.kind != Token::Kind::End)
            ++index_;
        return t;
    }
    bool peekWord(const char* word) const {
        return peek().kind == Token::Kind::Word &&
               peek().text.compare(QLatin1String(word), Qt::CaseInsensitive) == 0;
    }
    bool acceptWord(const char* word) {
        if (!peekWord(word))
            return false;
        ++index_;
        return true;
    }
    void expectWord(const char* word) {
        if (!acceptWord(word))
            fail(QStringLiteral("expected %1").arg(QLatin1String(word)));
    }
    bool acceptSymbol(const QString& symbol) {
        if (peek().kind != Token::Kind::Symbol || peek().text != symbol)
            return false;
        ++index_;
        return true;
    }
    void expectSymbol(const char* symbol) {
        if (!acceptSymbol(QLatin1String(symbol)))
            fail(QStringLiteral("expected '%1'").arg(QLatin1String(symbol)));
    }
    void finish() {
        acceptSymbol(QStringLiteral(";"));
        if (peek().kind != Token::Kind::End)
            fail(QStringLiteral("unexpected '%1'").arg(peek().text));
    }
    [[noreturn]] void fail(const QString& what) { fail(what, peek().position); }
    [[noreturn]] void fail(const QString& what, int position) { syntaxError(sql_, what, position); }

    const QString& sql_;
    QList<Token> tokens_;
    qsizetype index_ = 0;
};

} // namespace

namespace Sql {

Statement parseStatement(const QString& sql) {
    return Parser(sql).statement();
}

ExprPtr parseCondition(const QString& text) {
    return Parser(text).conditionOnly();
}

bool isStatement(const QString& source) {
    const QString s = source.trimmed();
    return s.startsWith(QLatin1String("SELECT"), Qt::CaseInsensitive) &&
           (s.size() == 6 || !isWordChar(s[6]));
}

QString tableName(const QString& written) {
    QString n = written.trimmed();
    if (n.startsWith(QLatin1Char('[')) && n.endsWith(QLatin1Char(']')))
        n = n.mid(1, n.size() - 2).trimmed();
    return n;
}

} // namespace Sql
