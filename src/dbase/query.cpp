#include "dbase/query.h"

#include "dbase/dberror.h"
#include "dbase/textcodec.h"

#include <QDir>
#include <algorithm>

namespace {

QString withExtension(const QString& name) {
    return name.endsWith(QLatin1String(".DBF"), Qt::CaseInsensitive) ? name
                                                                     : name + QLatin1String(".DBF");
}

void checkPlainName(const QString& name) {
    if (name.isEmpty() || name.contains(QLatin1Char('/')) || name.contains(QLatin1Char('\\')) ||
        name.contains(QLatin1Char(':')) || name.startsWith(QLatin1Char('.')))
        throw DbError(DbErrors::Syntax,
                      QStringLiteral("'%1' is not a valid table name.").arg(name));
}

QList<int> selectedColumns(const SelectStatement& s, const TableSnapshot& t) {
    QList<int> columns;
    if (s.allColumns) {
        for (int i = 0; i < t.header.fields.size(); ++i)
            columns.append(i);
        return columns;
    }
    for (const QString& name : s.columns) {
        const int i = t.header.fieldIndex(name);
        if (i < 0)
            throw DbError(DbErrors::NoSuchField,
                          QStringLiteral("The table %1 has no field '%2'.").arg(t.name, name));
        columns.append(i);
    }
    return columns;
}

void sortRows(std::vector<quint32>& recnos, const std::vector<OrderKey>& keys,
              const TableSnapshot& t) {
    // Keys are worked out once per row; equal keys keep the file order (stable sort).
    const size_t n = recnos.size();
    std::vector<std::vector<SqlValue>> values(keys.size());
    for (size_t k = 0; k < keys.size(); ++k) {
        values[k].reserve(n);
        for (quint32 recno : recnos)
            values[k].push_back(evaluate(*keys[k].expr, t.record(recno), t.header));
    }
    std::vector<quint32> order(n);
    for (size_t i = 0; i < n; ++i)
        order[i] = quint32(i);
    std::stable_sort(order.begin(), order.end(), [&](quint32 a, quint32 b) {
        for (size_t k = 0; k < keys.size(); ++k) {
            const int c = compareForSort(values[k][a], values[k][b]);
            if (c != 0)
                return keys[k].descending ? c > 0 : c < 0;
        }
        return false;
    });
    std::vector<quint32> sorted(n);
    for (size_t i = 0; i < n; ++i)
        sorted[i] = recnos[order[i]];
    recnos.swap(sorted);
}

} // namespace

QString displayName(const QString& written) {
    QString n = Sql::tableName(written);
    n = n.mid(n.lastIndexOf(QLatin1Char('/')) + 1);
    if (n.endsWith(QLatin1String(".DBF"), Qt::CaseInsensitive))
        n.chop(4);
    return n.toUpper();
}

void ConnectionState::checkOpen() const {
    if (!open)
        throw DbError(DbErrors::Closed,
                      QStringLiteral("Operation is not allowed when the object is closed."));
}

QString ConnectionState::findTable(const QString& written) const {
    const QString file = withExtension(Sql::tableName(written));
    checkPlainName(file);
    const QDir dir(directory);
    if (QFileInfo(dir.filePath(file)).isFile())
        return dir.filePath(file);
    const QStringList entries = dir.entryList(QDir::Files | QDir::Hidden);
    for (const QString& entry : entries)
        if (entry.compare(file, Qt::CaseInsensitive) == 0)
            return dir.filePath(entry);
    return {};
}

QString ConnectionState::tablePath(const QString& written) const {
    const QString path = findTable(written);
    if (path.isEmpty())
        throw DbError(DbErrors::NoSuchTable,
                      QStringLiteral("The table %1 is not in %2.")
                          .arg(displayName(written), QDir::toNativeSeparators(directory)));
    return path;
}

QString ConnectionState::newTablePath(const QString& written) const {
    const QString existing = findTable(written);
    if (!existing.isEmpty())
        return existing;
    return QDir(directory).filePath(withExtension(Sql::tableName(written)));
}

std::vector<quint32> matchingRecords(const TableSnapshot& t, const Expr* where) {
    std::vector<quint32> recnos;
    recnos.reserve(t.header.recordCount);
    for (quint32 recno = 1; recno <= t.header.recordCount; ++recno) {
        if (t.isDeleted(recno))
            continue;
        if (!where || isTrue(*where, t.record(recno), t.header))
            recnos.push_back(recno);
    }
    return recnos;
}

QueryResult runSelect(SelectStatement& s, const ConnectionState& connection) {
    connection.checkOpen();
    QueryResult r;
    const QString path = connection.tablePath(s.from);
    r.table = std::make_shared<TableSnapshot>(TableFile::load(path, displayName(s.from)));
    const TableSnapshot& t = *r.table;
    r.columns = selectedColumns(s, t);
    if (s.where)
        bindExpr(*s.where, t.header, *t.codec);
    for (OrderKey& k : s.orderBy)
        bindExpr(*k.expr, t.header, *t.codec);
    r.recnos = matchingRecords(t, s.where.get());
    if (!s.orderBy.empty())
        sortRows(r.recnos, s.orderBy, t);
    if (s.top >= 0 && r.recnos.size() > size_t(s.top))
        r.recnos.resize(size_t(s.top));
    return r;
}
