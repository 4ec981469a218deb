// Table files as the other workstations' programs write them: stored forms, Nulls, code pages,
// kinds of table and damaged files.
#include "dbasefixture.h"

#include "dbase/dbfformat.h"
#include "dbase/tablefile.h"

#include <QDate>

namespace {

// A table file assembled byte by byte, as another program may have left it.
QByteArray rawTable(quint8 version, quint8 driver, const QList<FieldDef>& fields,
                    const QList<QByteArray>& records, const QByteArray& afterTerminator = {}) {
    TableHeader h = Dbf::makeHeader(fields, driver, version);
    h.recordCount = quint32(records.size());
    h.headerLength = quint16(h.headerLength + afterTerminator.size());
    QByteArray b = Dbf::headerBytes(h);
    b.replace(b.size() - afterTerminator.size(), afterTerminator.size(), afterTerminator);
    for (const QByteArray& r : records)
        b += r;
    return b + '\x1A';
}

} // namespace

class TableFileTest : public DbaseTest {};

TEST_F(TableFileTest, ReadsStoredFormsAndBlanksAsNull) {
    const QList<FieldDef> fields = {FieldDef::text("T", 5), FieldDef::number("N", 6, 2),
                                    FieldDef::date("D"), FieldDef::logical("L")};
    // Each record: deletion flag, then T (5), N (6), D (8) and L (1) in their stored forms.
    const QList<QByteArray> records = {" AB    12.5020240315T", "  x  y -3.0020000101y",
                                       "         ***00000000?", "          .5         ",
                                       "*DEL    1.0020240101F", "        0.0020240229n"};
    WriteBytes(path("KINDS.DBF"), rawTable(0x03, 0x57, fields, records));
    // Leading blanks kept; blank, starred, 00000000 and ? are Null; the deleted record hidden.
    EXPECT_EQ(rows("KINDS"), QStringList({"AB|12.5|2024-03-15|true", " x  y|-3|2000-01-01|true",
                                          "|||", "|0.5||", "|0|2024-02-29|false"}));
}

TEST_F(TableFileTest, WritesStoredFormsAndNullAsBlanks) {
    makeTable("W.DBF",
              {FieldDef::text("T", 4), FieldDef::number("N", 7, 2), FieldDef::date("D"),
               FieldDef::logical("L")},
              {{"AB", 3.14159, QDate(2023, 12, 1), true}, {"", QVariant(), QVariant(), false}});
    const QByteArray b = bytes("W.DBF");
    const int header = 32 + 4 * 32 + 1;
    EXPECT_EQ(b.mid(header), " AB     3.1420231201T" + QByteArray(20, ' ') + "F\x1A");
    EXPECT_EQ(QDate(quint8(b[1]) + 1900, b[2], b[3]), QDate::currentDate()) << "last update";

    open("w");
    rs.moveLast();
    EXPECT_TRUE(rs.value("T").isNull()) << "an empty text reads back as Null";
    rs.setValue("N", "12.5");
    rs.setValue("D", "20240229");
    rs.setValue("L", -1);
    rs.update();
    EXPECT_EQ(bytes("W.DBF").mid(header + 21, 21), QByteArray(7, ' ') + "12.5020240229T");
    EXPECT_DB_ERROR(rs.setValue("T", "ABCDE"), DbErrors::TypeMismatch);
    EXPECT_DB_ERROR(rs.setValue("N", "12,5"), DbErrors::TypeMismatch);
    EXPECT_DB_ERROR(rs.setValue("N", 123456.0), DbErrors::TypeMismatch);
}

TEST_F(TableFileTest, ReadsTheKindsOfTableAndCodePagesTheDealersTablesComeIn) {
    const QList<FieldDef> fields = {FieldDef::text("T", 4)};
    const struct {
        const char* table;
        quint8 version, driver;
        const char *record, *text;
        QByteArray afterTerminator;
    } kinds[] = {
        {"OEM", 0x03, 0x02, " \x82t\x82 ", "été", {}},            // code page 850
        {"ANSI", 0x03, 0x00, " \x80\xE9  ", "€é", {}},            // 0 means Windows-1252
        {"US", 0x03, 0x1B, " \xE9   ", "Θ", {}},                  // code page 437
        {"PAD", 0x03, 0x57, " abc ", "abc", QByteArray(1, '\0')}, // counted in the header length
        {"IV", 0x8B, 0x57, " abc ", "abc", {}},                   // dBASE IV with memo
    };
    for (const auto& kind : kinds) {
        WriteBytes(
            path(QString::fromLatin1(kind.table) + ".DBF"),
            rawTable(kind.version, kind.driver, fields, {kind.record}, kind.afterTerminator));
        EXPECT_EQ(rows(kind.table), QStringList{QString::fromUtf8(kind.text)}) << kind.table;
    }
    for (const quint8 version : {0x30, 0x04}) { // FoxPro, dBASE 7
        WriteBytes(path("OTHER.DBF"), rawTable(version, 0x57, fields, {" abc "}));
        EXPECT_DB_ERROR(rs.open("OTHER", connection), DbErrors::UnsupportedFormat);
    }
    // A change is written in the table's own code page.
    open("OEM");
    rs.setValue(0, QString::fromUtf8("Ça"));
    rs.update();
    EXPECT_EQ(bytes("OEM.DBF").mid(32 + 32 + 1 + 1, 2), QByteArray("\x80") + 'a');
}

TEST_F(TableFileTest, MemoFieldsStayUntouchedAndACopyTakesTheMemoFileAlong) {
    const QList<FieldDef> fields = {FieldDef::text("T", 2), {"NOTE", 'M', 10, 0}};
    WriteBytes(path("MEMO.DBF"), rawTable(0x83, 0x57, fields, {" ab0000000042"}));
    WriteBytes(path("MEMO.DBT"), QByteArray(1024, 'm'));
    open("MEMO");
    EXPECT_TRUE(rs.value("NOTE").isNull());
    rs.setValue("T", "cd");
    rs.update();
    rs.close();
    connection.execute("SELECT * INTO NOTECOPY FROM MEMO");
    EXPECT_EQ(bytes("NOTECOPY.DBT"), bytes("MEMO.DBT"));
    EXPECT_EQ(bytes("NOTECOPY.DBF").mid(32 + 2 * 32 + 1), QByteArray(" cd0000000042\x1A"));
    connection.execute("ALTER TABLE MEMO ADD COLUMN X TEXT(2)");
    EXPECT_EQ(bytes("MEMO.DBF").mid(32 + 3 * 32 + 1, 15), QByteArray(" cd0000000042  "));
    for (const char* table : {"MEMO.DBF", "NOTECOPY.DBF"})
        EXPECT_EQ(quint8(bytes(table)[0]), 0x83) << table;
}

TEST_F(TableFileTest, DamagedFilesGiveAClearErrorAndAreNeverWritten) {
    const QByteArray good = rawTable(0x03, 0x57, {FieldDef::text("T", 3)}, {" abc", " def"});
    const QList<QPair<QByteArray, QString>> cases = {
        {good.left(20), "too short"},
        {good.left(good.size() - 5), "counts 2 records"},
        {QByteArray(good).replace(10, 1, "\x09"), "record length 9"},
        {QByteArray(good).replace(32 + 11, 1, "Q"), "unknown type 'Q'"},
        {QByteArray(good).replace(64, 1, "X"), "no terminator"},
        {QByteArray(good).replace(4, 1, "\x28"), "counts 40 records"}};
    for (const auto& [data, reason] : cases) {
        WriteBytes(path("BAD.DBF"), data);
        try {
            open("SELECT * FROM BAD");
            ADD_FAILURE() << "opened: " << reason.toStdString();
        } catch (const DbError& e) {
            EXPECT_EQ(e.number(), DbErrors::Damaged);
            EXPECT_TRUE(e.description().contains("BAD") && e.description().contains(reason))
                << e.description().toStdString();
        }
        EXPECT_THROW(connection.execute("ALTER TABLE BAD ADD COLUMN X TEXT(1)"), DbError);
        EXPECT_THROW(connection.execute("INSERT INTO BAD SELECT * FROM BAD"), DbError);
        EXPECT_EQ(bytes("BAD.DBF"), data) << "never written: " << reason.toStdString();
    }
}
