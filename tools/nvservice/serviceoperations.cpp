#include "serviceoperations.h"

#include "arjarchive.h"

#include "app/hiddenstrings.h"
#include "app/installpath.h"
#include "dbase/connection.h"
#include "dbase/recordset.h"

#include <QDate>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QSet>

namespace {

const QString ListManifest = QStringLiteral("LISTE.INF");
const QString CatalogueManifest = QStringLiteral("CATALOG.INF");
const QString IndexTable = QStringLiteral("NVINDEX.DBF");
const QString VersionMember = QStringLiteral("VERSION");

// Hidden entries of the file names the downloads use.
constexpr int ListFileEntry = 18;
constexpr int CatFileEntry = 9;
constexpr int CataFileEntry = 10;
constexpr int PartdexFileEntry = 14;

[[noreturn]] void fail(const QString& reason) {
    throw ServiceFailure(reason.toStdString());
}

QString withSlash(const QString& dir) {
    return dir.endsWith(u'/') ? dir : dir + u'/';
}

// What an item archive says about its item.
struct Manifest {
    QString fichier;
    QDate dateEff; // invalid: keep the table's
};

Manifest readManifest(const UnpackedArchive& archive, const QString& name) {
    const QString member = archive.find(name);
    if (member.isEmpty())
        fail(QStringLiteral("the archive holds no %1").arg(name));
    Manifest manifest;
    for (const QByteArray& raw : archive.read(member).split('\n')) {
        const QByteArray line = raw.trimmed();
        const qsizetype equals = line.indexOf('=');
        const QByteArray key = line.left(equals).trimmed().toUpper();
        const QString value = QString::fromLatin1(line.mid(equals + 1).trimmed());
        if (equals < 0)
            continue;
        if (key == "FICHIER")
            manifest.fichier = value;
        else if (key == "DATEEFF") {
            manifest.dateEff = QDate::fromString(value, QStringLiteral("yyyyMMdd"));
            if (!manifest.dateEff.isValid())
                fail(QStringLiteral("%1: not a date: %2").arg(name, value));
        }
    }
    if (manifest.fichier.isEmpty())
        fail(QStringLiteral("%1 names no FICHIER").arg(name));
    return manifest;
}

// The row at `position` of a table (1-based, in the table's order) is the manifest's item:
// its DATEEFF becomes the manifest's (when given) and DATESTK the same date.
void markUpToDate(const QString& dataPath, const QString& table, int position,
                  const Manifest& manifest) {
    Connection connection;
    connection.open(dataPath);
    Recordset rows;
    rows.open(table, connection, CursorType::Keyset, LockType::Optimistic);
    if (position < 1 || position > rows.recordCount())
        fail(QStringLiteral("%1 has no row %2").arg(table).arg(position));
    rows.setAbsolutePosition(position);
    const QString fichier = rows.value(QStringLiteral("FICHIER")).toString().trimmed();
    if (fichier.compare(manifest.fichier, Qt::CaseInsensitive) != 0)
        fail(QStringLiteral("row %1 of %2 is %3, the archive is for %4")
                 .arg(position)
                 .arg(table, fichier, manifest.fichier));
    if (manifest.dateEff.isValid())
        rows.setValue(QStringLiteral("DATEEFF"), manifest.dateEff);
    rows.setValue(QStringLiteral("DATESTK"), rows.value(QStringLiteral("DATEEFF")));
    rows.update();
}

QString archivePath(const QString& dir, const QString& name) {
    return ResolveInstallPath(dir, name);
}

// Adds to the newsletter index the rows of the archive's index that it does not hold yet (by
// NUMERO when both tables have it), field by field by name.
void mergeIndex(const QString& infoPath, const UnpackedArchive& archive, const QString& member) {
    Connection target;
    target.open(infoPath);
    if (target.tablePath(QStringLiteral("NVINDEX")).isEmpty()) {
        // A first index: the archive's table becomes it.
        if (!QFile::rename(archive.path(member), infoPath + IndexTable))
            fail(QStringLiteral("cannot put %1 into %2").arg(IndexTable, infoPath));
        return;
    }
    Connection source;
    source.open(QFileInfo(archive.path(member)).absolutePath());
    Recordset incoming;
    incoming.open(member, source, CursorType::Static, LockType::ReadOnly);
    Recordset index;
    index.open(QStringLiteral("NVINDEX"), target, CursorType::Keyset, LockType::BatchOptimistic);
    const bool byNumber = index.fieldIndex(QStringLiteral("NUMERO")) >= 0 &&
                          incoming.fieldIndex(QStringLiteral("NUMERO")) >= 0;
    QSet<QString> known;
    if (byNumber)
        for (index.moveFirst(); !index.eof(); index.moveNext())
            known << index.value(QStringLiteral("NUMERO")).toString().trimmed();
    for (incoming.moveFirst(); !incoming.eof(); incoming.moveNext()) {
        if (byNumber &&
            known.contains(incoming.value(QStringLiteral("NUMERO")).toString().trimmed()))
            continue;
        index.addNew();
        for (int f = 0; f < incoming.fieldCount(); ++f) {
            const int to = index.fieldIndex(incoming.fieldName(f));
            if (to >= 0)
                index.setValue(to, incoming.value(f));
        }
        index.update();
    }
    index.updateBatch();
}

// The installed version of a companion program: row `row` (1-based) of NVVERS.
void recordVersion(const QString& prgPath, int row, const QString& version) {
    Connection connection;
    connection.open(prgPath);
    Recordset versions;
    versions.open(QStringLiteral("NVVERS"), connection, CursorType::Keyset,
                  LockType::BatchOptimistic);
    while (versions.recordCount() < row) {
        versions.addNew();
        versions.update();
    }
    versions.setAbsolutePosition(row);
    versions.setValue(QStringLiteral("NVVERSION"), version);
    versions.update();
    versions.updateBatch();
}

void installPackage(const ServiceInstallation& install, const QString& fileName, int row) {
    const UnpackedArchive archive(archivePath(install.dataPath, fileName), install.dataPath);
    const QString member = archive.find(VersionMember);
    if (member.isEmpty())
        fail(QStringLiteral("%1 holds no %2").arg(fileName, VersionMember));
    const QString version = QString::fromLatin1(archive.read(member).split('\n').first().trimmed());
    if (version.isEmpty())
        fail(QStringLiteral("%1: the version is empty").arg(fileName));
    recordVersion(install.prgPath, row, version);
    archive.moveInto(install.prgPath, {member});
}

} // namespace

ServiceInstallation ServiceInstallation::around(const QString& dataDirectory) {
    QDir drive(dataDirectory);
    drive.cdUp();
    const QString root = withSlash(drive.absolutePath());
    return {withSlash(QDir(dataDirectory).absolutePath()),
            withSlash(ResolveInstallPath(root, QStringLiteral("PRG"))),
            withSlash(ResolveInstallPath(root, QStringLiteral("NVINFO")))};
}

namespace ServiceOperations {

void installList(const ServiceInstallation& install, int position) {
    const UnpackedArchive archive(archivePath(install.prgPath, HiddenString(ListFileEntry)),
                                  install.prgPath);
    const Manifest manifest = readManifest(archive, ListManifest);
    markUpToDate(install.dataPath, QStringLiteral("PRIXLIST"), position, manifest);
    archive.moveInto(install.dataPath, {archive.find(ListManifest)});
}

void installCatalogue(const ServiceInstallation& install, int position) {
    const UnpackedArchive first(archivePath(install.prgPath, HiddenString(CatFileEntry)),
                                install.prgPath);
    const UnpackedArchive second(archivePath(install.prgPath, HiddenString(CataFileEntry)),
                                 install.prgPath);
    const Manifest manifest = readManifest(first, CatalogueManifest);
    markUpToDate(install.dataPath, QStringLiteral("CATALIST"), position, manifest);
    first.moveInto(install.dataPath, {first.find(CatalogueManifest)});
    second.moveInto(install.dataPath);
}

void installIndex(const ServiceInstallation& install) {
    const UnpackedArchive archive(archivePath(install.dataPath, QStringLiteral("NVINFO.ARJ")),
                                  install.infoPath);
    const QString table = archive.find(IndexTable);
    if (table.isEmpty())
        fail(QStringLiteral("NVINFO.ARJ holds no %1").arg(IndexTable));
    mergeIndex(install.infoPath, archive, table);
    archive.moveInto(install.infoPath, {table});
}

void installPartdex(const ServiceInstallation& install) {
    installPackage(install, HiddenString(PartdexFileEntry), 1);
}

void installLedgermaker(const ServiceInstallation& install) {
    installPackage(install, QStringLiteral("LEDGVERS.ARJ"), 2);
}

} // namespace ServiceOperations
