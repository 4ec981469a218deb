#include "oldtables.h"
#include "demotables.h"

#include "dbase/tablewriter.h"

#include <QDate>
#include <QVariant>

namespace {

QVariant nullable(const QString& value) {
    return value.isEmpty() ? QVariant() : QVariant(value);
}

// A value of the field's own in the row i.
QVariant ownValue(const FieldDef& field, int index, int i) {
    switch (field.type) {
    case 'D':
        return QDate(2024, 1, 1).addDays((i + index * 40) % 700);
    case 'L':
        return (i + index) % 3 == 0;
    case 'N':
        return double((i + index) % 10);
    default:
        return QStringLiteral("%1-%2").arg(index).arg(i).left(field.length);
    }
}

QVariantList oldListRow(const QList<FieldDef>& fields, const OldList& list, int i) {
    QVariantList row = {list.utiliser, list.desc.isEmpty() ? list.fichier : list.desc,
                        list.fichier};
    for (int f = int(row.size()); f < fields.size(); ++f)
        row << ownValue(fields[f], f, i);
    row[5] = nullable(list.codeGro); // CODEGRO
    return row;
}

QString codeOf(int i) {
    return QStringLiteral("G%1").arg(i, 3, 10, QLatin1Char('0'));
}

} // namespace

void WriteOldPrixList(const QString& dataDir, const QList<OldList>& lists) {
    NewTable table;
    table.fields = PrixListFields(false);
    for (int i = 0; i < lists.size(); ++i)
        table.rows << oldListRow(table.fields, lists[i], i);
    writeNewTable(dataDir + QStringLiteral("PRIXLIST.DBF"), table);
}

void WriteCataList(const QString& dataDir, const QList<Catalogue>& catalogues) {
    NewTable table;
    table.fields = {FieldDef::text("FICHIER", 8), FieldDef::text("DESC", 40),
                    FieldDef::logical("UTILISER"), FieldDef::date("DATESTK"),
                    FieldDef::date("DATEEFF")};
    for (const char* family : {"GR", "GRL"})
        for (int n = 1; n <= 9; ++n)
            table.fields << FieldDef::text(QLatin1String(family) + QString::number(n), 4);
    for (const Catalogue& c : catalogues) {
        QVariantList row = {c.fichier, c.desc.isEmpty() ? c.fichier : c.desc, c.utiliser,
                            QDate(2025, 6, 1), QDate(2025, 7, 1)};
        for (const QString& code : c.gr)
            row << nullable(code);
        for (const QString& code : c.grl)
            row << nullable(code);
        table.rows << row;
    }
    writeNewTable(dataDir + QStringLiteral("CATALIST.DBF"), table);
}

QList<OldList> ManyLists(int count, int codes) {
    QList<OldList> lists;
    for (int i = 0; i < count; ++i)
        lists.append({QStringLiteral("L%1").arg(i, 6, 10, QLatin1Char('0')), codeOf(i % codes),
                      i % 5 != 0, QStringLiteral("LIST %1").arg((i * 7919) % count)});
    return lists;
}

QList<Catalogue> ManyCatalogues(int count, int codes) {
    QList<Catalogue> catalogues;
    for (int i = 0; i < count; ++i) {
        Catalogue c{QStringLiteral("C%1").arg(i, 4, 10, QLatin1Char('0')), i % 6 != 0};
        for (int n = 0; n < 9; ++n) {
            if ((i + n) % 4 == 3)
                continue;                                    // an unused category
            c.gr[n] = codeOf((i * 3 + n * 5) % (codes + 3)); // a few codes no list has
            if (n % 3 == 0)
                c.grl[n] = codeOf((i + n) % codes);
        }
        catalogues.append(c);
    }
    return catalogues;
}

std::string FirstDifference(const QStringList& a, const QStringList& b) {
    const QString none = QStringLiteral("<none>");
    for (qsizetype i = 0; i < std::max(a.size(), b.size()); ++i)
        if (a.value(i, none) != b.value(i, none))
            return QStringLiteral("line %1: %2 / %3")
                .arg(i)
                .arg(a.value(i, none), b.value(i, none))
                .toStdString();
    return {};
}
