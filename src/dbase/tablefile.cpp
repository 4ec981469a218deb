#include "dbase/tablefile.h"

#include "dbase/dberror.h"
#include "dbase/filelock.h"
#include "dbase/textcodec.h"

#include <QDate>
#include <QFile>
#include <QSaveFile>
#include <chrono>
#include <thread>

namespace {

[[noreturn]] void fail(qint64 number, const QString& text) {
    throw DbError(number, text);
}

[[noreturn]] void inUse(const QString& name) {
    fail(DbErrors::Fail, QStringLiteral("The table %1 is in use: another workstation holds it "
                                        "locked.")
                             .arg(name));
}

std::unique_ptr<QFile> openFile(const QString& path, const QString& name,
                                QIODevice::OpenMode mode) {
    auto file = std::make_unique<QFile>(path);
    if (!file->open(mode))
        fail(DbErrors::Fail,
             QStringLiteral("The table %1 cannot be opened: %2.").arg(name, file->errorString()));
    return file;
}

QByteArray readAt(QFile& file, qint64 offset, qint64 size, const QString& name) {
    QByteArray bytes;
    if (file.seek(offset))
        bytes = file.read(size);
    if (bytes.size() != size)
        fail(DbErrors::Damaged, QStringLiteral("The table %1 is damaged: it ends before byte %2.")
                                    .arg(name)
                                    .arg(offset + size));
    return bytes;
}

void writeAt(QFile& file, qint64 offset, QByteArrayView bytes, const QString& name) {
    if (!file.seek(offset) || file.write(bytes.data(), bytes.size()) != bytes.size() ||
        !file.flush())
        fail(DbErrors::Io,
             QStringLiteral("Writing the table %1 failed: %2.").arg(name, file.errorString()));
}

TableHeader readHeader(QFile& file, const QString& name) {
    const qint64 size = file.size();
    const QByteArray prefix = readAt(file, 0, qMin<qint64>(size, 32), name);
    qint64 headerLength =
        prefix.size() >= 12 ? (quint8(prefix[8]) | (quint8(prefix[9]) << 8)) : prefix.size();
    headerLength = qBound<qint64>(prefix.size(), headerLength, size);
    return Dbf::parseHeader(readAt(file, 0, headerLength, name), size, name);
}

// The table on disk must still be the one that was read: another workstation's program may
// have rebuilt it since.
TableHeader checkSameStructure(QFile& file, const TableSnapshot& table) {
    const TableHeader disk = readHeader(file, table.name);
    if (disk.headerLength != table.header.headerLength ||
        disk.recordLength != table.header.recordLength || disk.fields != table.header.fields)
        fail(DbErrors::RowChanged, QStringLiteral("The table %1 was rebuilt since it was read; "
                                                  "read it again before changing it.")
                                       .arg(table.name));
    return disk;
}

// Clipper programs hold a record lock only while they write; wait for it a little.
bool lockRecordPatiently(QFile& file, quint32 recno) {
    for (int attempt = 0; attempt < 10; ++attempt) {
        if (FileLock::tryLockRecord(file, recno))
            return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return false;
}

QByteArray todayBytes() {
    return Dbf::dateAndCount(QDate::currentDate(), 0).left(3);
}

void writeAll(QIODevice& device, QByteArrayView bytes, const QString& name) {
    if (device.write(bytes.data(), bytes.size()) != bytes.size())
        fail(DbErrors::Io,
             QStringLiteral("Writing the table %1 failed: %2.").arg(name, device.errorString()));
}

} // namespace

namespace TableFile {

TableSnapshot load(const QString& path, const QString& name) {
    auto file = openFile(path, name, QIODevice::ReadOnly);
    if (FileLock::fileLockedElsewhere(*file))
        inUse(name);
    TableSnapshot t;
    t.name = name;
    t.path = path;
    t.header = readHeader(*file, name);
    const qint64 size = qint64(t.header.recordCount) * t.header.recordLength;
    t.records = readAt(*file, t.header.headerLength, size, name);
    t.codec = TextCodec::forDriver(t.header.languageDriver);
    return t;
}

TableSnapshot fromBytes(const QByteArray& bytes, const QString& name) {
    TableSnapshot t;
    t.name = name;
    t.header = Dbf::parseHeader(bytes, bytes.size(), name);
    t.records =
        bytes.mid(t.header.headerLength, qint64(t.header.recordCount) * t.header.recordLength);
    t.codec = TextCodec::forDriver(t.header.languageDriver);
    return t;
}

void writeRecord(const TableSnapshot& table, quint32 recno, QByteArrayView expected,
                 QByteArrayView record) {
    Q_ASSERT(record.size() == table.header.recordLength);
    auto file = openFile(table.path, table.name, QIODevice::ReadWrite);
    if (!lockRecordPatiently(*file, recno))
        fail(DbErrors::Fail, QStringLiteral("Record %1 of the table %2 is locked by another "
                                            "workstation; try again.")
                                 .arg(recno)
                                 .arg(table.name));
    const TableHeader disk = checkSameStructure(*file, table);
    const qint64 offset = disk.recordOffset(recno);
    const bool gone = recno > disk.recordCount;
    if (gone || readAt(*file, offset, disk.recordLength, table.name) != expected)
        fail(DbErrors::RowChanged,
             QStringLiteral("Record %1 of the table %2 was changed by another workstation since "
                            "it was read; the change was not saved.")
                 .arg(recno)
                 .arg(table.name));
    writeAt(*file, offset, record, table.name);
    writeAt(*file, 1, todayBytes(), table.name);
    FileLock::unlockRecord(*file, recno);
}

quint32 appendRecord(const TableSnapshot& table, QByteArrayView record) {
    Q_ASSERT(record.size() == table.header.recordLength);
    auto file = openFile(table.path, table.name, QIODevice::ReadWrite);
    if (!lockRecordPatiently(*file, FileLock::AppendLockRecord) ||
        FileLock::fileLockedElsewhere(*file))
        inUse(table.name);
    const TableHeader disk = checkSameStructure(*file, table);
    const quint32 recno = disk.recordCount + 1;
    QByteArray bytes = record.toByteArray();
    bytes.append(Dbf::EndMark);
    // The record and its end mark first, then the count: until the count is written the
    // other programs see the table as it was.
    writeAt(*file, disk.recordOffset(recno), bytes, table.name);
    writeAt(*file, 1, Dbf::dateAndCount(QDate::currentDate(), recno), table.name);
    FileLock::unlockRecord(*file, FileLock::AppendLockRecord);
    return recno;
}

void writeTo(QIODevice& device, TableHeader header, const QByteArray& records, quint32 count,
             const QString& name) {
    header.recordCount = count;
    header.lastUpdate = QDate::currentDate();
    writeAll(device, Dbf::headerBytes(header), name);
    writeAll(device, QByteArrayView(records).first(qint64(count) * header.recordLength), name);
    writeAll(device, QByteArrayView("\x1A", 1), name);
}

void replace(const QString& path, const QString& name, const TableHeader& header,
             const QByteArray& records, quint32 count, const OutputWrapper& through) {
    std::unique_ptr<QFile> old;
    if (QFile::exists(path)) {
        old = openFile(path, name, QIODevice::ReadWrite);
        if (!FileLock::tryLockFile(*old))
            inUse(name);
    }
    QSaveFile out(path);
    if (!out.open(QIODevice::WriteOnly))
        fail(DbErrors::Io,
             QStringLiteral("The table %1 cannot be written: %2.").arg(name, out.errorString()));
    try {
        if (through)
            writeTo(*through(out), header, records, count, name);
        else
            writeTo(out, header, records, count, name);
    } catch (...) {
        out.cancelWriting();
        throw;
    }
    if (!out.commit())
        fail(DbErrors::Io,
             QStringLiteral("The table %1 cannot be written: %2.").arg(name, out.errorString()));
}

} // namespace TableFile
