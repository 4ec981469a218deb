#include "democontent.h"

#include "arjarchive.h"
#include "demodata.h"
#include "demotables.h"

#include "app/version.h"
#include "dbase/connection.h"
#include "dbase/recordset.h"
#include "dbase/tablewriter.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <stdexcept>

namespace {

struct Item {
    QString fichier;
    QString desc;
};

void writeFile(const QString& path, const QByteArray& content) {
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        throw std::runtime_error("cannot write " + path.toStdString());
}

QList<Item> items(Connection& connection, const QString& table) {
    Recordset rs;
    rs.open(table, connection, CursorType::Static, LockType::ReadOnly);
    QList<Item> all;
    for (rs.moveFirst(); !rs.eof(); rs.moveNext())
        if (!rs.value(QStringLiteral("FICHIER")).isNull())
            all << Item{rs.value(QStringLiteral("FICHIER")).toString().trimmed(),
                        rs.value(QStringLiteral("DESC")).toString()};
    return all;
}

// The program codes of NVAPPEL's first row that name a package: P_2 and P_7 for Partdex, P_3 and
// P_8 for Ledgermaker.
QStringList programCodes(const QString& prgPath, const QStringList& fields) {
    Connection connection;
    connection.open(prgPath);
    Recordset rs;
    rs.open(QStringLiteral("NVAPPEL"), connection, CursorType::Static, LockType::ReadOnly);
    QStringList codes;
    rs.moveFirst();
    for (const QString& field : fields)
        if (!rs.eof() && !rs.value(field).toString().trimmed().isEmpty())
            codes << rs.value(field).toString().trimmed();
    return codes;
}

QByteArray manifest(const QString& fichier) {
    return "FICHIER=" + fichier.toLatin1() + "\r\n";
}

void writeListArchives(const QString& content, const QList<Item>& lists) {
    QDir().mkpath(content + QStringLiteral("/lists"));
    for (const Item& list : lists) {
        const QByteArray prices = "PIECE;PRIX\r\n" + list.fichier.toLatin1() + "-001;12.50\r\n" +
                                  list.fichier.toLatin1() + "-002;7.25\r\n";
        CreateArjArchive(content + QStringLiteral("/lists/") + list.fichier +
                             QStringLiteral(".ARJ"),
                         {{QStringLiteral("LISTE.INF"), manifest(list.fichier)},
                          {list.fichier + QStringLiteral(".PRX"), prices}});
    }
}

void writeCatalogueArchives(const QString& content, const QList<Item>& catalogues) {
    for (const Item& catalogue : catalogues) {
        const QString dir = content + QStringLiteral("/catalogues/") + catalogue.fichier;
        QDir().mkpath(dir);
        CreateArjArchive(dir + QStringLiteral("/CAT.ARJ"),
                         {{QStringLiteral("CATALOG.INF"), manifest(catalogue.fichier)},
                          {catalogue.fichier + QStringLiteral(".IDX"), catalogue.desc.toUtf8()}});
        CreateArjArchive(dir + QStringLiteral("/CATA.ARJ"),
                         {{catalogue.fichier + QStringLiteral(".CAT"),
                           "Pages du catalogue " + catalogue.desc.toUtf8() + "\r\n"}});
    }
}

void writePackages(const QString& dir, const QStringList& codes, const QString& version) {
    QDir().mkpath(dir);
    for (const QString& code : codes)
        CreateArjArchive(
            dir + u'/' + code + QStringLiteral(".ARJ"),
            {{QStringLiteral("VERSION"), version.toLatin1() + "\r\n"},
             {code + QStringLiteral(".TXT"), "Programme " + code.toLatin1() + "\r\n"}});
}

// The highest newsletter number of the installation's index.
int lastNewsletter(const QString& infoPath) {
    Connection connection;
    connection.open(infoPath);
    Recordset rs;
    rs.open(QStringLiteral("NVINDEX"), connection, CursorType::Static, LockType::ReadOnly);
    int last = 0;
    for (rs.moveFirst(); !rs.eof(); rs.moveNext())
        last = qMax(last, rs.value(QStringLiteral("NUMERO")).toString().toInt());
    return last;
}

QVariantList newsletter(int number, const QString& advertiser, const QDate& date,
                        const QString& subject, const QString& text) {
    return {QStringLiteral("%1").arg(number, 6, 10, QChar(u'0')),
            advertiser,
            date,
            QStringLiteral("Nouvelles"),
            subject,
            QStringLiteral("NV%1.TXT").arg(number, 4, 10, QChar(u'0')),
            QStringLiteral("FR"),
            1,
            advertiser,
            subject,
            text};
}

void writeIndexArchive(const QString& content, const QString& infoPath, const QDate& today) {
    const int first = lastNewsletter(infoPath) + 1;
    NewTable index;
    index.fields = NewsletterFields();
    index.rows = {
        newsletter(first, QStringLiteral("Norvale Systems"), today,
                   QStringLiteral("Nouveautés de la mise à jour"),
                   QStringLiteral("{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}{\\colortbl;\\red0\\green0"
                                  "\\blue160;}\\f0\\fs24{\\b\\cf1 Mise \\'e0 jour re\\'e7ue}\\par "
                                  "Les listes de prix et les catalogues sont \\i \\'e0 jour\\i0 "
                                  ".\\par}")),
        newsletter(first + 1, QStringLiteral("NGK"), today,
                   QStringLiteral("Nouvelles bougies d'allumage"),
                   QStringLiteral("NGK annonce une nouvelle gamme de bougies d'allumage.")),
        newsletter(first + 2, QStringLiteral("NGK"), today.addDays(-1),
                   QStringLiteral("Prix du fil d'allumage"),
                   QStringLiteral("Les prix des fils d'allumage changent le mois prochain.")),
    };
    QTemporaryDir staging;
    if (!staging.isValid())
        throw std::runtime_error("no temporary directory");
    writeNewTable(staging.filePath(QStringLiteral("NVINDEX.DBF")), index);
    QFile table(staging.filePath(QStringLiteral("NVINDEX.DBF")));
    if (!table.open(QIODevice::ReadOnly))
        throw std::runtime_error("cannot read the new index");
    CreateArjArchive(content + QStringLiteral("/NVINFO.ARJ"),
                     {{QStringLiteral("NVINDEX.DBF"), table.readAll()},
                      {QStringLiteral("NV%1.TXT").arg(first, 4, 10, QChar(u'0')), "Bulletin\r\n"}});
}

// A version of the program newer than the running one, so that every session offers it.
QString newerProgramVersion() {
    const ProgramVersion v = CurrentVersion();
    return QStringLiteral("%1.%2.%3").arg(v.major).arg(v.minor).arg(v.revision + 1);
}

// The demo updater, signed with the demo key when the program was built: the demo and test
// builds accept it, and when started it only leaves a line in UPDATE.LOG beside itself.
QByteArray signedDemoUpdater() {
    QFile updater(QStringLiteral(":/demo/UPDATE.EXE"));
    if (!updater.open(QIODevice::ReadOnly))
        throw std::runtime_error("the signed demo updater is missing from demo-install");
    return updater.readAll();
}

} // namespace

void writeDemoContent(const QString& contentDir, const QString& root, const QDate& today) {
    const QDir install(root);
    const QString data = install.filePath(QStringLiteral("NVNV"));
    const QString prg = install.filePath(QStringLiteral("PRG"));
    const QString info = install.filePath(QStringLiteral("NVINFO"));
    QDir().mkpath(contentDir);

    const QString program = newerProgramVersion();
    writeFile(contentDir + QStringLiteral("/VERSIONS"),
              (DemoPartdexOffered + u';' + DemoLedgermakerOffered + u';' + program).toLatin1() +
                  "\n");
    writeFile(contentDir + QStringLiteral("/NVBATI.DAT"),
              "Norvale Systems - serveur de demonstration\r\n" +
                  today.toString(Qt::ISODate).toLatin1() + "\r\n");
    writeFile(contentDir + QStringLiteral("/UPDATE.EXE"), signedDemoUpdater());

    Connection connection;
    connection.open(data);
    writeListArchives(contentDir, items(connection, QStringLiteral("PRIXLIST")));
    writeCatalogueArchives(contentDir, items(connection, QStringLiteral("CATALIST")));
    writeIndexArchive(contentDir, info, today);
    writePackages(contentDir + QStringLiteral("/partdex"),
                  programCodes(prg, {QStringLiteral("P_2"), QStringLiteral("P_7")}),
                  DemoPartdexOffered);
    writePackages(contentDir + QStringLiteral("/ledgermaker"),
                  programCodes(prg, {QStringLiteral("P_3"), QStringLiteral("P_8")}),
                  DemoLedgermakerOffered);
}
