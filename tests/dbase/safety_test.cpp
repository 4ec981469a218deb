// A table shared with the other workstations' programs (played by a second process that follows
// the same Clipper lock convention) and rewritten by this one: a change made elsewhere is never
// overwritten, and a rewrite replaces the table whole or not at all.
#include "dbasefixture.h"

#include "dbasepeer.h"
#include "support/faildevice.h"

class SharingTest : public DbaseTest {
protected:
    void SetUp() override {
        DbaseTest::SetUp();
        makeTable(
            "PRIXLIST.DBF",
            {FieldDef::text("FICHIER", 8), FieldDef::text("CODEGRO", 4),
             FieldDef::number("PCT1", 6, 2)},
            {{"AAA", "AB", 1.5}, {"BBB", "CD", QVariant()}, {"CCC", "EF", -2}, {"DDD", "GH", 3}},
            {false, false, false, true});
    }
};

TEST_F(SharingTest, OpeningFailsWhileAnotherProcessHoldsTheFileLock) {
    {
        DbasePeer peer(DBASE_PEER, {"lock-file", path("PRIXLIST.DBF")});
        ASSERT_EQ(peer.answer(), "ready"); // held until the peer ends
        EXPECT_DB_ERROR(open("SELECT * FROM PRIXLIST ORDER BY [DESC]"), 0x80004005 - 0x100000000LL);
        EXPECT_FALSE(rs.isOpen());
    }
    rs.open("PRIXLIST", connection);
    EXPECT_EQ(rs.recordCount(), 3) << "the table opens once the lock is released";
}

TEST_F(SharingTest, AChangeMadeElsewhereIsNeverOverwrittenAndOtherRowsStillSave) {
    open("PRIXLIST", LockType::BatchOptimistic);
    for (const char* code : {"X1", "XY", "X3"}) {
        rs.setValue("CODEGRO", code);
        rs.moveNext();
    }
    DbasePeer peer(DBASE_PEER, {"set", dir.path(), "PRIXLIST", "1", "CODEGRO", "ZZ"});
    ASSERT_EQ(peer.answer(), "saved");
    EXPECT_DB_ERROR(rs.updateBatch(), DbErrors::RowChanged);
    EXPECT_EQ(storedCodes(), QStringList({"X1", "ZZ", "X3"}));
}

TEST_F(SharingTest, ARecordLockElsewhereStopsTheWriteAndTheRewrite) {
    DbasePeer peer(DBASE_PEER, {"lock-record", path("PRIXLIST.DBF"), "1"});
    ASSERT_EQ(peer.answer(), "ready");
    open("PRIXLIST");
    rs.setValue("CODEGRO", "XY");
    EXPECT_DB_ERROR(rs.update(), DbErrors::Fail);
    rs.cancelUpdate();
    rs.moveNext();
    rs.setValue("CODEGRO", "OK");
    rs.update(); // another record is free
    EXPECT_DB_ERROR(connection.execute("ALTER TABLE PRIXLIST ADD COLUMN CATNO TEXT(254)"),
                    DbErrors::Fail);
    DbasePeer other(DBASE_PEER, {"set", dir.path(), "PRIXLIST", "2", "CODEGRO", "P3"});
    EXPECT_EQ(other.answer(), "saved") << "the peer's own lock does not stop it elsewhere";
    EXPECT_EQ(storedCodes(), QStringList({"AB", "OK", "P3"}));
}

TEST_F(SharingTest, AFailedRewriteLeavesTheOldTableWhole) {
    // The disk fills up in the middle of the records.
    Connection fillingUp([](QIODevice& file) { return std::make_unique<FailDevice>(file, 140); });
    fillingUp.open(dir.path());
    const QByteArray before = bytes("PRIXLIST.DBF");
    for (const QString& sql : {QStringLiteral("ALTER TABLE PRIXLIST ADD COLUMN CATNO TEXT(254)"),
                               QStringLiteral("INSERT INTO PRIXLIST SELECT * FROM PRIXLIST"),
                               QStringLiteral("SELECT * INTO PRIXLIST FROM PRIXLIST")}) {
        SCOPED_TRACE(sql.toStdString());
        EXPECT_DB_ERROR(fillingUp.execute(sql), DbErrors::Io);
        EXPECT_EQ(bytes("PRIXLIST.DBF"), before);
    }
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files), QStringList({"PRIXLIST.DBF"}))
        << "no half-written file is left beside it";
}

TEST_F(SharingTest, DbfsqlPrintsRowsAndChanges) {
    const auto run = [this](const QString& sql) {
        const ProgramRun p = RunProgram(DBFSQL, {dir.path(), sql});
        return QString::fromUtf8(p.out + p.err);
    };
    EXPECT_EQ(run("SELECT FICHIER, PCT1 FROM PRIXLIST ORDER BY FICHIER DESC"),
              "FICHIER\tPCT1\nCCC\t-2.00\nBBB\t\nAAA\t1.50\n");
    EXPECT_EQ(run("CREATE TABLE MEEFFACE (ORI TEXT(15))"), "Table created.\n");
    EXPECT_EQ(run("INSERT INTO MEEFFACE SELECT * FROM PRIXLIST"), "3 row(s) written.\n")
        << "no field in common: rows of Nulls are still written";
    EXPECT_EQ(run("SELECT ORI FROM MEEFFACE"), "ORI\n\n\n\n");
    EXPECT_TRUE(run("DROP TABLE MEEFFACE").startsWith("Error -2147217900: Syntax error"));
}

TEST_F(SharingTest, ARecordsetOnARebuiltTableRefusesToWriteUntilRequeried) {
    open("PRIXLIST");
    connection.execute("ALTER TABLE PRIXLIST ADD COLUMN CATNO TEXT(254)");
    const QByteArray rebuilt = bytes("PRIXLIST.DBF");
    rs.setValue("PCT1", 9);
    EXPECT_DB_ERROR(rs.update(), DbErrors::RowChanged);
    EXPECT_EQ(bytes("PRIXLIST.DBF"), rebuilt);
    rs.cancelUpdate();
    rs.requery();
    EXPECT_EQ(rs.fieldCount(), 4);
    rs.setValue("CATNO", "AUT;");
    rs.update();
}
