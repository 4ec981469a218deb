#include "oldtables.h"
#include "demotables.h"


#include "dbase/connection.h"
#include "dbase/recordset.h"
#include "dbase/tablewriter.h"

#include <QDate>
#include <QVariant>

namespace {

QVariantList oldListRow(const OldList& list, int i) {
    const QDate day = QDate(2024, 1, 1).addDays(i % 700);
    QVariantList row = {list.utiliser,
                        list.desc.isEmpty() ? list.fichier : list.desc,
                        list.fichier,
                        day,
                        day.addDays(30),
                        list.codeGro.isEmpty() ? QVariant() : QVariant(list.codeGro),
                        i % 3 == 0,
                        QStringLiteral("NV%1").arg(i % 10),
                        QStringLiteral("U%1").arg(i % 7),
                        QStringLiteral("K%1").arg(i % 5),
                        QStringLiteral("P%1").arg(i % 4),
                        double(1 + i % 3),
                        12.5,
                        1.25 + i % 9,
                        2.5,
                        QVariant(),
                        QStringLiteral("%1").arg(1 + i % 13, 2, 10, QLatin1Char('0')),
                        true,
                        i % 2 == 0,
                        false,
                        QStringLiteral("SUPPLIER %1").arg(i)};
    for (int n = 1; n <= 10; ++n)
        row << QStringLiteral("SG%1-%2").arg(n).arg(i % 100) << double(n) + 0.5;
    row << day.addDays(-10) << (i % 4 == 0) << false << QStringLiteral("MAT%1").arg(i % 50);
    return row;
}

QVariant nullable(const QString& value) {
    return value.isEmpty() ? QVariant() : QVariant(value);
}

QString cellText(const QVariant& value) {
    if (value.isNull())
        return QStringLiteral("<null>");
    if (value.typeId() == QMetaType::QDate)
        return value.toDate().toString(Qt::ISODate);
    return value.toString();
}

QString codeOf(int i) {
    return QStringLiteral("G%1").arg(i, 3, 10, QLatin1Char('0'));
}

} // namespace

void WriteOldPrixList(const QString& dataDir, const QList<OldList>& lists) {
    NewTable table;
    table.fields = PrixListFields(false);
    for (int i = 0; i < lists.size(); ++i)
        table.rows << oldListRow(lists[i], i);
    writeNewTable(dataDir + QStringLiteral("PRIXLIST.DBF"), table);
}

void WriteCataList(const QString& dataDir, const QList<Catalogue>& catalogues) {
    NewTable table;
    table.fields = {FieldDef::text("FICHIER", 8), FieldDef::text("DESC", 40),
                    FieldDef::logical("UTILISER"), FieldDef::date("DATESTK"),
                    FieldDef::date("DATEEFF")};
    for (const char* family : {"GR", "GRD", "GRL"})
        for (int n = 1; n <= 9; ++n)
            table.fields << FieldDef::text(QLatin1String(family) + QString::number(n),
                                           family[2] == 'D' ? 30 : 4);
    for (const Catalogue& c : catalogues) {
        QVariantList row = {c.fichier, c.desc.isEmpty() ? c.fichier : c.desc, c.utiliser,
                            QDate(2025, 6, 1), QDate(2025, 7, 1)};
        for (const QString& code : c.gr)
            row << nullable(code);
        for (int n = 1; n <= 9; ++n)
            row << (c.gr[n - 1].isEmpty() ? QVariant() : QVariant(QStringLiteral("Category")));
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
        Catalogue c(QStringLiteral("C%1").arg(i, 4, 10, QLatin1Char('0')), i % 6 != 0);
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

QStringList TableText(Connection& data, const QString& table) {
    Recordset rs;
    rs.open(table, data, CursorType::Static, LockType::ReadOnly);
    QStringList lines;
    QStringList names;
    for (int i = 0; i < rs.fieldCount(); ++i)
        names << rs.fieldName(i);
    lines << names.join(u'|');
    for (; !rs.eof(); rs.moveNext()) {
        QStringList cells;
        for (int i = 0; i < rs.fieldCount(); ++i)
            cells << cellText(rs.value(i));
        lines << cells.join(u'|');
    }
    return lines;
}

QStringList CatnoByList(Connection& data) {
    Recordset rs;
    rs.open(QStringLiteral("SELECT FICHIER, CATNO FROM PRIXLIST"), data, CursorType::Static,
            LockType::ReadOnly);
    QStringList lines;
    for (; !rs.eof(); rs.moveNext())
        lines << rs.value(0).toString() + u'=' + rs.value(1).toString();
    return lines;
}

QStringList UsedCodes(Connection& data) {
    Recordset rs;
    rs.open(QStringLiteral("CATALIST"), data, CursorType::Static, LockType::ReadOnly);
    QStringList lines;
    for (; !rs.eof(); rs.moveNext()) {
        QStringList codes;
        for (int n = 1; n <= 9; ++n)
            codes << rs.value(QStringLiteral("GRL%1").arg(n)).toString();
        lines << rs.value(QStringLiteral("FICHIER")).toString() + u'=' + codes.join(u',');
    }
    return lines;
}
