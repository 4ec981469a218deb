// The stand-in service program installing what the downloads leave, on a temporary
// installation with the demo tables: each operation's effect on the tables and directories,
// archives that do not fit their item, and damaged archives.
#include "serviceinstall.h"

#include "dbase/tablewriter.h"

using ServiceJobsTest = ServiceInstallTest;

TEST_F(ServiceJobsTest, AListArchiveMakesTheListAtItsPositionUpToDate) {
    const QList<ItemRow> before = rows("PRIXLIST");
    const ItemRow list = toUpdate("PRIXLIST");
    CreateArjArchive(prg() + "NVLISTE.ARJ", {member("LISTE.INF", manifest(list.fichier)),
                                             member(list.fichier + ".PRX", "prices\r\n")});
    // The desktop program keeps the table open meanwhile, and sees the change at its requery.
    Connection desktop;
    desktop.open(data());
    Recordset open;
    open.open("SELECT FICHIER, CODEGRO, DATESTK FROM PRIXLIST", desktop, CursorType::Keyset,
              LockType::Optimistic);
    EXPECT_EQ(run({"5", "2", QString::number(list.position)}), 0);
    open.requery();
    open.setAbsolutePosition(list.position);
    EXPECT_EQ(open.value("DATESTK"), list.dateEff);

    QList<ItemRow> after = rows("PRIXLIST");
    EXPECT_EQ(after[list.position - 1].dateStk, list.dateEff);
    EXPECT_EQ(after[list.position - 1].dateEff, list.dateEff);
    after[list.position - 1].dateStk = list.dateStk;
    for (int i = 0; i < before.size(); ++i) // no other row changed
        EXPECT_EQ(after[i].dateStk, before[i].dateStk) << i;
    EXPECT_TRUE(QFile::exists(data() + list.fichier + ".PRX"));
    EXPECT_FALSE(QFile::exists(data() + "LISTE.INF"));
    EXPECT_EQ(logLines(), QStringList{"5 2 " + QString::number(list.position)});

    // A new effective date in the archive moves both dates.
    CreateArjArchive(prg() + "NVLISTE.ARJ",
                     {member("liste.inf", manifest(list.fichier.toLower(), "DATEEFF=20261201\n"))});
    EXPECT_EQ(run({"5", "2", QString::number(list.position)}), 0);
    const ItemRow moved = rows("PRIXLIST")[list.position - 1];
    EXPECT_EQ(moved.dateEff.toDate(), QDate(2026, 12, 1));
    EXPECT_EQ(moved.dateStk.toDate(), QDate(2026, 12, 1));
}

TEST_F(ServiceJobsTest, AListArchiveThatDoesNotFitItsPositionChangesNothing) {
    const QList<ItemRow> before = rows("PRIXLIST");
    const ItemRow list = toUpdate("PRIXLIST");
    const QString other = before[list.position % before.size()].fichier;
    CreateArjArchive(prg() + "NVLISTE.ARJ", {member("LISTE.INF", manifest(other))});
    EXPECT_EQ(run({"5", "2", QString::number(list.position)}), 1);
    EXPECT_EQ(run({"5", "2", "0"}), 1);
    EXPECT_EQ(run({"5", "2", QString::number(before.size() + 1)}), 1);
    EXPECT_EQ(run({"5", "2"}), 2);
    CreateArjArchive(prg() + "NVLISTE.ARJ", {member("README", "no manifest")});
    EXPECT_EQ(run({"5", "2", QString::number(list.position)}), 1);
    CreateArjArchive(prg() + "NVLISTE.ARJ",
                     {member("LISTE.INF", manifest(list.fichier, "DATEEFF=2026-12-01\n"))});
    EXPECT_EQ(run({"5", "2", QString::number(list.position)}), 1);

    const QList<ItemRow> after = rows("PRIXLIST");
    for (int i = 0; i < before.size(); ++i)
        EXPECT_EQ(after[i].dateStk, before[i].dateStk) << i;
    const QStringList log = logLines();
    ASSERT_EQ(log.size(), 12);
    EXPECT_TRUE(log[1].startsWith("! row " + QString::number(list.position) + " of PRIXLIST is " +
                                  list.fichier))
        << log[1].toStdString();
    EXPECT_EQ(log[3], "! PRIXLIST has no row 0");
    EXPECT_EQ(log[7], "! no position given");
    EXPECT_EQ(log[9], "! the archive holds no LISTE.INF");
    EXPECT_EQ(log[11], "! LISTE.INF: not a date: 2026-12-01");
}

TEST_F(ServiceJobsTest, ACatalogueNeedsBothItsArchivesAndBecomesUpToDate) {
    const ItemRow catalogue = toUpdate("CATALIST");
    CreateArjArchive(prg() + "NVCAT.ARJ", {member("CATALOG.INF", manifest(catalogue.fichier)),
                                           member(catalogue.fichier + ".IDX", "index")});
    const QString args = QString::number(catalogue.position);
    EXPECT_EQ(run({"9", "1", args}), 1); // the second file is missing
    EXPECT_EQ(rows("CATALIST")[catalogue.position - 1].dateStk, catalogue.dateStk);

    CreateArjArchive(prg() + "NVCATA.ARJ", {member(catalogue.fichier + ".CAT", "pages")});
    EXPECT_EQ(run({"9", "1", args}), 0);
    EXPECT_EQ(rows("CATALIST")[catalogue.position - 1].dateStk, catalogue.dateEff);
    EXPECT_TRUE(QFile::exists(data() + catalogue.fichier + ".IDX"));
    EXPECT_TRUE(QFile::exists(data() + catalogue.fichier + ".CAT"));
}

TEST_F(ServiceJobsTest, TheIndexArchiveAddsOnlyNewNewslettersAndItsFiles) {
    const QStringList before = subjects();
    // The maker's index carries fewer fields, in another order, and one newsletter already here.
    NewTable incoming;
    incoming.fields = {{"SUJET", 'C', 60, 0},
                       {"NUMERO", 'C', 6, 0},
                       {"ANNONCEUR", 'C', 30, 0},
                       {"TEXTE", 'C', 254, 0},
                       {"EXTRA", 'C', 5, 0}};
    incoming.rows = {{"Nouveau catalogue", "000101", "NGK", "{\\rtf1 Texte}", "x"},
                     {"Doublon", "000001", "BOSCH", "ancien", "y"}};
    QTemporaryDir staging;
    writeNewTable(staging.filePath("NVINDEX.DBF"), incoming);
    QFile table(staging.filePath("NVINDEX.DBF"));
    ASSERT_TRUE(table.open(QIODevice::ReadOnly));
    CreateArjArchive(data() + "NVINFO.ARJ",
                     {member("NVINDEX.DBF", table.readAll()), member("NV0101.TXT", "bulletin")});
    EXPECT_EQ(run({"8", "2"}), 0);

    const QStringList after = subjects();
    EXPECT_EQ(after.size(), before.size() + 1);
    EXPECT_TRUE(after.contains("Nouveau catalogue"));
    EXPECT_FALSE(after.contains("Doublon"));
    EXPECT_TRUE(QFile::exists(info() + "NV0101.TXT"));

    // With no index yet, the archive's table becomes it.
    QFile::remove(info() + "NVINDEX.DBF");
    EXPECT_EQ(run({"8", "2"}), 0);
    EXPECT_EQ(subjects(), QStringList({"Nouveau catalogue", "Doublon"}));
}

TEST_F(ServiceJobsTest, APackageRecordsItsVersionInItsRowOfNvvers) {
    EXPECT_EQ(versions(), QStringList({"5.2.1", "3.8.0"}));
    CreateArjArchive(data() + "PARTVERS.ARJ",
                     {member("VERSION", "5.3.0\r\n"), member("PARTDEX.EXE", "program")});
    EXPECT_EQ(run({"6", "2"}), 0);
    EXPECT_EQ(versions(), QStringList({"5.3.0", "3.8.0"}));
    EXPECT_TRUE(QFile::exists(prg() + "PARTDEX.EXE"));

    CreateArjArchive(data() + "LEDGVERS.ARJ", {member("version", "3.9.1\n")});
    EXPECT_EQ(run({"7", "2"}), 0);
    EXPECT_EQ(versions(), QStringList({"5.3.0", "3.9.1"}));

    // A table with one row gets the second.
    NewTable oneRow;
    oneRow.fields = {{"NVVERSION", 'C', 20, 0}};
    oneRow.rows = {{"5.2.1"}};
    writeNewTable(prg() + "NVVERS.DBF", oneRow);
    EXPECT_EQ(run({"7", "2"}), 0);
    EXPECT_EQ(versions(), QStringList({"5.2.1", "3.9.1"}));

    CreateArjArchive(data() + "LEDGVERS.ARJ", {member("VERSION", "\n")});
    EXPECT_EQ(run({"7", "2"}), 1);
    EXPECT_EQ(logLines().last(), "! LEDGVERS.ARJ: the version is empty");
}

TEST_F(ServiceJobsTest, ADamagedArchiveFailsWithALogLineAndUnpacksNothing) {
    const ItemRow list = toUpdate("PRIXLIST");
    CreateArjArchive(prg() + "NVLISTE.ARJ", {member("LISTE.INF", manifest(list.fichier)),
                                             member("BIG.PRX", QByteArray(20000, 'p'))});
    QFile archive(prg() + "NVLISTE.ARJ");
    ASSERT_TRUE(archive.open(QIODevice::ReadWrite));
    const QByteArray whole = archive.readAll();
    QStringList dataBefore = strays(data()) << "NVSERV.LOG";
    dataBefore.sort();
    const QStringList prgBefore = strays(prg());

    const auto damagedWith = [&](const QByteArray& bytes) {
        archive.resize(0);
        archive.seek(0);
        archive.write(bytes);
        archive.flush();
        return run({"5", "2", QString::number(list.position)});
    };
    QByteArray flipped = whole;
    flipped[whole.size() - 100] = char(flipped[whole.size() - 100] ^ 0x55);
    EXPECT_EQ(damagedWith(flipped), 1);
    EXPECT_EQ(damagedWith(whole.left(whole.size() / 2)), 1);
    EXPECT_EQ(damagedWith("not an archive at all"), 1);
    EXPECT_EQ(damagedWith({}), 1);

    for (const QString& line : logLines().mid(1).filter("! "))
        EXPECT_TRUE(line.startsWith("! arj status")) << line.toStdString();
    EXPECT_EQ(logLines().filter("! ").size(), 4);
    EXPECT_EQ(rows("PRIXLIST")[list.position - 1].dateStk, list.dateStk);
    EXPECT_EQ(strays(data()), dataBefore); // no member, no work directory left behind
    EXPECT_EQ(strays(prg()), prgBefore);

    // The same for the other operations' archives.
    for (const QString& path : {data() + "NVINFO.ARJ", data() + "PARTVERS.ARJ"}) {
        QFile other(path);
        ASSERT_TRUE(other.open(QIODevice::WriteOnly));
        other.write(whole.left(whole.size() - 30));
    }
    EXPECT_EQ(run({"8", "2"}), 1);
    EXPECT_EQ(run({"6", "2"}), 1);
    EXPECT_EQ(versions(), QStringList({"5.2.1", "3.8.0"}));
    EXPECT_EQ(strays(info()), QStringList({"NVINDEX.DBF"}));
}
