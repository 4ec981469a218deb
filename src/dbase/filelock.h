#pragma once

#include <QtGlobal>

class QFile;

// Locks in the convention of the Clipper programs that share the dealer's tables: a record is
// locked by one byte at 1,000,000,000 + its record number, the whole table by the range that
// starts at 1,000,000,001. The bytes lie far beyond the data, so they never stop a read; they
// only exclude other lockers. Locks belong to the open file and end when it is closed.
namespace FileLock {

constexpr qint64 RecordLockBase = 1000000000;
constexpr qint64 FileLockStart = 1000000001;
constexpr qint64 FileLockLength = 1000000000;
// Appending takes the byte of record 0, which no record uses, so that two writers never give
// two new records the same number.
constexpr quint32 AppendLockRecord = 0;

// Try to lock without waiting; false when another open file holds a conflicting lock.
bool tryLockRecord(QFile& file, quint32 recno);
bool tryLockFile(QFile& file);
void unlockRecord(QFile& file, quint32 recno);
void unlockFile(QFile& file);
// True when another open file (of this or another process) holds the table's file lock.
// Only the last byte of the range is tested: record locks never reach it.
bool fileLockedElsewhere(QFile& file);

} // namespace FileLock
