#include "app/installpath.h"

#include <QDir>
#include <QFileInfo>

namespace {

bool isSeparator(QChar c) {
    return c == u'/' || c == u'\\';
}

QString joined(const QString& dir, const QString& name) {
    if (dir.isEmpty() || isSeparator(dir.back()))
        return dir + name;
    return dir + u'/' + name;
}

// The entry of dir named like name in another case, or an empty text.
QString caseVariant(const QString& dir, const QString& name) {
    const QDir directory(dir.isEmpty() ? QStringLiteral(".") : dir);
    const QStringList entries = directory.entryList(
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString& entry : entries) {
        if (entry.compare(name, Qt::CaseInsensitive) == 0)
            return entry;
    }
    return {};
}

// name inside dir, which has already been resolved.
QString lookIn(const QString& dir, const QString& name) {
    const QString exact = joined(dir, name);
    if (name.isEmpty() || QFileInfo::exists(exact))
        return exact;
    const QString variant = caseVariant(dir, name);
    return variant.isEmpty() ? exact : joined(dir, variant);
}

bool isRoot(const QString& dir) {
    return dir.size() <= 1 || dir.endsWith(u":\\") || dir.endsWith(u":/");
}

} // namespace

QString ResolveInstallPath(const QString& dir, const QString& name) {
    const QString exact = joined(dir, name);
    if (QFileInfo::exists(exact))
        return exact;
    return lookIn(dir.isEmpty() || isRoot(dir) ? dir : ResolveInstallPath(dir), name);
}

QString ResolveInstallPath(const QString& path) {
    if (path.isEmpty() || QFileInfo::exists(path))
        return path;
    QString body = path;
    QString trailing;
    while (body.size() > 1 && isSeparator(body.back())) {
        trailing.prepend(body.back());
        body.chop(1);
    }
    qsizetype cut = body.size() - 1;
    while (cut >= 0 && !isSeparator(body[cut]))
        --cut;
    // The parent keeps its separator ("/" or "C:\"), so that a root stays a root.
    return ResolveInstallPath(body.left(cut + 1), body.mid(cut + 1)) + trailing;
}
