// The demo installation's tables: their layouts, the four kinds of lists, associations that
// name only activated catalogues, and every statement of the program answered on them.
#include "../../tools/demo-install/demotables.h"

#include "app/appstate.h"
#include "data/moddata.h"
#include "dbase/recordset.h"
#include "support/scriptedprompter.h"

#include <QDir>
#include <QFile>
#include <QSet>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

class DemoTablesTest : public ::testing::Test {
protected:
    void SetUp() override {
        ResetAppState();
        ASSERT_TRUE(root.isValid());
        writeDemoTables(root.path(), today);
        App().DataPath = root.path() + "/NVNV/";
        App().PrgPath = root.path() + "/PRG/";
    }
    void TearDown() override { CloseData(); }

    QTemporaryDir root;
    const QDate today{2026, 11, 23};
};

} // namespace

TEST_F(DemoTablesTest, PriceListsOfEveryKindWithAssociationsToActivatedCatalogues) {
    ScriptedPrompter prompts;
    ASSERT_TRUE(OpenData());
    EXPECT_EQ(MPDetectInstal(), "1");
    ASSERT_EQ(rsPrixList.fieldCount(), 46);
    EXPECT_EQ(rsPrixList.field(45), (FieldDef{"CATNO", 'C', 254, 0}));
    EXPECT_GE(rsPrixList.recordCount(), 55);

    QSet<QString> activeCatalogues;
    for (rsCataList.moveFirst(); !rsCataList.eof(); rsCataList.moveNext())
        if (rsCataList.value("UTILISER").toBool())
            activeCatalogues << rsCataList.value("FICHIER").toString();
    EXPECT_EQ(rsCataList.recordCount(), 12);
    EXPECT_EQ(rsCataList.fieldCount(), 5 + 27);

    int upToDate = 0, toUpdate = 0, upcoming = 0, inactive = 0, associated = 0;
    for (rsPrixList.moveFirst(); !rsPrixList.eof(); rsPrixList.moveNext()) {
        const QVariant eff = rsPrixList.value("DATEEFF");
        const QVariant stk = rsPrixList.value("DATESTK");
        if (!rsPrixList.value("UTILISER").toBool()) {
            ++inactive;
            continue;
        }
        EXPECT_FALSE(rsPrixList.value("CODEGRO").isNull());
        if (eff.toDate() > today)
            ++upcoming;
        else if (stk.isNull() || stk != eff)
            ++toUpdate;
        else
            ++upToDate;
        const QString catno = rsPrixList.value("CATNO").toString();
        associated += catno.isEmpty() ? 0 : 1;
        for (const QString& code : catno.split(';', Qt::SkipEmptyParts))
            EXPECT_TRUE(activeCatalogues.contains(code)) << code.toStdString();
    }
    EXPECT_GE(upToDate, 10);
    EXPECT_GE(toUpdate, 10);
    EXPECT_GE(upcoming, 10);
    EXPECT_GE(inactive, 10);
    EXPECT_GE(associated, 20);
    EXPECT_EQ(rsDepart.recordCount(), 13) << "DEPART has 15 rows, 13 are read";
}

TEST_F(DemoTablesTest, TheOtherStatementsOfTheProgramAreAnswered) {
    Connection data, prg, info;
    data.open(App().DataPath);
    prg.open(App().PrgPath);
    info.open(root.path() + "/NVINFO/");
    Recordset rs;
    // The shared recordsets and PARAPROG are opened in the test above.
    const QList<QPair<Connection*, QString>> queries = {
        {&prg, "SELECT * FROM NVVERS"},
        {&prg, "NVAPPEL.DBF"},
        {&info, "SELECT * FROM NVINDEX ORDER BY ANNONCEUR+SUJET"}};
    for (const auto& [connection, source] : queries) {
        SCOPED_TRACE(source.toStdString());
        rs.open(source, *connection, CursorType::Keyset, LockType::Optimistic);
        EXPECT_GT(rs.recordCount(), 0);
        rs.close();
    }
    rs.open("SELECT * FROM NVINDEX ORDER BY ANNONCEUR+SUJET", info);
    EXPECT_EQ(rs.fieldCount(), 11);
    EXPECT_EQ(rs.value(1).toString(), "BOSCH");
    rs.close();

    // The conversion's statements on the table before CATNO.
    ASSERT_TRUE(QFile::remove(App().DataPath + "PRIXLIST.DBF"));
    ASSERT_TRUE(
        QFile::copy(App().DataPath + "PRIXLIST.OLD-FORM.DBF", App().DataPath + "PRIXLIST.DBF"));
    data.execute("SELECT * INTO PRIXTEMP FROM PRIXLIST WHERE FICHIER IS NULL");
    data.execute("ALTER TABLE PRIXTEMP ADD COLUMN CATNO TEXT(254)");
    const qint64 copied = data.execute("INSERT INTO PRIXTEMP SELECT * FROM PRIXLIST");
    rs.open("PRIXTEMP.DBF", data, CursorType::Keyset, LockType::Optimistic);
    EXPECT_EQ(rs.fieldCount(), 46);
    EXPECT_EQ(rs.recordCount(), copied);
}
