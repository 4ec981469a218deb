#pragma once

#include "dbase/connection.h"
#include "dbase/fielddef.h"
#include "dbase/recordset.h"
#include "dbase/tablewriter.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

inline FieldDef textField(const char* name, int length) {
    return {name, 'C', length, 0};
}
inline FieldDef numberField(const char* name, int length, int decimals = 0) {
    return {name, 'N', length, decimals};
}
inline FieldDef dateField(const char* name) {
    return {name, 'D', 8, 0};
}
inline FieldDef logicalField(const char* name) {
    return {name, 'L', 1, 0};
}

// One field of every row, from the first (Null as "<null>").
inline QStringList column(Recordset& rs, const QString& field) {
    QStringList values;
    for (rs.moveFirst(); !rs.eof(); rs.moveNext())
        values << (rs.value(field).isNull() ? QStringLiteral("<null>")
                                            : rs.value(field).toString());
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

    void makeTable(const QString& file, const QList<FieldDef>& fields,
                   const QList<QVariantList>& rows, const QList<bool>& deleted = {}) {
        NewTable t;
        t.fields = fields;
        t.rows = rows;
        t.deleted = deleted;
        writeNewTable(path(file), t);
    }

    QByteArray bytes(const QString& file) const {
        QFile f(path(file));
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }

    void writeBytes(const QString& file, const QByteArray& data) const {
        QFile f(path(file));
        ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
        f.write(data);
    }

    // One field of a table as stored now, read through a recordset of its own.
    QStringList stored(const QString& table, const QString& field) {
        Recordset fresh;
        fresh.open(table, connection);
        return column(fresh, field);
    }

    QTemporaryDir dir;
    Connection connection;
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
