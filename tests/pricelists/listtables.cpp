#include "listtables.h"

#include "data/prixfields.h"
#include "dbase/tablewriter.h"
#include "demotables.h"

namespace {

QVariant dateValue(const std::optional<QDate>& d) {
    return d ? QVariant(*d) : QVariant();
}
QVariant textValue(const QString& s) {
    return s.isEmpty() ? QVariant() : QVariant(s);
}

} // namespace

void WritePrixList(const QString& directory, const QList<ListRow>& rows) {
    NewTable table;
    table.fields = PrixListFields(true);
    for (const ListRow& r : rows) {
        QVariantList values = {r.utiliser, r.desc, r.fichier, dateValue(r.dateEff)};
        values << dateValue(r.dateStk) << textValue(r.codeGro) << r.pasObliger;
        for (const QString& code : r.codes)
            values << textValue(code);
        values << r.coutDe;
        values.resize(table.fields.size());
        values[PrixField::Departem] = textValue(r.departem);
        values[PrixField::ChDesc1] = true; // CH_DESC1, CH_DESC2, CH_COUT
        values[PrixField::ChDesc1 + 1] = false;
        values[PrixField::ChDesc1 + 2] = true;
        values[PrixField::Fournis] = textValue(r.fournis);
        values[PrixField::FicFamille] = textValue(r.ficFamille);
        values[PrixField::CatNo] = textValue(r.catNo);
        table.rows << values;
    }
    writeNewTable(directory + QStringLiteral("/PRIXLIST.DBF"), table);
}

void WriteCataList(const QString& directory, const QList<CatalogueRow>& rows) {
    NewTable table;
    table.fields = {FieldDef::text("FICHIER", 3), FieldDef::text("DESC", 40),
                    FieldDef::logical("UTILISER"), FieldDef::date("DATESTK"),
                    FieldDef::date("DATEEFF")};
    for (const char* family : {"GR", "GRD", "GRL"})
        for (int n = 1; n <= 9; ++n)
            table.fields << FieldDef{QLatin1String(family) + QString::number(n), 'C',
                                     QLatin1String(family) == QLatin1String("GRD") ? 25 : 4, 0};
    for (const CatalogueRow& r : rows) {
        QVariantList values{r.fichier, r.desc, r.utiliser, dateValue(r.dateStk),
                            dateValue(r.dateEff)};
        for (const auto* family : {&r.gr, &r.grd, &r.grl})
            for (const QString& value : *family)
                values << textValue(value);
        table.rows << values;
    }
    writeNewTable(directory + QStringLiteral("/CATALIST.DBF"), table);
}

void WriteDepart(const QString& directory, int count) {
    NewTable table;
    table.fields = {FieldDef::text("CODEP", 3), FieldDef::text("DESCR", 30)};
    for (int n = 1; n <= count; ++n)
        table.rows << QVariantList{QStringLiteral("%1").arg(n, 2, 10, QLatin1Char('0')),
                                   QStringLiteral("Département %1").arg(n)};
    writeNewTable(directory + QStringLiteral("/DEPART.DBF"), table);
}
