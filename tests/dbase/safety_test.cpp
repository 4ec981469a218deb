// Rewrites replace a table whole or not at all, and a table written back unchanged is the same
// file byte for byte.
#include "dbasefixture.h"

#include "dbase/dberror.h"
#include "dbase/recordset.h"
#include "support/faildevice.h"

class SafetyTest : public DbaseTest {
protected:
    void SetUp() override {
        DbaseTest::SetUp();
        makeTable("PRIXLIST.DBF", {FieldDef::text("FICHIER", 8), FieldDef::number("PCT1", 6, 2)},
                  {{"AAA", 1.5}, {"BBB", QVariant()}, {"CCC", -2}}, {false, true, false});
    }
};

TEST_F(SafetyTest, AFailedRewriteLeavesTheOldTableWhole) {
    // The disk fills up in the middle of the records.
    Connection fillingUp([](QIODevice& file) { return std::make_unique<FailDevice>(file, 100); });
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

TEST_F(SafetyTest, ATableCopiedWholeIsTheSameFile) {
    connection.execute("SELECT * INTO COPY1 FROM PRIXLIST");
    connection.execute("SELECT * INTO COPY2 FROM COPY1");
    EXPECT_EQ(bytes("COPY1.DBF"), bytes("COPY2.DBF"));
    // The copy holds the live rows; a row written back with its own values changes nothing.
    const QByteArray before = bytes("PRIXLIST.DBF");
    open("PRIXLIST");
    rs.setValue("PCT1", rs.value("PCT1"));
    rs.setValue("FICHIER", "AAA");
    rs.update();
    EXPECT_EQ(bytes("PRIXLIST.DBF"), before);
    EXPECT_EQ(bytes("COPY1.DBF").size(), before.size() - 15) << "without the deleted record";
}

TEST_F(SafetyTest, DbfsqlPrintsRowsAndChanges) {
    const auto run = [this](const QString& sql) {
        const ProgramRun p = RunProgram(DBFSQL, {dir.path(), sql});
        return QString::fromUtf8(p.out + p.err);
    };
    EXPECT_EQ(run("SELECT * FROM PRIXLIST ORDER BY FICHIER DESC"),
              "FICHIER\tPCT1\nCCC\t-2.00\nAAA\t1.50\n");
    EXPECT_EQ(run("CREATE TABLE MEEFFACE (ORI TEXT(15))"), "Table created.\n");
    EXPECT_EQ(run("INSERT INTO MEEFFACE SELECT * FROM PRIXLIST"), "2 row(s) written.\n")
        << "no field in common: rows of Nulls are still written";
    EXPECT_EQ(run("SELECT ORI FROM MEEFFACE"), "ORI\n\n\n");
    EXPECT_TRUE(run("DROP TABLE MEEFFACE").startsWith("Error -2147217900: Syntax error"));
}

TEST_F(SafetyTest, ARecordsetOnARebuiltTableRefusesToWriteUntilRequeried) {
    open("PRIXLIST");
    connection.execute("ALTER TABLE PRIXLIST ADD COLUMN CATNO TEXT(254)");
    const QByteArray rebuilt = bytes("PRIXLIST.DBF");
    rs.setValue("PCT1", 9);
    EXPECT_DB_ERROR(rs.update(), DbErrors::RowChanged);
    EXPECT_EQ(bytes("PRIXLIST.DBF"), rebuilt);
    rs.cancelUpdate();
    rs.requery();
    EXPECT_EQ(rs.fieldCount(), 3);
    rs.setValue("CATNO", "AUT;");
    rs.update();
}
