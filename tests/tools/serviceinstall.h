#pragma once

#include "arjarchive.h"
#include "demotables.h"
#include "support/tempinstall.h"
#include "support/testfiles.h"

#include "dbase/connection.h"
#include "dbase/recordset.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

struct ItemRow {
    int position = 0; // 1-based, table order
    QString fichier;
    QVariant dateEff;
    QVariant dateStk;
};

// A temporary installation with the demo tables and the stand-in service program in its data
// directory, as the start-up leaves it.
class ServiceInstallTest : public ::testing::Test {
protected:
    void SetUp() override {
        writeDemoTables(install.drive(), today);
        const QString built = QStringLiteral(MERCANTEL_BINARY_DIR "/src/") + HiddenName;
        ASSERT_TRUE(QFile::copy(built, data() + HiddenName)) << built.toStdString();
        QFile::setPermissions(data() + HiddenName, QFile::permissions(built));
    }

    QString data() const { return install.dir(QStringLiteral("NVNV")); }
    QString prg() const { return install.dir(QStringLiteral("PRG")); }
    QString info() const { return install.dir(QStringLiteral("NVINFO")); }

    // Runs the service program as the desktop program does; returns its exit status.
    int run(const QStringList& arguments) {
        return RunProgram(data() + HiddenName, arguments).status;
    }

    QStringList logLines() const { return LoggedLines(data() + QStringLiteral("NVSERV.LOG")); }

    // Every row of a table: position, FICHIER and the two dates.
    QList<ItemRow> rows(const QString& table) const {
        Connection connection;
        connection.open(data());
        Recordset rs;
        rs.open(table, connection, CursorType::Static, LockType::ReadOnly);
        QList<ItemRow> all;
        for (rs.moveFirst(); !rs.eof(); rs.moveNext())
            all << ItemRow{rs.absolutePosition(), rs.value("FICHIER").toString(),
                           rs.value("DATEEFF"), rs.value("DATESTK")};
        return all;
    }

    // DATESTK of every row.
    QVariantList stockDates(const QString& table) const {
        QVariantList dates;
        for (const ItemRow& row : rows(table))
            dates << row.dateStk;
        return dates;
    }

    // The first activated row whose dates differ.
    ItemRow toUpdate(const QString& table) const {
        for (const ItemRow& row : rows(table))
            if (row.dateStk != row.dateEff && row.dateEff.toDate() <= today &&
                !row.dateEff.isNull())
                return row;
        ADD_FAILURE() << "no row to update in " << table.toStdString();
        return {};
    }

    QStringList versions() const {
        return TableRows(prg(), QStringLiteral("SELECT NVVERSION FROM NVVERS"));
    }
    QStringList subjects() const {
        return TableRows(info(), QStringLiteral("SELECT SUJET FROM NVINDEX"));
    }

    static QByteArray manifest(const QString& fichier, const QByteArray& extra = {}) {
        return "FICHIER=" + fichier.toLatin1() + "\r\n" + extra;
    }

    // Files of a directory other than the tables and programs the installation started with.
    static QStringList strays(const QString& dir) {
        return QDir(dir).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    const QString HiddenName = install.serviceProgramName();
    const QDate today{2026, 11, 23};
    TempInstall install;
};
