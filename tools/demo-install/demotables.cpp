#include "demotables.h"

#include "demodata.h"

#include "dbase/tablewriter.h"

#include <QDir>
#include <QMap>
#include <QSet>

namespace {

constexpr auto text = &FieldDef::text;
constexpr auto date = &FieldDef::date;
constexpr auto logical = &FieldDef::logical;
FieldDef number(const QString& name, int length, int decimals = 0) {
    return FieldDef::number(name, length, decimals);
}

// PRIXLIST in its order; the conversion relies on the first 45 and adds CATNO last.
QList<FieldDef> prixListFieldsInOrder(bool withCatno) {
    QList<FieldDef> f = {logical("UTILISER"),     text("DESC", 40),     text("FICHIER", 8),
                         date("DATEEFF"),         date("DATESTK"),      text("CODEGRO", 4),
                         logical("PASOBLIGER"),   text("CODENVC", 4),   text("CODEUNI", 4),
                         text("CODEACK", 4),      text("CODEUAP", 4),   number("COUTDE", 1),
                         number("COUTPCT", 6, 2), number("PCT1", 6, 2), number("PCT2", 6, 2),
                         number("PCT3", 6, 2),    text("DEPARTEM", 3),  logical("CH_DESC1"),
                         logical("CH_DESC2"),     logical("CH_COUT"),   text("FOURNIS", 25)};
    for (int n = 1; n <= 10; ++n)
        f << text(QStringLiteral("SGR%1").arg(n), 9)
          << number(QStringLiteral("SGR%1PCT").arg(n), 6, 2);
    f << date("DATEMISE") << logical("PLUSDISPO") << logical("LFAMILLE") << text("FICFAMILLE", 8);
    if (withCatno)
        f << text("CATNO", 254);
    return f;
}

struct Supplier {
    const char* name;
    const char* line;
};

// Suppliers and product lines of a parts counter; each pair is one price list.
const Supplier Suppliers[] = {
    {"ACDELCO", "Batteries"},
    {"BOSCH", "Wiper blades"},
    {"CHAMPION", "Spark plugs"},
    {"DAYCO", "Timing belts"},
    {"DORMAN", "Hardware"},
    {"FEL-PRO", "Gaskets"},
    {"GATES", "Hoses"},
    {"MONROE", "Shock absorbers"},
    {"MOOG", "Steering parts"},
    {"NGK", "Ignition wires"},
    {"SKF", "Wheel bearings"},
    {"TIMKEN", "Seals"},
    {"WIX", "Oil filters"},
    {"WAGNER", "Brake pads"},
    {"RAYBESTOS", "Rotors"},
    {"DENSO", "Oxygen sensors"},
    {"CENTRIC", "Brake drums"},
    {"AIMCO", "Brake shoes"},
    {"STANDARD", "Ignition coils"},
    {"FRAM", "Air filters"},
    {"ACDELCO", "Starters"},
    {"BOSCH", "Fuel pumps"},
    {"CHAMPION", "Glow plugs"},
    {"DAYCO", "Serpentine belts"},
    {"DORMAN", "Door handles"},
    {"FEL-PRO", "Head bolts"},
    {"GATES", "Water pumps"},
    {"MONROE", "Struts"},
    {"MOOG", "Ball joints"},
    {"NGK", "Sensors"},
    {"SKF", "Hub assemblies"},
    {"TIMKEN", "Axle bearings"},
    {"WIX", "Fuel filters"},
    {"WAGNER", "Brake hardware"},
    {"RAYBESTOS", "Calipers"},
    {"DENSO", "Radiators"},
    {"CENTRIC", "Brake lines"},
    {"AIMCO", "Clutch kits"},
    {"STANDARD", "Switches"},
    {"FRAM", "Cabin filters"},
    {"ACDELCO", "Alternators"},
    {"BOSCH", "Injectors"},
    {"GATES", "Tensioners"},
    {"MONROE", "Springs"},
    {"MOOG", "Tie rod ends"},
    {"SKF", "CV joints"},
    {"WIX", "Hydraulic filters"},
    {"WAGNER", "Lamps"},
    {"DENSO", "A/C compressors"},
    {"STANDARD", "Wire sets"},
    {"DORMAN", "Mirrors"},
    {"DAYCO", "Pulleys"},
    {"NGK", "Spark plugs, racing"},
    {"TIMKEN", "Trailer parts"},
    {"CHAMPION", "Small engine"},
    {"FEL-PRO", "Exhaust gaskets"},
    {"CENTRIC", "Performance"},
    {"AIMCO", "Flywheels"},
    {"FRAM", "Breathers"},
    {"RAYBESTOS", "Wheel cylinders"},
};
constexpr int ListCount = int(std::size(Suppliers));

enum class ListState { UpToDate, ToUpdate, Upcoming, Inactive };

// Spread so that the lists sharing a group code are in different states.
ListState stateOf(int i) {
    return ListState((i + i / 20) % 4);
}

// Group code of list i: the codes of the demo parts file, shared by several lists.
QString groupCode(int i) {
    return DemoGroupCodes[i % DemoGroupCodes.size()];
}

struct Catalogue {
    const char* code;
    const char* desc;
    bool used;
    bool toUpdate;
    QList<int> categories; // indexes of DemoGroupCodes suggested by the catalogue
};

const QList<Catalogue> Catalogues = {
    {"AUT", "Automobile", true, false, {0, 1, 2, 3, 4}},
    {"CAM", "Camions lourds", true, true, {5, 6, 7}},
    {"MAR", "Marine", true, false, {8, 9}},
    {"IND", "Industriel", false, false, {10, 11, 12}},
    {"AG", "Agricole", true, false, {12, 13, 14, 15}},
    {"PL", "Petits moteurs", true, true, {16, 17}},
    {"HD", "Service intensif", false, false, {18, 19}},
    {"V", "Motocyclettes", true, false, {2, 9, 19}},
    {"REC", "Véhicules récréatifs", true, false, {3, 8, 14, 18}},
    {"OUT", "Outillage", false, false, {4, 11}},
    {"PEI", "Peinture et carrosserie", true, true, {6, 13}},
    {"ELE", "Électricité", true, false, {1, 7, 10, 15, 16, 17, 19, 0, 5}},
};

QSet<QString> activatedCodes() {
    QSet<QString> codes;
    for (int i = 0; i < ListCount; ++i)
        if (stateOf(i) != ListState::Inactive)
            codes << groupCode(i);
    return codes;
}

// A category is in use (GRLn) when an activated list carries its code, as the conversion
// leaves it; the lists with that code hold the catalogue in CATNO.
QMap<QString, QString> catnoByCode() {
    const QSet<QString> active = activatedCodes();
    QMap<QString, QString> catno;
    for (const Catalogue& c : Catalogues) {
        if (!c.used)
            continue;
        QSet<QString> seen;
        for (int k : c.categories) {
            const QString code = DemoGroupCodes[k];
            if (active.contains(code) && !seen.contains(code))
                catno[code] += QString::fromUtf8(c.code) + QLatin1Char(';');
            seen << code;
        }
    }
    return catno;
}

QVariantList listRow(int i, const QDate& today, const QMap<QString, QString>& catno) {
    const Supplier& s = Suppliers[i];
    const ListState state = stateOf(i);
    const bool active = state != ListState::Inactive;
    const QString code = groupCode(i);
    QDate eff = today.addDays(-(10 + i));
    QVariant stk = eff;
    if (state == ListState::ToUpdate)
        stk = i % 8 == 1 ? QVariant() : QVariant(eff.addMonths(-1));
    if (state == ListState::Upcoming)
        eff = today.addDays(3 + i);
    QVariantList row = {
        active,
        QStringLiteral("%1 - %2").arg(QString::fromLatin1(s.name), QString::fromLatin1(s.line)),
        QStringLiteral("%1%2")
            .arg(QString::fromLatin1(s.name).left(3).remove('-'))
            .arg(i, 2, 10, QChar('0')),
        eff,
        stk,
        active ? QVariant(code) : QVariant(),
        i % 9 == 4,
        code,
        i % 3 == 0 ? QVariant(code) : QVariant(),
        QVariant(),
        QVariant(),
        active ? 3 : 0,
        active ? QVariant(5.0 + i % 7) : QVariant(),
        active ? QVariant(10.0) : QVariant(),
        active ? QVariant(12.5) : QVariant(),
        active ? QVariant(15.0) : QVariant(),
        active ? QVariant(QString(QChar('A' + i % 15))) : QVariant(),
        active,
        active,
        active,
        active ? QVariant(QString::fromLatin1(s.name)) : QVariant()};
    for (int n = 1; n <= 10; ++n) {
        const bool used = active && n <= 1 + i % 4;
        row << (used ? QVariant(QStringLiteral("%1%2").arg(code).arg(n)) : QVariant())
            << (used ? QVariant(2.5 * n) : QVariant());
    }
    row << today.addDays(-(40 + i)) << (i % 5 == 0) << (active && i % 6 == 0)
        << (active && i % 6 == 0 ? QVariant(QStringLiteral("MAT%1").arg(i, 3, 10, QChar('0')))
                                 : QVariant());
    row << (active && catno.contains(code) ? QVariant(catno[code]) : QVariant());
    return row;
}

NewTable prixList(const QDate& today, bool withCatno) {
    NewTable t;
    t.fields = prixListFieldsInOrder(withCatno);
    const QMap<QString, QString> catno = catnoByCode();
    for (int i = 0; i < ListCount; ++i) {
        QVariantList row = listRow(i, today, catno);
        if (!withCatno)
            row.removeLast();
        t.rows << row;
    }
    return t;
}

NewTable cataList(const QDate& today) {
    NewTable t;
    t.fields = {text("FICHIER", 3), text("DESC", 40), logical("UTILISER"), date("DATESTK"),
                date("DATEEFF")};
    for (const char* family : {"GR", "GRD", "GRL"})
        for (int n = 1; n <= 9; ++n)
            t.fields << text(QStringLiteral("%1%2").arg(QLatin1String(family)).arg(n),
                             QLatin1String(family) == QLatin1String("GRD") ? 25 : 4);
    const QSet<QString> active = activatedCodes();
    for (const Catalogue& c : Catalogues) {
        const QDate eff = today.addDays(-30);
        QVariantList row = {QString::fromUtf8(c.code), QString::fromUtf8(c.desc), c.used,
                            c.toUpdate ? eff.addDays(-60) : eff, eff};
        QVariantList gr, grd, grl;
        for (int n = 0; n < 9; ++n) {
            const bool has = n < c.categories.size();
            const QString code = has ? DemoGroupCodes[c.categories[n]] : QString();
            gr << (has ? QVariant(code) : QVariant());
            grd << (has ? QVariant(QStringLiteral("Catégorie %1 %2").arg(n + 1).arg(code))
                        : QVariant());
            grl << (has && c.used && active.contains(code) ? QVariant(code) : QVariant());
        }
        t.rows << (row + gr + grd + grl);
    }
    return t;
}

NewTable depart() {
    static const char* names[] = {"Accessoires", "Batteries",       "Carrosserie", "Diesel",
                                  "Échappement", "Freins",          "Garage",      "Huiles",
                                  "Injection",   "Jantes et pneus", "Klaxons",     "Lubrifiants",
                                  "Moteur",      "Navigation",      "Outillage"};
    NewTable t;
    t.fields = {text("CODEP", 3), text("DESCR", 30)};
    for (int i = 0; i < 15; ++i)
        t.rows << QVariantList{QString(QChar('A' + i)), QString::fromUtf8(names[i])};
    return t;
}

NewTable oneColumn(const char* field, int length, const QStringList& values) {
    NewTable t;
    t.fields = {text(QString::fromLatin1(field), length)};
    for (const QString& v : values)
        t.rows << QVariantList{v};
    return t;
}

NewTable nvAppel() {
    NewTable t;
    for (int n = 1; n <= 8; ++n)
        t.fields << text(QStringLiteral("P_%1").arg(n), 8);
    t.rows << QVariantList{"DEMO", "PDX0401", "LGM0401", "", "", "", "PDX0402", "LGM0402"};
    return t;
}

} // namespace

QList<FieldDef> NewsletterFields() {
    return {text("NUMERO", 6),  text("ANNONCEUR", 30), date("DATEPUB"),   text("CATEGORIE", 20),
            text("SUJET", 60),  text("FICHIER", 12),   text("LANGUE", 2), number("PAGES", 3),
            text("AUTEUR", 30), text("RESUME", 80),    text("TEXTE", 254)};
}

namespace {

NewTable nvIndex(const QDate& today) {
    NewTable t;
    t.fields = NewsletterFields();
    const QStringList advertisers = {"Norvale Systems", "BOSCH", "GATES", "WIX"};
    int n = 0;
    for (const QString& a : advertisers)
        for (int k = 1; k <= 3; ++k, ++n)
            t.rows << QVariantList{QStringLiteral("%1").arg(n + 1, 6, 10, QChar('0')),
                                   a,
                                   today.addDays(-7 * n),
                                   "Nouvelles",
                                   QStringLiteral("Bulletin %1 de %2").arg(k).arg(a),
                                   QStringLiteral("NV%1.TXT").arg(n + 1, 4, 10, QChar('0')),
                                   "FR",
                                   k,
                                   a,
                                   QStringLiteral("Résumé du bulletin %1").arg(k),
                                   QStringLiteral("Texte du bulletin %1 de %2 : nouveaux "
                                                  "produits, prix et disponibilités.")
                                       .arg(k)
                                       .arg(a)};
    return t;
}

} // namespace

void writeDemoTables(const QString& root, const QDate& today) {
    const QDir dir(root);
    for (const char* sub : {"PRG", "NVNV", "NVGL", "NVINFO"})
        dir.mkpath(QLatin1String(sub));
    const QString data = dir.filePath(QStringLiteral("NVNV/"));
    const QString prg = dir.filePath(QStringLiteral("PRG/"));
    writeNewTable(data + "PRIXLIST.DBF", prixList(today, true));
    writeNewTable(data + "PRIXLIST.OLD-FORM.DBF", prixList(today, false));
    writeNewTable(data + "CATALIST.DBF", cataList(today));
    writeNewTable(data + "PARAPROG.DBF",
                  oneColumn("PROGRAM", 40, {"PARTDEX 5.2", "MERCANTEL 2004.3"}));
    writeNewTable(prg + "DEPART.DBF", depart());
    writeNewTable(prg + "NVVERS.DBF",
                  oneColumn("NVVERSION", 20, {DemoPartdexInstalled, DemoLedgermakerInstalled}));
    writeNewTable(prg + "NVAPPEL.DBF", nvAppel());
    writeNewTable(dir.filePath(QStringLiteral("NVINFO/NVINDEX.DBF")), nvIndex(today));
}

QList<FieldDef> PrixListFields(bool withCatno) {
    return prixListFieldsInOrder(withCatno);
}
