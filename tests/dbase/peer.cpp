// The other workstation of the sharing tests, run as a separate process:
//   dbase_peer lock-file PATH          holds the table's file lock until stdin closes
//   dbase_peer lock-record PATH RECNO  holds one record lock until stdin closes
//   dbase_peer set DIR TABLE ROW FIELD VALUE
//                                      changes one field of row ROW (0-based) and saves it
// It prints "ready" once the lock is held or "saved" once the row is written, else the error.
#include "dbase/dberror.h"
#include "dbase/filelock.h"
#include "dbase/recordset.h"

#include <QCoreApplication>
#include <QFile>
#include <iostream>
#include <string>

namespace {

int holdLock(const QString& path, const QString& recno) {
    QFile file(path);
    const bool locked = file.open(QIODevice::ReadWrite) &&
                        (recno.isEmpty() ? FileLock::tryLockFile(file)
                                         : FileLock::tryLockRecord(file, recno.toUInt()));
    std::cout << (locked ? "ready" : "busy") << std::endl;
    std::string line;
    std::getline(std::cin, line);
    return locked ? 0 : 1;
}

int setField(const QStringList& a) {
    try {
        Connection connection;
        connection.open(a[2]);
        Recordset rs;
        rs.open(a[3], connection, CursorType::Keyset, LockType::Optimistic);
        rs.move(a[4].toInt(), MoveStart::First);
        rs.setValue(a[5], a[6]);
        rs.update();
        std::cout << "saved" << std::endl;
        return 0;
    } catch (const DbError& e) {
        std::cout << "error " << e.number() << " " << e.description().toStdString() << std::endl;
        return 1;
    }
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const QStringList a = app.arguments();
    if (a.size() == 3 && a[1] == QLatin1String("lock-file"))
        return holdLock(a[2], QString());
    if (a.size() == 4 && a[1] == QLatin1String("lock-record"))
        return holdLock(a[2], a[3]);
    if (a.size() == 7 && a[1] == QLatin1String("set"))
        return setField(a);
    std::cerr << "usage: dbase_peer lock-file PATH | lock-record PATH RECNO | set ..." << std::endl;
    return 2;
}
