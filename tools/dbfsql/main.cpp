// dbfsql DIR "STATEMENT": runs one statement on the tables of a directory through the program's
// own engine. A SELECT prints its rows as tab-separated text under a line of field names (Null
// as an empty field); other statements print what they changed. For dealer support and tests.
#include "rowtext.h"
#include "standardoptions.h"

#include "dbase/dberror.h"
#include "dbase/recordset.h"
#include "dbase/sqlparser.h"

#include <QCoreApplication>
#include <QStringList>
#include <QTextStream>

namespace {

constexpr const char* Help =
    "usage: dbfsql DIR \"STATEMENT\"\n"
    "Runs one statement on the dBASE tables of DIR through the program's own engine. A SELECT\n"
    "prints its rows as tab-separated text under a line of field names (Null as an empty\n"
    "field); other statements print what they changed.\n"
    "Exit status: 0 done, 1 the statement failed, 2 bad arguments.\n";

bool returnsRows(const QString& sql) {
    if (!Sql::isStatement(sql))
        return false;
    const Statement statement = Sql::parseStatement(sql);
    return std::get<SelectStatement>(statement).into.isEmpty();
}

void printRows(Connection& connection, const QString& sql, QTextStream& out) {
    Recordset rs;
    rs.open(sql, connection, CursorType::Static, LockType::ReadOnly);
    QStringList header;
    for (int i = 0; i < rs.fieldCount(); ++i)
        header << rs.fieldName(i);
    out << header.join(QLatin1Char('\t')) << '\n';
    for (rs.moveFirst(); !rs.eof(); rs.moveNext()) {
        QStringList cells;
        for (int i = 0; i < rs.fieldCount(); ++i)
            cells << rowText(rs.value(i), rs.field(i));
        out << cells.join(QLatin1Char('\t')) << '\n';
    }
}

QString changeText(const QString& sql, qint64 rows) {
    const QString verb = sql.trimmed().section(QLatin1Char(' '), 0, 0).toUpper();
    if (verb == QLatin1String("CREATE"))
        return QStringLiteral("Table created.");
    if (verb == QLatin1String("ALTER"))
        return QStringLiteral("Table altered.");
    return QStringLiteral("%1 row(s) written.").arg(rows);
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (const std::optional<int> answered = AnswerStandardOptions(args.mid(1), "dbfsql", Help))
        return *answered;
    QTextStream out(stdout);
    QTextStream err(stderr);
    if (args.size() != 3) {
        err << "usage: dbfsql DIR \"STATEMENT\"\n";
        return 2;
    }
    const QString& sql = args[2];
    try {
        Connection connection;
        connection.open(args[1]);
        if (returnsRows(sql))
            printRows(connection, sql, out);
        else
            out << changeText(sql, connection.execute(sql)) << '\n';
    } catch (const DbError& e) {
        out.flush();
        err << "Error " << e.number() << ": " << e.description() << '\n';
        return 1;
    }
    return 0;
}
