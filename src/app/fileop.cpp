#include "app/fileop.h"

#include "app/installpath.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

bool exists(const QString& path) {
    return !path.isEmpty() && QFileInfo::exists(ResolveInstallPath(path));
}

void move(const QString& from, const QString& to) {
    if (from.isEmpty() || to.isEmpty() || exists(to))
        return;
    const QString source = ResolveInstallPath(from);
    const QString target = ResolveInstallPath(to);
    if (QFileInfo(source).isDir())
        QDir().rename(source, target);
    else
        QFile::rename(source, target);
}

// A copy over an existing target replaces it, as the system's copy does; the target keeps the
// name it already had on disk.
void copy(const QString& from, const QString& to) {
    if (from.isEmpty() || to.isEmpty())
        return;
    const QString source = ResolveInstallPath(from);
    if (!QFileInfo(source).isFile())
        return;
    const QFileInfo target(ResolveInstallPath(to));
    if (target.isDir())
        return;
    if (target.exists()) {
        // A file copied onto itself (its own name in another case, say) stays as it is; removing
        // the target first would lose it.
        if (target.canonicalFilePath() == QFileInfo(source).canonicalFilePath())
            return;
        if (!QFile::remove(target.filePath()))
            return;
    }
    QFile::copy(source, target.filePath());
}

void createFolder(const QString& path) {
    if (path.isEmpty() || exists(path))
        return;
    QDir().mkdir(ResolveInstallPath(path));
}

void remove(const QString& path) {
    if (path.isEmpty())
        return;
    const QString target = ResolveInstallPath(path);
    if (QFileInfo(target).isFile() || QFileInfo(target).isSymLink())
        QFile::remove(target);
}

} // namespace

bool FileOp(const QString& op, const QString& a, const QString& b) {
    try {
        if (op == u"MOVE")
            move(a, b);
        else if (op == u"COPY")
            copy(a, b);
        else if (op == u"CFOLDER")
            createFolder(a);
        else if (op == u"DELETE")
            remove(a);
        else
            return exists(a);
    } catch (...) {
        // A failure of any kind is only seen through the existence test that follows.
    }
    return false;
}
