#include "dbase/filelock.h"

#include <QFile>

#ifdef Q_OS_WIN
#include <io.h>
#include <windows.h>
#else
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>
#endif

namespace {

#ifdef Q_OS_WIN

HANDLE handleOf(QFile& file) {
    return HANDLE(_get_osfhandle(file.handle()));
}

bool lockRange(QFile& file, qint64 start, qint64 length) {
    OVERLAPPED o{};
    o.Offset = DWORD(start & 0xFFFFFFFF);
    o.OffsetHigh = DWORD(start >> 32);
    return LockFileEx(handleOf(file), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0,
                      DWORD(length & 0xFFFFFFFF), DWORD(length >> 32), &o);
}

void unlockRange(QFile& file, qint64 start, qint64 length) {
    OVERLAPPED o{};
    o.Offset = DWORD(start & 0xFFFFFFFF);
    o.OffsetHigh = DWORD(start >> 32);
    UnlockFileEx(handleOf(file), 0, DWORD(length & 0xFFFFFFFF), DWORD(length >> 32), &o);
}

bool rangeLockedElsewhere(QFile& file, qint64 start, qint64 length) {
    if (!lockRange(file, start, length))
        return true;
    unlockRange(file, start, length);
    return false;
}

#else

// Locks of the open file description (not of the process), so that two opens of one table,
// even in one process, exclude each other as two workstations do.
#ifdef F_OFD_SETLK
constexpr int SetLock = F_OFD_SETLK;
constexpr int GetLock = F_OFD_GETLK;
#else
constexpr int SetLock = F_SETLK;
constexpr int GetLock = F_GETLK;
#endif

struct flock rangeOf(short type, qint64 start, qint64 length) {
    struct flock fl {};
    fl.l_type = type;
    fl.l_whence = SEEK_SET;
    fl.l_start = off_t(start);
    fl.l_len = off_t(length);
    fl.l_pid = 0;
    return fl;
}

bool lockRange(QFile& file, qint64 start, qint64 length) {
    struct flock fl = rangeOf(F_WRLCK, start, length);
    return ::fcntl(file.handle(), SetLock, &fl) == 0;
}

void unlockRange(QFile& file, qint64 start, qint64 length) {
    struct flock fl = rangeOf(F_UNLCK, start, length);
    ::fcntl(file.handle(), SetLock, &fl);
}

bool rangeLockedElsewhere(QFile& file, qint64 start, qint64 length) {
    struct flock fl = rangeOf(F_WRLCK, start, length);
    if (::fcntl(file.handle(), GetLock, &fl) != 0)
        return false;
    return fl.l_type != F_UNLCK;
}

#endif

} // namespace

namespace FileLock {

bool tryLockRecord(QFile& file, quint32 recno) {
    return lockRange(file, RecordLockBase + recno, 1);
}

bool tryLockFile(QFile& file) {
    return lockRange(file, FileLockStart, FileLockLength);
}

void unlockRecord(QFile& file, quint32 recno) {
    unlockRange(file, RecordLockBase + recno, 1);
}

void unlockFile(QFile& file) {
    unlockRange(file, FileLockStart, FileLockLength);
}

bool fileLockedElsewhere(QFile& file) {
    return rangeLockedElsewhere(file, FileLockStart + FileLockLength - 1, 1);
}

} // namespace FileLock
