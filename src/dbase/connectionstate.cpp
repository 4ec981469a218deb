#include "dbase/connectionstate.h"

#include "dbase/dberror.h"
#include "dbase/sqlparser.h"

#include <QDir>

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
