#include "listtables.h"

#include "dbase/tablewriter.h"

namespace {

FieldDef text(const char* name, int length) {
    return {QString::fromLatin1(name), 'C', length, 0};
}
FieldDef logical(const char* name) {
    return {QString::fromLatin1(name), 'L', 1, 0};
}
FieldDef date(const char* name) {
    return {QString::fromLatin1(name), 'D', 8, 0};
}
FieldDef number(const char* name, int length = 6, int decimals = 2) {
    return {QString::fromLatin1(name), 'N', length, decimals};
}

// PRIXLIST in its field order: the pane binds text box i to field i.
QList<FieldDef> prixListFields() {
    QList<FieldDef> fields = {logical("UTILISER"),   text("DESC", 40),    text("FICHIER", 8),
                              date("DATEEFF"),       date("DATESTK"),     text("CODEGRO", 4),
                              logical("PASOBLIGER"), text("CODENVC", 3),  text("CODEUNI", 3),
                              text("CODEACK", 3),    text("CODEUAP", 3),  number("COUTDE", 1, 0),
                              number("COUTPCT"),     number("PCT1"),      number("PCT2"),
                              number("PCT3"),        text("DEPARTEM", 3), logical("CH_DESC1"),
                              logical("CH_DESC2"),   logical("CH_COUT"),  text("FOURNIS", 25)};
    for (int n = 1; n <= 10; ++n) {
        fields << FieldDef{QStringLiteral("SGR%1").arg(n), 'C', 9, 0}
               << FieldDef{QStringLiteral("SGR%1PCT").arg(n), 'N', 6, 2};
    }
    fields << date("DATEMISE") << logical("PLUSDISPO") << logical("LFAMILLE")
           << text("FICFAMILLE", 8) << text("CATNO", 254);
    return fields;
}

QVariant dateValue(const std::optional<QDate>& d) {
    return d ? QVariant(*d) : QVariant();
}
QVariant textValue(const QString& s) {
    return s.isEmpty() ? QVariant() : QVariant(s);
}

} // namespace

void WritePrixList(const QString& directory, const QList<ListRow>& rows) {
    NewTable table;
    table.fields = prixListFields();
    for (const ListRow& r : rows) {
        QVariantList values = {r.utiliser, r.desc, r.fichier, dateValue(r.dateEff)};
        values << dateValue(r.dateStk) << textValue(r.codeGro) << r.pasObliger;
        for (const QString& code : r.codes)
            values << textValue(code);
        values << r.coutDe;
        values.resize(table.fields.size());
        values[16] = textValue(r.departem);
        values[17] = true; // CH_DESC1, CH_DESC2, CH_COUT
        values[18] = false;
        values[19] = true;
        values[20] = textValue(r.fournis);
        values[44] = textValue(r.ficFamille);
        values[45] = textValue(r.catNo);
        table.rows << values;
    }
    writeNewTable(directory + QStringLiteral("/PRIXLIST.DBF"), table);
}

void WriteCataList(const QString& directory, const QList<CatalogueRow>& rows) {
    NewTable table;
    table.fields = {text("FICHIER", 3), text("DESC", 40), logical("UTILISER"), date("DATESTK"),
                    date("DATEEFF")};
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
    table.fields = {text("CODEP", 3), text("DESCR", 30)};
    for (int n = 1; n <= count; ++n)
        table.rows << QVariantList{QStringLiteral("%1").arg(n, 2, 10, QLatin1Char('0')),
                                   QStringLiteral("Département %1").arg(n)};
    writeNewTable(directory + QStringLiteral("/DEPART.DBF"), table);
}
