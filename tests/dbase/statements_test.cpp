// The statements the program issues, quoted as it issues them, and the ones the engine refuses.
#include "dbasefixture.h"

#include "dbase/dberror.h"
#include "dbase/recordset.h"

#include <QDate>

class StatementsTest : public DbaseTest {};

TEST_F(StatementsTest, OrderByFollowsTheStoredBytesWithNullsFirstAndFileOrderForTies) {
    makeTable("prixlist.dbf", {textField("DESC", 10), textField("FICHIER", 4)},
              {{"beta", "1"},
               {"Beta", "2"},
               {QVariant(), "3"},
               {"Alpha ", "4"},
               {"Beta", "5"},
               {QString::fromUtf8("\xC3\x89tau"), "6"},
               {"Zeta", "7"}});
    Recordset rs;
    rs.setCursorLocation(CursorLocation::Client);
    rs.setCursorType(CursorType::Keyset);
    rs.setLockType(LockType::Optimistic);
    rs.open("SELECT * FROM PRIXLIST ORDER BY [DESC]", connection);
    // Byte order: upper case before lower case, É (0xC9) after every ASCII letter.
    EXPECT_EQ(column(rs, "FICHIER"), QStringList({"3", "4", "2", "5", "7", "1", "6"}));
    rs.close();
    rs.open("SELECT * FROM PRIXLIST ORDER BY desc DESC, FICHIER", connection);
    EXPECT_EQ(column(rs, "FICHIER"), QStringList({"6", "1", "7", "2", "5", "4", "3"}));
}

TEST_F(StatementsTest, ColumnsTopWhereAndConcatenatedKeys) {
    makeTable("PRIXLIST.DBF",
              {textField("FICHIER", 4), textField("CODEGRO", 4), logicalField("UTILISER"),
               textField("DESC", 8)},
              {{"A", "AB", true, "x"}, {"B", "CD", false, "y"}});
    Recordset rs;
    rs.open("SELECT FICHIER, CODEGRO FROM PRIXLIST", connection, CursorType::Keyset,
            LockType::Optimistic);
    ASSERT_EQ(rs.fieldCount(), 2);
    EXPECT_EQ(rs.fieldName(1), "CODEGRO");
    EXPECT_EQ(rs.fieldIndex("codegro"), 1) << "field names without regard to case";
    EXPECT_EQ(rs.fieldIndex("DESC"), -1);
    rs.close();

    QList<QVariantList> departs;
    for (int i = 0; i < 20; ++i)
        departs << QVariantList{QString::number(i), QStringLiteral("Dept %1").arg(i)};
    makeTable("DEPART.DBF", {textField("CODEP", 2), textField("DESCR", 20)}, departs);
    rs.open("SELECT TOP 13 * FROM DEPART", connection, CursorType::Keyset, LockType::Optimistic);
    EXPECT_EQ(rs.recordCount(), 13);
    rs.close();

    makeTable("NVINDEX.DBF", {textField("ANNONCEUR", 6), textField("SUJET", 6)},
              {{"AB", "Z"}, {"A", "BZ"}, {"A", "BA"}, {QVariant(), "Q"}});
    rs.open("SELECT * FROM NVINDEX ORDER BY ANNONCEUR+SUJET", connection);
    // A+BA, then AB+Z and A+BZ (equal keys, file order); a Null part makes the key Null.
    EXPECT_EQ(column(rs, "SUJET"), QStringList({"Q", "BA", "Z", "BZ"})) << "ties keep file order";
    rs.close();

    rs.open("SELECT * FROM [PrixList.dbf] WHERE CODEGRO = 'CD  ' OR (UTILISER = True AND "
            "FICHIER <> 'A')",
            connection);
    EXPECT_EQ(column(rs, "FICHIER"), QStringList({"B"})) << "trailing blanks ignored by =";
    rs.close();
    rs.open("SELECT * FROM PRIXLIST WHERE CODEGRO = 'ab'", connection);
    EXPECT_EQ(rs.recordCount(), 0) << "text comparisons are case-sensitive";
}

TEST_F(StatementsTest, AWorkTableIsCopiedWidenedFilledAndRebuilt) {
    makeTable("PRIXLIST.DBF",
              {logicalField("UTILISER"), textField("FICHIER", 8), dateField("DATEEFF"),
               textField("CODEGRO", 4), numberField("COUTPCT", 6, 2)},
              {{true, "BRK", QDate(2024, 1, 15), "AB", 12.5},
               {true, "FLT", QVariant(), QVariant(), 1},
               {false, "ZNC", QVariant(), "CD", QVariant()}},
              {false, true, false});
    // An empty copy, the new column, then every live row.
    EXPECT_EQ(connection.execute("SELECT * INTO PRIXTEMP FROM PRIXLIST WHERE 1 = 0"), 0);
    connection.execute("ALTER TABLE PRIXTEMP ADD COLUMN CATNO TEXT(254)");
    EXPECT_EQ(connection.execute("INSERT INTO PRIXTEMP SELECT * FROM PRIXLIST"), 2);
    Recordset rs;
    rs.open("PRIXTEMP.DBF", connection, CursorType::Keyset, LockType::Optimistic);
    ASSERT_EQ(rs.fieldCount(), 6);
    EXPECT_EQ(rs.field(5), (FieldDef{"CATNO", 'C', 254, 0}));
    EXPECT_EQ(column(rs, "FICHIER"), QStringList({"BRK", "ZNC"}));
    rs.moveFirst();
    EXPECT_EQ(rs.value("DATEEFF").toDate(), QDate(2024, 1, 15));
    EXPECT_DOUBLE_EQ(rs.value("COUTPCT").toDouble(), 12.5);
    EXPECT_TRUE(rs.value("CATNO").isNull());
    rs.close();

    // Rebuilt over the existing work table from named columns, written without blanks after
    // the commas as the program writes them.
    EXPECT_EQ(connection.execute("SELECT UTILISER,FICHIER, CODEGRO INTO PRIXTEMP.DBF FROM "
                                 "PRIXLIST.DBF"),
              2);
    rs.open("PRIXTEMP", connection);
    EXPECT_EQ(rs.fieldCount(), 3);
    EXPECT_EQ(column(rs, "CODEGRO"), QStringList({"AB", "CD"}));
}

TEST_F(StatementsTest, WorkTablesAreCreatedAndFilledWithAddNew) {
    connection.execute("CREATE TABLE MEREMPLA (ORI TEXT(15), NEW TEXT(15))");
    EXPECT_DB_ERROR(connection.execute("CREATE TABLE mereMPLA (ORI TEXT(15))"),
                    DbErrors::AlreadyExists);
    Recordset rs;
    rs.open("MEREMPLA", connection, CursorType::Keyset, LockType::Optimistic);
    EXPECT_TRUE(rs.eof() && rs.bof());
    rs.addNew();
    EXPECT_EQ(rs.editMode(), EditMode::Add);
    rs.setValue("ORI", "ABC-100");
    rs.setValue("NEW", "ABC-200");
    rs.update();
    rs.addNew();
    rs.setValue("ORI", "XYZ");
    rs.update();
    rs.close();
    rs.open("SELECT * FROM MEREMPLA", connection);
    EXPECT_EQ(column(rs, "NEW"), QStringList({"ABC-200", "<null>"}));
    const QByteArray b = bytes("MEREMPLA.DBF");
    EXPECT_EQ(quint8(b[4]), 2);
    EXPECT_EQ(b.size(), 32 + 2 * 32 + 1 + 2 * 31 + 1);
    EXPECT_EQ(b.back(), '\x1A');
}

TEST_F(StatementsTest, AnythingElseIsRefusedClearly) {
    makeTable("T.DBF", {textField("A", 2), numberField("N", 4)}, {{"x", 1}});
    Recordset rs;
    const QList<QPair<QString, qint64>> refused = {
        {"UPDATE T SET A = 'y'", DbErrors::Syntax},
        {"DELETE FROM T", DbErrors::Syntax},
        {"DROP TABLE T", DbErrors::Syntax},
        {"SELECT * FROM T WHERE A LIKE 'x*'", DbErrors::Syntax},
        {"SELECT COUNT(*) FROM T", DbErrors::Syntax},
        {"CREATE TABLE U (A INTEGER)", DbErrors::Syntax},
        {"CREATE TABLE U (TOOLONGNAME1 TEXT(2))", DbErrors::Syntax},
        {"ALTER TABLE T ADD COLUMN A TEXT(3)", DbErrors::AlreadyExists},
        {"ALTER TABLE T DROP COLUMN A", DbErrors::Syntax},
        {"SELECT * FROM ../T", DbErrors::Syntax},
        {"SELECT * FROM T", DbErrors::NotAllowed}, // returns rows: not for execute
    };
    for (const auto& [sql, number] : refused) {
        SCOPED_TRACE(sql.toStdString());
        EXPECT_DB_ERROR(connection.execute(sql), number);
    }
    const QList<QPair<QString, qint64>> refusedQueries = {
        {"SELECT * FROM T WHERE A = 1", DbErrors::TypeMismatch},
        {"SELECT * FROM T WHERE B = 'x'", DbErrors::NoSuchField},
        {"SELECT * FROM NOWHERE", DbErrors::NoSuchTable},
        {"SELECT * FROM T WHERE", DbErrors::Syntax},
    };
    for (const auto& [sql, number] : refusedQueries) {
        SCOPED_TRACE(sql.toStdString());
        EXPECT_DB_ERROR(rs.open(sql, connection), number);
        EXPECT_FALSE(rs.isOpen());
    }
    EXPECT_DB_ERROR(rs.open("SELECT A INTO U FROM T", connection), DbErrors::NotAllowed);
    EXPECT_EQ(bytes("T.DBF").size(), 32 + 2 * 32 + 1 + 7 + 1) << "nothing was written";
}
