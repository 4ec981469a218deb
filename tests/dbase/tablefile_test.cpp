// Table files as the other workstations' programs write them: stored forms, Nulls, code pages,
// kinds of table and damaged files.
#include "dbasefixture.h"

#include "dbase/dberror.h"
#include "dbase/dbfformat.h"
#include "dbase/recordset.h"
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
    const QList<FieldDef> fields = {textField("T", 5), numberField("N", 6, 2), dateField("D"),
                                    logicalField("L")};
    // Each record: deletion flag, then T (5), N (6), D (8) and L (1) in their stored forms.
    const QList<QByteArray> records = {" AB    12.5020240315T", "  x  y -3.0020000101y",
                                       "         ***00000000?", "          .5         ",
                                       "*DEL    1.0020240101F", "        0.0020240229n"};
    writeBytes("KINDS.DBF", rawTable(0x03, 0x57, fields, records));
    Recordset rs;
    rs.open("KINDS", connection, CursorType::Keyset, LockType::ReadOnly);
    ASSERT_EQ(rs.recordCount(), 5) << "the deleted record is hidden";
    EXPECT_EQ(rs.value("T").toString(), "AB");
    EXPECT_DOUBLE_EQ(rs.value("N").toDouble(), 12.5);
    EXPECT_EQ(rs.value("D").toDate(), QDate(2024, 3, 15));
    EXPECT_EQ(rs.value("L"), QVariant(true));
    rs.moveNext();
    EXPECT_EQ(rs.value(0).toString(), " x  y") << "leading blanks are kept";
    EXPECT_DOUBLE_EQ(rs.value(1).toDouble(), -3);
    EXPECT_EQ(rs.value(3), QVariant(true)) << "y reads as true";
    rs.moveNext();
    for (int i = 0; i < 4; ++i)
        EXPECT_TRUE(rs.value(i).isNull()) << "blank, starred, 00000000 and ? are Null: " << i;
    rs.moveNext();
    EXPECT_DOUBLE_EQ(rs.value(1).toDouble(), 0.5);
    EXPECT_TRUE(rs.value(2).isNull());
    EXPECT_TRUE(rs.value(3).isNull());
    rs.moveNext();
    EXPECT_EQ(rs.value(3), QVariant(false)) << "n reads as false";
}

TEST_F(TableFileTest, WritesStoredFormsAndNullAsBlanks) {
    makeTable("W.DBF",
              {textField("T", 4), numberField("N", 7, 2), dateField("D"), logicalField("L")},
              {{"AB", 3.14159, QDate(2023, 12, 1), true}, {"", QVariant(), QVariant(), false}});
    const QByteArray b = bytes("W.DBF");
    const int header = 32 + 4 * 32 + 1;
    EXPECT_EQ(b.mid(header, 21), QByteArray(" AB     3.1420231201T"));
    EXPECT_EQ(b.mid(header + 21, 21), QByteArray(20, ' ') + "F");
    EXPECT_EQ(b.at(header + 42), '\x1A');
    EXPECT_EQ(quint8(b[4]), 2) << "record count";
    const QDate today = QDate::currentDate();
    EXPECT_EQ(quint8(b[1]) + 1900, today.year());
    EXPECT_EQ(quint8(b[2]), today.month());
    EXPECT_EQ(quint8(b[3]), today.day());

    Recordset rs;
    rs.open("w", connection, CursorType::Keyset, LockType::Optimistic);
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

TEST_F(TableFileTest, DecodesAndEncodesWithTheLanguageDriverCodePage) {
    const QList<FieldDef> fields = {textField("T", 4)};
    writeBytes("OEM.DBF", rawTable(0x03, 0x02, fields, {QByteArray(" \x82t\x82 ", 5)}));
    writeBytes("ANSI.DBF", rawTable(0x03, 0x00, fields, {QByteArray(" \x80\xE9  ", 5)}));
    writeBytes("US.DBF", rawTable(0x03, 0x1B, fields, {QByteArray(" \xE9   ", 5)}));
    Recordset rs;
    rs.open("OEM", connection, CursorType::Keyset, LockType::Optimistic);
    EXPECT_EQ(rs.value(0).toString(), QString::fromUtf8("été")) << "code page 850";
    rs.setValue(0, QString::fromUtf8("Ça"));
    rs.update();
    EXPECT_EQ(bytes("OEM.DBF").mid(32 + 32 + 1 + 1, 2), QByteArray("\x80"
                                                                   "a"));
    rs.close();
    rs.open("ANSI", connection);
    EXPECT_EQ(rs.value(0).toString(), QString::fromUtf8("€é")) << "0 means Windows-1252";
    rs.close();
    rs.open("US", connection);
    EXPECT_EQ(rs.value(0).toString(), QString::fromUtf8("Θ")) << "code page 437";
}

TEST_F(TableFileTest, HeaderLengthIsAuthoritativeAndKindsAreChecked) {
    const QList<FieldDef> fields = {textField("T", 3)};
    // A NUL after the terminator, counted in the header length; dBASE IV with memo; FoxPro;
    // dBASE 7.
    writeBytes("PAD.DBF", rawTable(0x03, 0x57, fields, {" abc"}, QByteArray(1, '\0')));
    writeBytes("IV.DBF", rawTable(0x8B, 0x57, fields, {" abc"}));
    writeBytes("FOX.DBF", rawTable(0x30, 0x57, fields, {" abc"}));
    writeBytes("SEVEN.DBF", rawTable(0x04, 0x57, fields, {" abc"}));
    Recordset rs;
    for (const char* table : {"PAD", "IV"}) {
        rs.open(table, connection);
        EXPECT_EQ(rs.value(0).toString(), "abc") << table;
        rs.close();
    }
    EXPECT_DB_ERROR(rs.open("FOX", connection), DbErrors::UnsupportedFormat);
    EXPECT_DB_ERROR(rs.open("SEVEN", connection), DbErrors::UnsupportedFormat);
    EXPECT_FALSE(rs.isOpen());
}

TEST_F(TableFileTest, MemoFieldsReadAsNullAndStayUntouched) {
    const QList<FieldDef> fields = {textField("T", 2), {"NOTE", 'M', 10, 0}};
    writeBytes("MEMO.DBF", rawTable(0x8B, 0x57, fields, {" ab0000000042"}));
    Recordset rs;
    rs.open("MEMO", connection, CursorType::Keyset, LockType::Optimistic);
    EXPECT_TRUE(rs.value("NOTE").isNull());
    rs.setValue("T", "cd");
    rs.update();
    rs.close();
    connection.execute("ALTER TABLE MEMO ADD COLUMN X TEXT(2)");
    const QByteArray b = bytes("MEMO.DBF");
    EXPECT_EQ(quint8(b[0]), 0x8B);
    EXPECT_EQ(b.mid(32 + 3 * 32 + 1, 15), QByteArray(" cd0000000042  "));
}

TEST_F(TableFileTest, DamagedFilesGiveAClearErrorAndAreNeverWritten) {
    const QList<FieldDef> fields = {textField("T", 3)};
    const QByteArray good = rawTable(0x03, 0x57, fields, {" abc", " def"});
    QByteArray wrongLength = good;
    wrongLength[10] = 9;
    QByteArray unknownType = good;
    unknownType[32 + 11] = 'Q';
    QByteArray noTerminator = good;
    noTerminator[64] = 'X';
    QByteArray tooMany = good;
    tooMany[4] = 40;
    const QList<QPair<QByteArray, QString>> cases = {
        {good.left(20), "too short"},     {good.left(good.size() - 5), "counts 2 records"},
        {wrongLength, "record length 9"}, {unknownType, "unknown type 'Q'"},
        {noTerminator, "no terminator"},  {tooMany, "counts 40 records"}};
    for (const auto& [data, reason] : cases) {
        writeBytes("BAD.DBF", data);
        try {
            Recordset rs;
            rs.open("SELECT * FROM BAD", connection, CursorType::Keyset, LockType::Optimistic);
            ADD_FAILURE() << "opened: " << reason.toStdString();
        } catch (const DbError& e) {
            EXPECT_EQ(e.number(), DbErrors::Damaged);
            EXPECT_TRUE(e.description().contains("BAD")) << e.description().toStdString();
            EXPECT_TRUE(e.description().contains(reason)) << e.description().toStdString();
        }
        EXPECT_THROW(connection.execute("ALTER TABLE BAD ADD COLUMN X TEXT(1)"), DbError);
        EXPECT_THROW(connection.execute("INSERT INTO BAD SELECT * FROM BAD"), DbError);
        EXPECT_EQ(bytes("BAD.DBF"), data) << "never written: " << reason.toStdString();
    }
}
