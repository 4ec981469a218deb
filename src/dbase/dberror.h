#pragma once

#include <QString>
#include <exception>
#include <string>

// A failure of the engine or of file code: a number as the data provider gave it (for example
// 0x80004005 for a table another program holds) and a description for the user.
class DbError : public std::exception {
public:
    DbError(qint64 number, QString description)
        : number_(number), description_(std::move(description)), what_(description_.toStdString()) {
    }

    qint64 number() const { return number_; }
    const QString& description() const { return description_; }
    const char* what() const noexcept override { return what_.c_str(); }

private:
    qint64 number_;
    QString description_;
    std::string what_;
};

// The numbers the engine raises, as the Windows data provider reported them (HRESULTs as the
// signed 32-bit values the program's error handlers saw).
namespace DbErrors {
// Unspecified failure: the table is held by another workstation (its file lock, or the record
// lock an update needs), or the file cannot be opened.
constexpr qint64 Fail = -2147467259; // 0x80004005
// A row changed on disk by another workstation since it was read; the update is refused.
constexpr qint64 RowChanged = -2147217864; // 0x80040E38
// The statement cannot be parsed, or asks for something the engine does not do.
constexpr qint64 Syntax = -2147217900; // 0x80040E14
// The statement names a table that is not in the directory.
constexpr qint64 NoSuchTable = -2147217865; // 0x80040E37
// A field name or ordinal that the recordset or table does not have.
constexpr qint64 NoSuchField = 3265;
// A table or field that a statement would create already exists.
constexpr qint64 AlreadyExists = 3010;
// A value that does not fit the field (a text where a number or date is stored...).
constexpr qint64 TypeMismatch = -2147217913; // 0x80040E07
// A damaged table file (truncated, header and size disagreeing, unknown field type...).
constexpr qint64 Damaged = 3343;
// A table kind the engine does not read (FoxPro, dBASE 7...).
constexpr qint64 UnsupportedFormat = 3344;
// The current row is before the first or after the last row.
constexpr qint64 NoCurrentRow = 3021;
// The object (recordset or connection) is closed.
constexpr qint64 Closed = 3704;
// The setting cannot change while the object is open.
constexpr qint64 Open = 3705;
// The recordset does not allow the operation (read-only, wrong lock type...).
constexpr qint64 NotAllowed = 3251;
// Reading or writing the file failed.
constexpr qint64 Io = 3043;
} // namespace DbErrors
