// The statements the program issues, quoted as it issues them, and the ones the engine refuses.
#include "dbasefixture.h"

#include <QDate>

class StatementsTest : public DbaseTest {};

TEST_F(StatementsTest, OrderByFollowsTheStoredBytesWithNullsFirstAndFileOrderForTies) {
    makeTable("prixlist.dbf", {FieldDef::text("DESC", 10), FieldDef::text("FICHIER", 4)},
              {{"beta", "1"},
               {"Beta", "2"},
               {QVariant(), "3"},
               {"Alpha ", "4"},
               {"Beta", "5"},
               {QString::fromUtf8("\xC3\x89tau"), "6"},
               {"Zeta", "7"}});
    // Byte order: upper case before lower case, É (0xC9) after every ASCII letter.
    EXPECT_EQ(rows("SELECT FICHIER FROM PRIXLIST ORDER BY [DESC]"),
              QStringList({"3", "4", "2", "5", "7", "1", "6"}));
    EXPECT_EQ(rows("SELECT FICHIER FROM PRIXLIST ORDER BY desc DESC, FICHIER"),
              QStringList({"6", "1", "7", "2", "5", "4", "3"}));
}

TEST_F(StatementsTest, ColumnsTopWhereAndConcatenatedKeys) {
    makeTable("PRIXLIST.DBF",
              {FieldDef::text("FICHIER", 4), FieldDef::text("CODEGRO", 4),
               FieldDef::logical("UTILISER"), FieldDef::text("DESC", 8)},
              {{"A", "AB", true, "x"}, {"B", "CD", false, "y"}});
    open("SELECT FICHIER, CODEGRO FROM PRIXLIST");
    ASSERT_EQ(rs.fieldCount(), 2);
    EXPECT_EQ(rs.fieldName(1), "CODEGRO");
    EXPECT_EQ(rs.fieldIndex("codegro"), 1) << "field names without regard to case";
    EXPECT_EQ(rs.fieldIndex("DESC"), -1);
    EXPECT_EQ(rows("SELECT * FROM [PrixList.dbf] WHERE CODEGRO = 'CD  ' OR (UTILISER = True AND "
                   "FICHIER <> 'A')"),
              QStringList({"B|CD|false|y"}))
        << "trailing blanks ignored by =";
    EXPECT_EQ(rows("SELECT * FROM PRIXLIST WHERE CODEGRO = 'ab'"), QStringList())
        << "text comparisons are case-sensitive";

    makeTable("DEPART.DBF", {FieldDef::text("CODEP", 2)}, QList<QVariantList>(20, {"x"}));
    EXPECT_EQ(rows("SELECT TOP 13 * FROM DEPART").size(), 13);

    makeTable("NVINDEX.DBF", {FieldDef::text("ANNONCEUR", 6), FieldDef::text("SUJET", 6)},
              {{"AB", "Z"}, {"A", "BZ"}, {"A", "BA"}, {QVariant(), "Q"}});
    // A+BA, then AB+Z and A+BZ (equal keys, file order); a Null part makes the key Null.
    EXPECT_EQ(rows("SELECT SUJET FROM NVINDEX ORDER BY ANNONCEUR+SUJET"),
              QStringList({"Q", "BA", "Z", "BZ"}));
}

TEST_F(StatementsTest, AWorkTableIsCopiedWidenedFilledAndRebuilt) {
    makeTable("PRIXLIST.DBF",
              {FieldDef::logical("UTILISER"), FieldDef::text("FICHIER", 8),
               FieldDef::date("DATEEFF"), FieldDef::text("CODEGRO", 4),
               FieldDef::number("COUTPCT", 6, 2)},
              {{true, "BRK", QDate(2024, 1, 15), "AB", 12.5},
               {true, "FLT", QVariant(), QVariant(), 1},
               {false, "ZNC", QVariant(), "CD", QVariant()}},
              {false, true, false});
    // An empty copy, the new column, then every live row.
    EXPECT_EQ(connection.execute("SELECT * INTO PRIXTEMP FROM PRIXLIST WHERE 1 = 0"), 0);
    connection.execute("ALTER TABLE PRIXTEMP ADD COLUMN CATNO TEXT(254)");
    EXPECT_EQ(connection.execute("INSERT INTO PRIXTEMP SELECT * FROM PRIXLIST"), 2);
    EXPECT_EQ(rows("PRIXTEMP.DBF"),
              QStringList({"true|BRK|2024-01-15|AB|12.5|", "false|ZNC||CD||"}));
    open("PRIXTEMP");
    EXPECT_EQ(rs.field(5), (FieldDef{"CATNO", 'C', 254, 0}));
    rs.close();

    // Rebuilt over the existing work table from named columns, written without blanks after
    // the commas as the program writes them.
    EXPECT_EQ(connection.execute("SELECT UTILISER,FICHIER, CODEGRO INTO PRIXTEMP.DBF FROM "
                                 "PRIXLIST.DBF"),
              2);
    EXPECT_EQ(rows("PRIXTEMP"), QStringList({"true|BRK|AB", "false|ZNC|CD"}));
}

TEST_F(StatementsTest, AnythingElseIsRefusedClearly) {
    makeTable("T.DBF", {FieldDef::text("A", 2), FieldDef::number("N", 4)}, {{"x", 1}});
    const struct {
        const char* sql;
        qint64 number;
        bool opened = false; // opened as a recordset rather than executed
    } refused[] = {
        {"UPDATE T SET A = 'y'", DbErrors::Syntax},
        {"DELETE FROM T", DbErrors::Syntax},
        {"DROP TABLE T", DbErrors::Syntax},
        {"SELECT * FROM T WHERE A LIKE 'x*'", DbErrors::Syntax},
        {"SELECT COUNT(*) FROM T", DbErrors::Syntax},
        {"CREATE TABLE U (A INTEGER)", DbErrors::Syntax},
        {"CREATE TABLE U (TOOLONGNAME1 TEXT(2))", DbErrors::Syntax},
        {"CREATE TABLE t (A TEXT(2))", DbErrors::AlreadyExists},
        {"ALTER TABLE T ADD COLUMN A TEXT(3)", DbErrors::AlreadyExists},
        {"ALTER TABLE T DROP COLUMN A", DbErrors::Syntax},
        {"SELECT * FROM ../T", DbErrors::Syntax},
        {"SELECT * FROM T", DbErrors::NotAllowed}, // returns rows: not for execute
        {"SELECT A INTO U FROM T", DbErrors::NotAllowed, true},
        {"SELECT * FROM T WHERE A = 1", DbErrors::TypeMismatch, true},
        {"SELECT * FROM T WHERE B = 'x'", DbErrors::NoSuchField, true},
        {"SELECT * FROM NOWHERE", DbErrors::NoSuchTable, true},
        {"SELECT * FROM T WHERE", DbErrors::Syntax, true},
    };
    for (const auto& [sql, number, opened] : refused) {
        SCOPED_TRACE(sql);
        if (opened)
            EXPECT_DB_ERROR(open(sql), number);
        else
            EXPECT_DB_ERROR(connection.execute(sql), number);
    }
    EXPECT_FALSE(rs.isOpen());
    EXPECT_EQ(bytes("T.DBF").size(), 32 + 2 * 32 + 1 + 7 + 1) << "nothing was written";
}
