// The stand-in service program installing what the downloads leave: each operation's effect on
// the tables and directories, archives that do not fit their item, and damaged archives.
#include "serviceinstall.h"

#include "dbase/connection.h"
#include "dbase/recordset.h"
#include "dbase/tablewriter.h"

using ServiceJobsTest = ServiceInstallTest;

TEST_F(ServiceJobsTest, AListArchiveMakesTheListAtItsPositionUpToDate) {
    const ItemRow list = toUpdate("PRIXLIST");
    const QString position = QString::number(list.position);
    QStringList expected = stockDates("PRIXLIST");
    expected[list.position - 1] = list.dateEff;
    CreateArjArchive(prg() + "NVLISTE.ARJ", {{"LISTE.INF", manifest(list.fichier)},
                                             {list.fichier + ".PRX", "prices\r\n"}});
    // The desktop program keeps the table open meanwhile, and sees the change at its requery.
    Connection desktop;
    desktop.open(data());
    Recordset open;
    open.open("SELECT FICHIER, CODEGRO, DATESTK FROM PRIXLIST", desktop, CursorType::Keyset,
              LockType::Optimistic);
    EXPECT_EQ(run({"5", "2", position}), 0);
    open.requery();
    open.setAbsolutePosition(list.position);
    EXPECT_EQ(open.value("DATESTK").toString(), list.dateEff);
    EXPECT_EQ(stockDates("PRIXLIST"), expected); // no other row changed
    EXPECT_TRUE(QFile::exists(data() + list.fichier + ".PRX"));
    EXPECT_FALSE(QFile::exists(data() + "LISTE.INF"));
    EXPECT_EQ(logLines(), QStringList{"5 2 " + position});

    // A new effective date in the archive moves both dates.
    CreateArjArchive(prg() + "NVLISTE.ARJ",
                     {{"liste.inf", manifest(list.fichier.toLower(), "DATEEFF=20261201\n")}});
    EXPECT_EQ(run({"5", "2", position}), 0);
    const ItemRow moved = rows("PRIXLIST")[list.position - 1];
    EXPECT_EQ(moved.dateEff, "2026-12-01");
    EXPECT_EQ(moved.dateStk, "2026-12-01");
}

TEST_F(ServiceJobsTest, AListArchiveThatDoesNotFitItsPositionChangesNothing) {
    const QStringList before = stockDates("PRIXLIST");
    const ItemRow list = toUpdate("PRIXLIST");
    const QString position = QString::number(list.position);
    const QString other = rows("PRIXLIST")[list.position % before.size()].fichier;
    CreateArjArchive(prg() + "NVLISTE.ARJ", {{"LISTE.INF", manifest(other)}});
    EXPECT_EQ(run({"5", "2", position}), 1);
    EXPECT_EQ(run({"5", "2", "0"}), 1);
    EXPECT_EQ(run({"5", "2", QString::number(before.size() + 1)}), 1);
    EXPECT_EQ(run({"5", "2"}), 2);
    CreateArjArchive(prg() + "NVLISTE.ARJ", {{"README", "no manifest"}});
    EXPECT_EQ(run({"5", "2", position}), 1);
    CreateArjArchive(prg() + "NVLISTE.ARJ",
                     {{"LISTE.INF", manifest(list.fichier, "DATEEFF=2026-12-01\n")}});
    EXPECT_EQ(run({"5", "2", position}), 1);

    EXPECT_EQ(stockDates("PRIXLIST"), before);
    EXPECT_EQ(logLines().filter("! "),
              QStringList({"! row " + position + " of PRIXLIST is " + list.fichier +
                               ", the archive is for " + other,
                           "! PRIXLIST has no row 0",
                           "! PRIXLIST has no row " + QString::number(before.size() + 1),
                           "! no position given", "! the archive holds no LISTE.INF",
                           "! LISTE.INF: not a date: 2026-12-01"}));
}

TEST_F(ServiceJobsTest, TheIndexArchiveAddsOnlyNewNewslettersAndItsFiles) {
    const QStringList before = subjects();
    // The maker's index carries fewer fields, in another order, and one newsletter already here.
    NewTable incoming;
    incoming.fields = {FieldDef::text("SUJET", 60), FieldDef::text("NUMERO", 6),
                       FieldDef::text("ANNONCEUR", 30), FieldDef::text("TEXTE", 254),
                       FieldDef::text("EXTRA", 5)};
    incoming.rows = {{"Nouveau catalogue", "000101", "NGK", "{\\rtf1 Texte}", "x"},
                     {"Doublon", "000001", "BOSCH", "ancien", "y"}};
    QTemporaryDir staging;
    writeNewTable(staging.filePath("NVINDEX.DBF"), incoming);
    CreateArjArchive(
        data() + "NVINFO.ARJ",
        {{"NVINDEX.DBF", ReadBytes(staging.filePath("NVINDEX.DBF"))}, {"NV0101.TXT", "bulletin"}});
    EXPECT_EQ(run({"8", "2"}), 0);
    EXPECT_EQ(subjects(), QStringList(before) << "Nouveau catalogue");
    EXPECT_TRUE(QFile::exists(info() + "NV0101.TXT"));

    // With no index yet, the archive's table becomes it.
    QFile::remove(info() + "NVINDEX.DBF");
    EXPECT_EQ(run({"8", "2"}), 0);
    EXPECT_EQ(subjects(), QStringList({"Nouveau catalogue", "Doublon"}));
}

TEST_F(ServiceJobsTest, APackageRecordsItsVersionInItsRowOfNvvers) {
    // A table with one row gets the second.
    CreateArjArchive(data() + "LEDGVERS.ARJ", {{"version", "3.9.1\n"}});
    NewTable oneRow;
    oneRow.fields = {FieldDef::text("NVVERSION", 20)};
    oneRow.rows = {{"5.2.1"}};
    writeNewTable(prg() + "NVVERS.DBF", oneRow);
    EXPECT_EQ(run({"7", "2"}), 0);
    EXPECT_EQ(versions(), QStringList({"5.2.1", "3.9.1"}));

    CreateArjArchive(data() + "LEDGVERS.ARJ", {{"VERSION", "\n"}});
    EXPECT_EQ(run({"7", "2"}), 1);
    EXPECT_EQ(logLines().last(), "! LEDGVERS.ARJ: the version is empty");
}

TEST_F(ServiceJobsTest, ADamagedArchiveFailsWithALogLineAndUnpacksNothing) {
    const ItemRow list = toUpdate("PRIXLIST");
    const QString archive = prg() + "NVLISTE.ARJ";
    CreateArjArchive(archive,
                     {{"LISTE.INF", manifest(list.fichier)}, {"BIG.PRX", QByteArray(20000, 'p')}});
    const QByteArray whole = ReadBytes(archive);
    QStringList dataBefore = strays(data()) << "NVSERV.LOG";
    dataBefore.sort();
    const QStringList prgBefore = strays(prg());

    QByteArray flipped = whole;
    flipped[whole.size() - 100] = char(flipped[whole.size() - 100] ^ 0x55);
    for (const QByteArray& damaged : {flipped, whole.left(whole.size() / 2),
                                      QByteArray("not an archive at all"), QByteArray()}) {
        WriteBytes(archive, damaged);
        EXPECT_EQ(run({"5", "2", QString::number(list.position)}), 1);
    }
    EXPECT_EQ(logLines().filter("! arj status").size(), 4);
    EXPECT_EQ(rows("PRIXLIST")[list.position - 1].dateStk, list.dateStk);
    EXPECT_EQ(strays(data()), dataBefore); // no member, no work directory left behind
    EXPECT_EQ(strays(prg()), prgBefore);

    // The same for the index archive.
    WriteBytes(data() + "NVINFO.ARJ", whole.left(whole.size() - 30));
    EXPECT_EQ(run({"8", "2"}), 1);
    EXPECT_EQ(strays(info()), QStringList({"NVINDEX.DBF"}));
}
