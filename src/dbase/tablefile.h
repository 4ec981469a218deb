#pragma once

#include "dbase/dbfformat.h"

#include <QByteArray>
#include <QString>
#include <functional>
#include <memory>

class QIODevice;
class TextCodec;

// A table as read from disk at one moment: its header, its records (the bytes after the
// header, as many as the header counts) and its code page.
struct TableSnapshot {
    QString name; // as the program names it, for messages
    QString path;
    TableHeader header;
    QByteArray records;
    std::shared_ptr<const TextCodec> codec;

    const char* record(quint32 recno) const { // recno counts from 1
        return records.constData() + qsizetype(recno - 1) * header.recordLength;
    }
    bool isDeleted(quint32 recno) const { return record(recno)[0] == Dbf::Deleted; }
};

// Reading and writing table files. Every failure throws DbError naming the table.
namespace TableFile {

// Reads a whole table. Fails with DbErrors::Fail when the file cannot be opened or another
// workstation holds its file lock, DbErrors::Damaged for a damaged file.
TableSnapshot load(const QString& path, const QString& name);
// Reads a table from bytes already in memory (the checks of load, no file).
TableSnapshot fromBytes(const QByteArray& bytes, const QString& name);

// Writes one record in place: locks it, reads it again and refuses (DbErrors::RowChanged)
// when it is no longer `expected` (another workstation changed it since it was read), then
// writes it in one positioned write and dates the header.
void writeRecord(const TableSnapshot& table, quint32 recno, QByteArrayView expected,
                 QByteArrayView record);
// Appends a record after the last one, keeping the record count and the end mark right;
// returns its record number.
quint32 appendRecord(const TableSnapshot& table, QByteArrayView record);

// Writes a whole table (header, `count` records of `records`, end mark) to a device.
void writeTo(QIODevice& device, TableHeader header, const QByteArray& records, quint32 count,
             const QString& name);
// The device a rewrite writes its new file through, made over that file; without one the
// bytes go straight into the file. A device that fails part way plays a full disk.
using OutputWrapper = std::function<std::unique_ptr<QIODevice>(QIODevice& newFile)>;

// Replaces or creates the table at path with a new file: written beside it, then renamed over
// it, so that a failure leaves the old table whole. The old file's lock is held meanwhile;
// another workstation holding a lock on it makes this fail with DbErrors::Fail.
void replace(const QString& path, const QString& name, const TableHeader& header,
             const QByteArray& records, quint32 count, const OutputWrapper& through = {});

} // namespace TableFile
