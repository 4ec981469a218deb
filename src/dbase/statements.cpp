#include "dbase/statements.h"

#include "dbase/dberror.h"
#include "dbase/query.h"
#include "dbase/textcodec.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cstring>

namespace {

constexpr quint8 AnsiDriver = 0x57;
constexpr quint8 PlainVersion = 0x03;

bool identity(const QList<int>& columns, const TableHeader& h) {
    if (columns.size() != h.fields.size())
        return false;
    for (int i = 0; i < columns.size(); ++i)
        if (columns[i] != i)
            return false;
    return true;
}

QString memoPath(const QString& tablePath) {
    const QFileInfo info(tablePath);
    const QString base = info.completeBaseName();
    for (const char* ext : {".DBT", ".dbt"}) {
        const QString p = info.dir().filePath(base + QLatin1String(ext));
        if (QFile::exists(p))
            return p;
    }
    return info.dir().filePath(base + QLatin1String(".DBT"));
}

// A copy keeps its memo fields readable by the other programs: their blocks are in the
// memo file, which goes with the copy.
void copyMemoFile(const QString& from, const QString& to, const QString& name) {
    const QString source = memoPath(from);
    const QString target = memoPath(to);
    if (source == target || !QFile::exists(source))
        return;
    QFile::remove(target);
    if (!QFile::copy(source, target))
        throw DbError(DbErrors::Io,
                      QStringLiteral("The memo file of the table %1 cannot be copied.").arg(name));
}

qint64 selectInto(SelectStatement& s, const ConnectionState& c) {
    const QueryResult r = runSelect(s, c);
    const TableSnapshot& t = *r.table;
    QList<FieldDef> fields;
    for (int col : r.columns)
        fields.append(t.header.fields[col]);
    TableHeader h = Dbf::makeHeader(fields, t.header.languageDriver, PlainVersion);
    if (h.hasMemo())
        h.version = t.header.version;
    const bool whole = identity(r.columns, t.header);
    QByteArray records;
    records.reserve(qsizetype(r.recnos.size()) * h.recordLength);
    for (quint32 recno : r.recnos) {
        const char* rec = t.record(recno);
        if (whole) {
            records.append(rec, h.recordLength);
            continue;
        }
        records.append(Dbf::Live);
        for (int col : r.columns)
            records.append(rec + t.header.offsets[col], t.header.fields[col].length);
    }
    const QString target = c.newTablePath(s.into);
    TableFile::replace(target, displayName(s.into), h, records, quint32(r.recnos.size()), c.output);
    if (h.hasMemo())
        copyMemoFile(t.path, target, displayName(s.into));
    return qint64(r.recnos.size());
}

void copyField(char* out, const FieldDef& to, const char* in, const FieldDef& from,
               const TableSnapshot& source, const TableSnapshot& target) {
    if (to.type == 'M') // a memo block of another table means nothing here
        return;
    if (to.type == from.type && to.length == from.length && to.decimals == from.decimals &&
        source.codec->languageDriver() == target.codec->languageDriver()) {
        std::memcpy(out, in, size_t(to.length));
        return;
    }
    Dbf::encodeField(out, to, Dbf::decodeField(in, from, *source.codec), *target.codec);
}

qint64 insertInto(InsertStatement& s, const ConnectionState& c) {
    const QString path = c.tablePath(s.into);
    const TableSnapshot target = TableFile::load(path, displayName(s.into));
    const QueryResult r = runSelect(s.select, c);
    const TableSnapshot& source = *r.table;
    // Fields are matched by name; those the source lacks stay Null (blank).
    QList<int> from;
    for (const FieldDef& f : target.header.fields) {
        int found = -1;
        for (int col : r.columns)
            if (source.header.fields[col].name.compare(f.name, Qt::CaseInsensitive) == 0)
                found = col;
        from.append(found);
    }
    QByteArray records = target.records;
    const QByteArray blank = Dbf::blankRecord(target.header);
    for (quint32 recno : r.recnos) {
        QByteArray rec = blank;
        for (int j = 0; j < from.size(); ++j) {
            if (from[j] < 0)
                continue;
            copyField(rec.data() + target.header.offsets[j], target.header.fields[j],
                      source.record(recno) + source.header.offsets[from[j]],
                      source.header.fields[from[j]], source, target);
        }
        records.append(rec);
    }
    const quint32 count = target.header.recordCount + quint32(r.recnos.size());
    TableFile::replace(path, target.name, target.header, records, count, c.output);
    return qint64(r.recnos.size());
}

qint64 createTable(const CreateStatement& s, const ConnectionState& c) {
    if (!c.findTable(s.table).isEmpty())
        throw DbError(DbErrors::AlreadyExists,
                      QStringLiteral("Table '%1' already exists.").arg(displayName(s.table)));
    for (int i = 0; i < s.fields.size(); ++i) {
        Dbf::checkNewField(s.fields[i]);
        for (int j = 0; j < i; ++j)
            if (s.fields[j].name.compare(s.fields[i].name, Qt::CaseInsensitive) == 0)
                throw DbError(DbErrors::AlreadyExists,
                              QStringLiteral("Field '%1' is defined twice.").arg(s.fields[i].name));
    }
    const TableHeader h = Dbf::makeHeader(s.fields, AnsiDriver);
    TableFile::replace(c.newTablePath(s.table), displayName(s.table), h, {}, 0, c.output);
    return 0;
}

qint64 alterTable(const AlterStatement& s, const ConnectionState& c) {
    const QString path = c.tablePath(s.table);
    const TableSnapshot t = TableFile::load(path, displayName(s.table));
    if (t.header.fieldIndex(s.field.name) >= 0)
        throw DbError(
            DbErrors::AlreadyExists,
            QStringLiteral("Field '%1' already exists in table '%2'.").arg(s.field.name, t.name));
    Dbf::checkNewField(s.field);
    const TableHeader h = Dbf::makeHeader(t.header.fields + QList<FieldDef>{s.field},
                                          t.header.languageDriver, t.header.version);
    QByteArray records;
    records.reserve(qsizetype(t.header.recordCount) * h.recordLength);
    const QByteArray blanks(s.field.length, ' ');
    for (quint32 recno = 1; recno <= t.header.recordCount; ++recno) {
        records.append(t.record(recno), t.header.recordLength);
        records.append(blanks);
    }
    TableFile::replace(path, t.name, h, records, t.header.recordCount, c.output);
    return 0;
}

} // namespace

qint64 runWritingStatement(Statement& statement, const ConnectionState& c) {
    c.checkOpen();
    if (auto* s = std::get_if<SelectStatement>(&statement)) {
        if (s->into.isEmpty())
            throw DbError(DbErrors::NotAllowed,
                          QStringLiteral("A SELECT statement returns rows: open it in a "
                                         "recordset."));
        return selectInto(*s, c);
    }
    if (auto* s = std::get_if<InsertStatement>(&statement))
        return insertInto(*s, c);
    if (auto* s = std::get_if<CreateStatement>(&statement))
        return createTable(*s, c);
    return alterTable(std::get<AlterStatement>(statement), c);
}
