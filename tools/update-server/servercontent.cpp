#include "servercontent.h"

#include "comms/protocol.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

// A request word and the folder (or file) of the content directory that answers it.
struct ItemRoute {
    const char* word;
    QString (*path)(const QString& code);
};

QString listPath(const QString& code) {
    return QStringLiteral("lists/") + code + QStringLiteral(".ARJ");
}
QString firstCataloguePath(const QString& code) {
    return QStringLiteral("catalogues/") + code + QStringLiteral("/CAT.ARJ");
}
QString secondCataloguePath(const QString& code) {
    return QStringLiteral("catalogues/") + code + QStringLiteral("/CATA.ARJ");
}
QString partdexPath(const QString& code) {
    return QStringLiteral("partdex/") + code + QStringLiteral(".ARJ");
}
QString ledgermakerPath(const QString& code) {
    return QStringLiteral("ledgermaker/") + code + QStringLiteral(".ARJ");
}

const ItemRoute ItemRoutes[] = {
    {Protocol::AskList, listPath},
    {Protocol::AskCatalogue, firstCataloguePath},
    {Protocol::AskCatalogueSecond, secondCataloguePath},
    {Protocol::Partdex, partdexPath},
    {Protocol::Ledgermaker, ledgermakerPath},
};

// The entry of dir named name without regard to case, or name itself when none matches.
QString entryIn(const QDir& dir, const QString& name) {
    if (dir.exists(name))
        return name;
    const QStringList entries = dir.entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    for (const QString& entry : entries)
        if (entry.compare(name, Qt::CaseInsensitive) == 0)
            return entry;
    return name;
}

} // namespace

bool isPlainItemCode(const QByteArray& code) {
    if (code.isEmpty() || code.contains("..") || code == ".")
        return false;
    for (const char c : code)
        if (c <= ' ' || c > '~' || c == '/' || c == '\\' || c == ':')
            return false;
    return true;
}

ServerContent::ServerContent(QString directory) : directory_(std::move(directory)) {}

std::optional<QString> ServerContent::existing(const QString& relativePath) const {
    QDir dir(directory_);
    const QStringList parts = relativePath.split(u'/');
    for (qsizetype i = 0; i + 1 < parts.size(); ++i) {
        const QString sub = entryIn(dir, parts[i]);
        if (!dir.cd(sub))
            return std::nullopt;
    }
    const QFileInfo file(dir.filePath(entryIn(dir, parts.back())));
    if (!file.isFile())
        return std::nullopt;
    return file.filePath();
}

std::optional<QString> ServerContent::fileFor(const QByteArray& request) const {
    if (request == Protocol::StartAnnounce)
        return existing(QStringLiteral("NVBATI.DAT"));
    if (request == Protocol::AskIndexArchive)
        return existing(QStringLiteral("NVINFO.ARJ"));
    if (request == Protocol::AskProgramUpdate)
        return existing(QStringLiteral("UPDATE.EXE"));
    for (const ItemRoute& route : ItemRoutes) {
        if (!request.startsWith(route.word))
            continue;
        const QByteArray code = request.mid(Protocol::TokenLength);
        if (!isPlainItemCode(code))
            return std::nullopt;
        return existing(route.path(QString::fromLatin1(code)));
    }
    return std::nullopt;
}

QByteArray ServerContent::versions() const {
    if (!versions_.isEmpty())
        return versions_;
    const std::optional<QString> path = existing(QStringLiteral("VERSIONS"));
    if (!path)
        return {};
    QFile file(*path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return file.readLine().trimmed();
}
