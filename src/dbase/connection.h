#pragma once

#include "dbase/connectionstate.h"

#include <QString>
#include <memory>

// A connection on one directory of dBASE tables, as the program opened one on the data
// directory and one on the launcher directory. Tables are named with or without ".DBF", in any
// case, and found on disk without regard to case.
class Connection {
public:
    // The tables that statements rewrite are written through `output` when one is given: a
    // test hands a device that fails part way to play a full disk.
    explicit Connection(TableFile::OutputWrapper output = {});
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    // Kept for the program's settings; every recordset keeps its rows on the client.
    void setCursorLocation(CursorLocation location);
    CursorLocation cursorLocation() const;

    // Opens on a directory: either the directory itself or a connection string whose
    // "Data Source=" part names it (the other parts are accepted and ignored). Throws DbError
    // (DbErrors::Fail) when the directory does not exist, DbErrors::Open when already open.
    void open(const QString& connectionString);
    // Closes the connection; recordsets opened on it can no longer read or write tables.
    void close();
    bool isOpen() const;
    // The directory, ending with '/'; empty while closed.
    QString directory() const;

    // Runs a statement that returns no rows (CREATE TABLE, ALTER TABLE, SELECT ... INTO,
    // INSERT INTO ... SELECT) and returns the number of rows it wrote. A plain SELECT is
    // refused: it is opened through a Recordset. Throws DbError on any failure; a table that
    // the statement rewrites is replaced whole or not at all.
    qint64 execute(const QString& sql);

    // The file of a table named with or without ".DBF", matched without regard to case;
    // empty when the directory holds no such table.
    QString tablePath(const QString& table) const;

private:
    friend class Recordset;
    std::shared_ptr<ConnectionState> state_;
};
