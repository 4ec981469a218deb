#pragma once

#include "arjarchive.h"
#include "demotables.h"
#include "support/tempinstall.h"
#include "support/testfiles.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

struct ItemRow {
    int position = 0; // 1-based, table order
    QString fichier;
    QString dateEff; // yyyy-MM-dd, empty when Null
    QString dateStk;
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
        QList<ItemRow> all;
        for (const QString& row :
             TableRows(data(), "SELECT FICHIER, DATEEFF, DATESTK FROM " + table)) {
            const QStringList cells = row.split(u'|');
            all << ItemRow{int(all.size()) + 1, cells[0], cells[1], cells[2]};
        }
        return all;
    }

    // DATESTK of every row.
    QStringList stockDates(const QString& table) const {
        return TableRows(data(), "SELECT DATESTK FROM " + table);
    }

    // The first activated row whose dates differ.
    ItemRow toUpdate(const QString& table) const {
        for (const ItemRow& row : rows(table))
            if (row.dateStk != row.dateEff && !row.dateEff.isEmpty() &&
                row.dateEff <= today.toString(Qt::ISODate))
                return row;
        ADD_FAILURE() << "no row to update in " << table.toStdString();
        return {};
    }

    QStringList versions() const { return TableRows(prg(), "SELECT NVVERSION FROM NVVERS"); }
    QStringList subjects() const { return TableRows(info(), "SELECT SUJET FROM NVINDEX"); }

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
