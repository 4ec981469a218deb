#pragma once

#include "dbase/dberror.h"
#include "dbase/recordset.h"
#include "dbase/tablewriter.h"
#include "support/testfiles.h"

#include <QDir>
#include <QTemporaryDir>
#include <gtest/gtest.h>

// One field of every row of an open recordset, from the first.
inline QStringList column(Recordset& rs, const QString& field) {
    QStringList values;
    for (rs.moveFirst(); !rs.eof(); rs.moveNext())
        values << rs.value(field).toString();
    return values;
}

// A directory of tables for one test, and a connection on it.
class DbaseTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dir.isValid());
        connection.open(dir.path());
    }

    QString path(const QString& file) const { return QDir(dir.path()).filePath(file); }
    QByteArray bytes(const QString& file) const { return ReadBytes(path(file)); }
    // The rows of a query as stored now, through a connection of their own.
    QStringList rows(const QString& sql) const { return TableRows(dir.path(), sql); }
    QStringList storedCodes() const { return rows("SELECT CODEGRO FROM PRIXLIST"); }

    void makeTable(const QString& file, const QList<FieldDef>& fields,
                   const QList<QVariantList>& rows, const QList<bool>& deleted = {}) {
        writeNewTable(path(file), {fields, rows, deleted});
    }

    // Opens rs on a table or a query, for editing unless told otherwise.
    void open(const QString& source, LockType lock = LockType::Optimistic) {
        rs.open(source, connection, CursorType::Keyset, lock);
    }

    QTemporaryDir dir;
    Connection connection;
    Recordset rs;
};

// Runs a statement and expects the engine to refuse it with a given error number.
#define EXPECT_DB_ERROR(statement, expectedNumber)                                                 \
    do {                                                                                           \
        try {                                                                                      \
            statement;                                                                             \
            ADD_FAILURE() << "no error from " #statement;                                          \
        } catch (const DbError& e) {                                                               \
            EXPECT_EQ(e.number(), qint64(expectedNumber)) << e.description().toStdString();        \
        }                                                                                          \
    } while (false)
