#pragma once

#include "dbase/fielddef.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QDate>
#include <QList>
#include <QVariant>

class TextCodec;

// The header of a dBASE III/IV table: what the file says about itself, and where each field
// sits in a record (after the one-byte deletion flag).
struct TableHeader {
    quint8 version = 0x03;
    QDate lastUpdate;
    quint32 recordCount = 0;
    quint16 headerLength = 0;
    quint16 recordLength = 0;
    quint8 languageDriver = 0x57;
    QList<FieldDef> fields;
    QList<int> offsets;

    // Ordinal of a field named without regard to case, or -1.
    int fieldIndex(const QString& name) const;
    bool hasMemo() const;
    qint64 recordOffset(quint32 recno) const { // recno counts from 1
        return headerLength + qint64(recno - 1) * recordLength;
    }
};

namespace Dbf {

constexpr char Deleted = '*';
constexpr char Live = ' ';
constexpr char EndMark = '\x1A';
constexpr char Terminator = '\x0D';
constexpr int MaxFieldNameLength = 10;

// Reads and checks the header at the start of a file of fileSize bytes. A damaged header
// (truncated, no terminator, unknown field type, lengths that disagree with each other or
// with the size, records beyond the end) throws DbError (DbErrors::Damaged); a kind of table
// that is not dBASE III/IV (FoxPro, Visual FoxPro, dBASE 7) throws DbErrors::UnsupportedFormat.
// Both name the table.
TableHeader parseHeader(QByteArrayView bytes, qint64 fileSize, const QString& tableName);

// A header for new fields: offsets, record and header lengths computed, no records.
TableHeader makeHeader(const QList<FieldDef>& fields, quint8 languageDriver, quint8 version = 0x03);
// Checks the definition of a field the engine is asked to create; throws DbError.
void checkNewField(const FieldDef& field);
// The bytes of a header (descriptors and terminator included), dated lastUpdate.
QByteArray headerBytes(const TableHeader& header);
// The 7 bytes at offset 1: last-update date and record count.
QByteArray dateAndCount(const QDate& lastUpdate, quint32 recordCount);

// The value of one field of a record, as the program sees it (Null for blanks, see
// Recordset).
QVariant decodeField(const char* data, const FieldDef& field, const TextCodec& codec);
// Writes a value into a field's bytes (field.length bytes at data); Null and empty texts
// store blanks. Throws DbError (DbErrors::TypeMismatch) when the value does not fit.
void encodeField(char* data, const FieldDef& field, const QVariant& value, const TextCodec& codec);
// The stored forms read fast: a number (blanks around it; blank or starred is no number) and
// a date (YYYYMMDD; blank, 00000000 or impossible is no date).
bool parseNumber(const char* data, int length, double& value);
bool parseDate(const char* data, QDate& date);
// A record of blanks, not deleted.
QByteArray blankRecord(const TableHeader& header);

} // namespace Dbf
