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

} // namespace

QString ResolveInstallPath(const QString& dir, const QString& name) {
    const QString exact = joined(dir, name);
    if (name.isEmpty() || QFileInfo::exists(exact))
        return exact;
    const QString variant = caseVariant(dir, name);
    return variant.isEmpty() ? exact : joined(dir, variant);
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
    const QString name = body.mid(cut + 1);
    if (cut < 0)
        return ResolveInstallPath(QString(), name) + trailing;
    // The root keeps its separator ("/" or "C:\"); deeper parents are resolved in turn.
    const QString parent = body.left(cut + 1);
    const QString resolvedParent =
        parent.size() <= 1 || parent.endsWith(u":\\") || parent.endsWith(u":/")
            ? parent
            : ResolveInstallPath(parent);
    return ResolveInstallPath(resolvedParent, name) + trailing;
}
