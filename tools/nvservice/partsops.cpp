#include "partsops.h"

#include "app/installpath.h"
#include "dbase/connection.h"
#include "dbase/dberror.h"
#include "dbase/recordset.h"
#include "dbase/tablefile.h"
#include "partsfile/cp1252.h"
#include "stockfixtures/ntxwriter.h"

#include <QCoreApplication>
#include <QDir>
#include <QHash>
#include <QSaveFile>
#include <cstdio>
#include <cstring>

namespace {

const QString Renumber = QStringLiteral("2");
const QString Delete = QStringLiteral("3");

// ORI -> NEW of the replacement table, or ORI -> "" of the deletion table; numbers trimmed.
QHash<QString, QString> readWorkTable(const QString& prgDir, const QString& table) {
    QHash<QString, QString> changes;
    Connection prg;
    prg.open(prgDir);
    if (prg.tablePath(table).isEmpty())
        return changes;
    Recordset rs;
    rs.open(table, prg, CursorType::Static, LockType::ReadOnly);
    const bool renumbering = rs.fieldIndex(QStringLiteral("NEW")) >= 0;
    for (; !rs.eof(); rs.moveNext()) {
        const QString ori = rs.value(QStringLiteral("ORI")).toString().trimmed();
        const QString now =
            renumbering ? rs.value(QStringLiteral("NEW")).toString().trimmed() : QString();
        // A renumbering to nothing would lose the part: it is left as it is.
        if (!ori.isEmpty() && (!renumbering || !now.isEmpty()) && !changes.contains(ori))
            changes.insert(ori, now);
    }
    return changes;
}

// Applies the changes to the records in memory; the records keep their places.
int applyChanges(TableSnapshot& stock, const QHash<QString, QString>& changes, bool renumbering) {
    const int field = stock.header.fieldIndex(QStringLiteral("NUMERO"));
    if (field < 0)
        throw DbError(DbErrors::NoSuchField, QStringLiteral("STOCK has no field NUMERO."));
    const int at = stock.header.offsets[field];
    const int width = stock.header.fields[field].length;
    int changed = 0;
    for (quint32 recno = 1; recno <= stock.header.recordCount; ++recno) {
        char* record = stock.records.data() + qsizetype(recno - 1) * stock.header.recordLength;
        if (record[0] == Dbf::Deleted)
            continue;
        const auto found = changes.constFind(DecodeCp1252(record + at, width).trimmed());
        if (found == changes.constEnd())
            continue;
        if (renumbering) {
            const QByteArray number = EncodeCp1252(*found).leftJustified(width, ' ', true);
            std::memcpy(record + at, number.constData(), size_t(width));
        } else {
            record[0] = Dbf::Deleted;
        }
        ++changed;
    }
    return changed;
}

// The index of the parts still in the file, in the key order of the search.
QByteArray indexOf(const TableSnapshot& stock) {
    const int field = stock.header.fieldIndex(QStringLiteral("NUMERO"));
    const int at = stock.header.offsets[field];
    std::vector<NtxEntry> entries;
    for (quint32 recno = 1; recno <= stock.header.recordCount; ++recno) {
        if (stock.isDeleted(recno))
            continue;
        NtxEntry entry;
        entry.key.fill(' ');
        std::memcpy(
            entry.key.data(), stock.record(recno) + at,
            size_t(std::min<int>(stock.header.fields[field].length, int(entry.key.size()))));
        entry.record = recno;
        entries.push_back(entry);
    }
    return BuildNtx(std::move(entries)).bytes;
}

void writeIndex(const QString& path, const QByteArray& bytes) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        throw DbError(DbErrors::Io,
                      QStringLiteral("STOCK.NTX cannot be written: %1.").arg(file.errorString()));
}

} // namespace

bool IsPartsOperation(const QString& operationCode) {
    return operationCode == Renumber || operationCode == Delete;
}

bool RunPartsOperation(const QString& operationCode, const QString& prgDir) {
    const bool renumbering = operationCode == Renumber;
    try {
        const QHash<QString, QString> changes = readWorkTable(
            prgDir, renumbering ? QStringLiteral("MEREMPLA") : QStringLiteral("MEEFFACE"));
        if (changes.isEmpty())
            return true;
        const QString table = ResolveInstallPath(prgDir, QStringLiteral("STOCK.DBF"));
        TableSnapshot stock = TableFile::load(table, QStringLiteral("STOCK"));
        if (applyChanges(stock, changes, renumbering) == 0)
            return true;
        const QByteArray index = indexOf(stock);
        TableFile::replace(table, stock.name, stock.header, stock.records,
                           stock.header.recordCount);
        writeIndex(ResolveInstallPath(prgDir, QStringLiteral("STOCK.NTX")), index);
        return true;
    } catch (const DbError& error) {
        std::fprintf(stderr, "%s\n", qPrintable(error.description()));
        return false;
    }
}
