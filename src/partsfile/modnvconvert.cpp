#include "partsfile/modnvconvert.h"

#include "app/fileop.h"
#include "app/installpath.h"
#include "app/messages.h"
#include "dbase/connection.h"
#include "dbase/dberror.h"
#include "dbase/filelock.h"
#include "dbase/recordset.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QVariantList>
#include <cmath>
#include <filesystem>

namespace modNVConvert {

namespace {

// The old fields of PRIXLIST, as the rebuild selects them (the statement as the program has
// always run it, line breaks of its source included).
const QString RebuildStatement = QStringLiteral(
    "SELECT UTILISER, DESC, FICHIER, DATEEFF, DATESTK,CODEGRO, PASOBLIGER, CODENVC, CODEUNI, "
    "CODEACK,CODEUAP, COUTDE, COUTPCT, PCT1, PCT2, PCT3,DEPARTEM, CH_DESC1, CH_DESC2, CH_COUT, "
    "FOURNIS,SGR1, SGR1PCT, SGR2, SGR2PCT, SGR3, SGR3PCT,SGR4, SGR4PCT, SGR5, SGR5PCT, SGR6, "
    "SGR6PCT,SGR7, SGR7PCT, SGR8, SGR8PCT, SGR9, SGR9PCT,SGR10, SGR10PCT, DATEMISE, PLUSDISPO, "
    "LFAMILLE, FICFAMILLE INTO PRIXTEMP.DBF FROM PRIXLIST.DBF");

const QString WorkTable = QStringLiteral("PRIXTEMP");
const QString PriceTable = QStringLiteral("PRIXLIST");
const QString SavedCategories = QStringLiteral("CATATEMP");
constexpr int CategoryCount = 9;

// Files that belong to a table besides its .DBF: the memo file and the indexes the dealer's
// other programs may keep.
const char* const CompanionExtensions[] = {".DBT", ".MDX", ".NDX"};

QString inDir(const Connection& data, const QString& file) {
    return ResolveInstallPath(data.directory(), file);
}

void deleteTable(const Connection& data, const QString& table) {
    FileOp(QStringLiteral("DELETE"), inDir(data, table + QStringLiteral(".DBF")));
    for (const char* ext : CompanionExtensions)
        FileOp(QStringLiteral("DELETE"), inDir(data, table + QLatin1String(ext)));
}

bool tableExists(const Connection& data, const QString& table) {
    return !data.tablePath(table).isEmpty();
}

// Puts `from` in the place of `to` in one rename: at every moment `to` is either the old file
// or the new one. A file another workstation holds locked is not replaced.
void renameOver(const QString& from, const QString& to) {
    QFile target(to);
    if (target.open(QIODevice::ReadOnly) && FileLock::fileLockedElsewhere(target))
        throw DbError(DbErrors::Fail,
                      QStringLiteral("The table %1 is in use on another workstation.")
                          .arg(QFileInfo(to).fileName()));
    target.close();
    std::error_code error;
    std::filesystem::rename(std::filesystem::path(from.toStdWString()),
                            std::filesystem::path(to.toStdWString()), error);
    if (error)
        throw DbError(DbErrors::Io, QStringLiteral("%1 cannot replace %2: %3.")
                                        .arg(QFileInfo(from).fileName(), QFileInfo(to).fileName(),
                                             QString::fromStdString(error.message())));
}

// The finished work table becomes PRIXLIST; its memo and index files follow it. A memo file of
// the work table is a copy of PRIXLIST's, so the moment between the two renames is harmless.
void replacePriceTable(const Connection& data, ConversionObserver& observer) {
    const QString target = inDir(data, PriceTable + QStringLiteral(".DBF"));
    renameOver(data.tablePath(WorkTable), target);
    observer.fileStepDone(FileStep::TableReplaced);
    bool moved = false;
    for (const char* ext : CompanionExtensions) {
        const QString companion = inDir(data, WorkTable + QLatin1String(ext));
        if (!QFile::exists(companion))
            continue;
        renameOver(companion, inDir(data, PriceTable + QLatin1String(ext)));
        moved = true;
    }
    if (moved)
        observer.fileStepDone(FileStep::CompanionsMoved);
}

// The categories of each catalogue as the conversion first found them, by FICHIER.
using CategoryFields = QHash<QString, QVariantList>; // GR1..GR9 then GRL1..GRL9

QString gr(int n) {
    return QStringLiteral("GR%1").arg(n);
}
QString grl(int n) {
    return QStringLiteral("GRL%1").arg(n);
}

CategoryFields readSavedCategories(Connection& data) {
    CategoryFields saved;
    Recordset rs;
    rs.open(SavedCategories, data, CursorType::Static, LockType::ReadOnly);
    for (; !rs.eof(); rs.moveNext()) {
        const QString fichier = rs.value(QStringLiteral("FICHIER")).toString();
        if (saved.contains(fichier))
            continue;
        QVariantList fields;
        for (int n = 1; n <= CategoryCount; ++n)
            fields << rs.value(gr(n));
        for (int n = 1; n <= CategoryCount; ++n)
            fields << rs.value(grl(n));
        saved.insert(fichier, fields);
    }
    return saved;
}

// The categories the derivation reads: CATALIST's as they were when the first run of this
// conversion started, kept in CATATEMP until PRIXLIST is replaced.
CategoryFields saveCategories(Connection& data, ConversionObserver& observer) {
    if (!tableExists(data, SavedCategories)) {
        data.execute(QStringLiteral("SELECT * INTO %1 FROM CATALIST").arg(SavedCategories));
        observer.fileStepDone(FileStep::CategoriesSaved);
    }
    return readSavedCategories(data);
}

void buildWorkTable(Connection& data, ConversionObserver& observer) {
    deleteTable(data, WorkTable);
    observer.fileStepDone(FileStep::WorkTableDeleted);
    // A condition no row satisfies: the fields of PRIXLIST, no row.
    data.execute(QStringLiteral("SELECT * INTO PRIXTEMP FROM PRIXLIST WHERE 1 = 0"));
    observer.fileStepDone(FileStep::WorkTableCreated);
    data.execute(QStringLiteral("ALTER TABLE PRIXTEMP ADD COLUMN CATNO TEXT(254)"));
    observer.fileStepDone(FileStep::CatnoAdded);
    data.execute(QStringLiteral("INSERT INTO PRIXTEMP SELECT * FROM PRIXLIST"));
    observer.fileStepDone(FileStep::RowsCopied);
}

// The activated lists of each group code, by their 1-based place in the work table: the rows a
// filter "[CODEGRO] = 'code' AND [UTILISER]=True" shows, in the same order, found in one pass
// instead of one pass per category.
using ListsByCode = QHash<QString, QList<int>>;

ListsByCode activatedListsByCode(Recordset& work) {
    ListsByCode lists;
    const int codeField = work.fieldIndex(QStringLiteral("CODEGRO"));
    const int usedField = work.fieldIndex(QStringLiteral("UTILISER"));
    for (work.moveFirst(); !work.eof(); work.moveNext()) {
        const QVariant code = work.value(codeField);
        if (!code.isNull() && work.value(usedField).toBool())
            lists[code.toString()].append(work.absolutePosition());
    }
    return lists;
}

// Adds the catalogue to the activated lists of one group code, stopping at the first list that
// already holds it. False when no activated list has the code.
bool associateLists(Recordset& work, const ListsByCode& lists, const QString& code,
                    const QString& fichier) {
    const auto found = lists.constFind(code);
    if (found == lists.constEnd())
        return false;
    const QString entry = fichier + u';';
    const int catnoField = work.fieldIndex(QStringLiteral("CATNO"));
    for (int position : *found) {
        work.setAbsolutePosition(position);
        const QString catno = work.value(catnoField).toString();
        if (catno.contains(entry))
            break;
        work.setValue(catnoField, QString(catno + entry));
        work.update();
    }
    return true;
}

QVariant savedValue(const CategoryFields& saved, const QString& fichier, int index,
                    const QVariant& current) {
    const auto found = saved.constFind(fichier);
    return found == saved.constEnd() ? current : found->at(index);
}

// One activated catalogue: each category gets the code under which activated lists were found,
// or Null, and those lists receive the catalogue.
void deriveCategories(Recordset& catalogues, Recordset& work, const ListsByCode& lists,
                      const CategoryFields& saved) {
    const QString fichier = catalogues.value(QStringLiteral("FICHIER")).toString();
    for (int n = 1; n <= CategoryCount; ++n) {
        const QVariant suggested = savedValue(saved, fichier, n - 1, catalogues.value(gr(n)));
        const QVariant used =
            savedValue(saved, fichier, CategoryCount + n - 1, catalogues.value(grl(n)));
        if (suggested.isNull()) {
            catalogues.setValue(grl(n), QVariant());
            continue;
        }
        const QString code = (used.isNull() ? suggested : used).toString();
        const bool found = associateLists(work, lists, code, fichier);
        catalogues.setValue(grl(n), found ? QVariant(code) : QVariant());
    }
    catalogues.update();
}

int percentOf(int position, int count) {
    // A whole number as the program's conversion of a fraction gives it: halves to even.
    return count > 0 ? int(std::nearbyint(double(position) / count * 100.0)) : 0;
}

void fillCatno(Connection& data, const CategoryFields& saved, ConversionObserver& observer) {
    // The work table is the conversion's own: its rows are written once, at the end.
    Recordset work;
    work.open(QStringLiteral("PRIXTEMP.DBF"), data, CursorType::Keyset, LockType::BatchOptimistic);
    const ListsByCode lists = activatedListsByCode(work);
    Recordset catalogues;
    catalogues.open(QStringLiteral("SELECT * FROM CATALIST ORDER BY [DESC]"), data,
                    CursorType::Keyset, LockType::Optimistic);
    const int count = catalogues.recordCount();
    if (count > 0)
        catalogues.moveFirst();
    while (!catalogues.eof()) {
        if (catalogues.value(QStringLiteral("UTILISER")).toBool()) {
            deriveCategories(catalogues, work, lists, saved);
            observer.fileStepDone(FileStep::CatalogueUpdated);
        }
        observer.progress(percentOf(catalogues.absolutePosition(), count));
        observer.letEventsRun();
        catalogues.moveNext();
    }
    work.updateBatch();
    work.close();
    observer.fileStepDone(FileStep::CatnoFilled);
}

} // namespace

QString FileStepName(FileStep step) {
    switch (step) {
    case FileStep::ProgramFileSwapped:
        return QStringLiteral("program-file-swapped");
    case FileStep::WorkTableDeleted:
        return QStringLiteral("work-table-deleted");
    case FileStep::CategoriesSaved:
        return QStringLiteral("categories-saved");
    case FileStep::CategoriesDiscarded:
        return QStringLiteral("categories-discarded");
    case FileStep::WorkTableCreated:
        return QStringLiteral("work-table-created");
    case FileStep::CatnoAdded:
        return QStringLiteral("catno-added");
    case FileStep::RowsCopied:
        return QStringLiteral("rows-copied");
    case FileStep::CatalogueUpdated:
        return QStringLiteral("catalogue-updated");
    case FileStep::CatnoFilled:
        return QStringLiteral("catno-filled");
    case FileStep::TableReplaced:
        return QStringLiteral("table-replaced");
    case FileStep::CompanionsMoved:
        return QStringLiteral("companions-moved");
    case FileStep::CategoriesReleased:
        return QStringLiteral("categories-released");
    }
    return {};
}

int PrixListFieldCount(Connection& data) {
    Recordset rs;
    rs.open(QStringLiteral("SELECT TOP 1 * FROM PRIXLIST"), data, CursorType::Static,
            LockType::ReadOnly);
    return rs.fieldCount();
}

void FinishConversion(Connection& data) {
    for (const QString& table : {WorkTable, SavedCategories})
        if (tableExists(data, table))
            deleteTable(data, table);
}

void SwapProgramFile(const QString& dataDir, ConversionObserver& observer) {
    const QString pending = ResolveInstallPath(dataDir, QStringLiteral("MERCANTE.NEW"));
    if (!FileOp(QString(), pending))
        return;
    const QString program = ResolveInstallPath(dataDir, QStringLiteral("MERCANTE.EXE"));
    FileOp(QStringLiteral("DELETE"), program);
    FileOp(QStringLiteral("MOVE"), pending, program);
    observer.fileStepDone(FileStep::ProgramFileSwapped);
}

void RebuildOldTable(Connection& data, ConversionObserver& observer) {
    deleteTable(data, WorkTable);
    observer.fileStepDone(FileStep::WorkTableDeleted);
    // The next conversion derives the associations from CATALIST as it will be then.
    if (tableExists(data, SavedCategories)) {
        deleteTable(data, SavedCategories);
        observer.fileStepDone(FileStep::CategoriesDiscarded);
    }
    data.execute(RebuildStatement);
    observer.fileStepDone(FileStep::WorkTableCreated);
    replacePriceTable(data, observer);
}

void ConvertTable(Connection& data, ConversionObserver& observer) {
    const CategoryFields saved = saveCategories(data, observer);
    buildWorkTable(data, observer);
    fillCatno(data, saved, observer);
    replacePriceTable(data, observer);
    deleteTable(data, SavedCategories);
    observer.fileStepDone(FileStep::CategoriesReleased);
}

QString ProgressText(int percent) {
    return LoadText(73) + QStringLiteral("...") + QString::number(percent) + u'%';
}

} // namespace modNVConvert
