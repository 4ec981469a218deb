// The data store on the demo installation: opening, the installation kind, closing, and the
// binding of the configuration pane.
#include "../../tools/demo-install/demotables.h"

#include "app/appstate.h"
#include "app/messages.h"
#include "data/moddata.h"
#include "data/prixfields.h"
#include "dbase/tablewriter.h"
#include "support/scriptedprompter.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

class DataStoreTest : public ::testing::Test {
protected:
    void SetUp() override {
        ResetAppState();
        writeDemoTables(root.path(), today);
        App().DataPath = root.path() + "/NVNV/";
        App().PrgPath = root.path() + "/PRG/";
        App().ContactLine = LoadText(34);
    }
    void TearDown() override {
        BindConfig(false);
        ConfigBinding().clearControls();
        CloseData();
    }

    void writeParaprog(const QStringList& programs) {
        NewTable t;
        t.fields = {FieldDef::text("PROGRAM", 40)};
        for (const QString& p : programs)
            t.rows << QVariantList{p};
        writeNewTable(App().DataPath + "PARAPROG.DBF", t);
    }

    QTemporaryDir root;
    const QDate today{2026, 11, 23};
    ScriptedPrompter prompts;
};

} // namespace

// The demo lists are of every kind, associated only with activated catalogues.
TEST_F(DataStoreTest, OpensTheFiveRecordsetsInTheirOrderTellsTheKindAndCloses) {
    ASSERT_TRUE(OpenData());
    EXPECT_EQ(rsPrixList.value("DESC").toString(), "ACDELCO - Alternators") << "by description";
    EXPECT_EQ(rsCataList.value("DESC").toString(), "Agricole");
    ASSERT_EQ(rsPrixList.fieldCount(), PrixField::Count);
    EXPECT_EQ(rsPrixList.field(PrixField::CatNo), (FieldDef{"CATNO", 'C', 254, 0}));
    EXPECT_EQ(rsPrixCodes.fieldCount(), 2);
    EXPECT_EQ(rsCataList.fieldCount(), 5 + 27);
    EXPECT_EQ(rsDepart.recordCount(), 13) << "DEPART has 15 rows, 13 are read";

    QSet<QString> activeCatalogues;
    for (rsCataList.moveFirst(); !rsCataList.eof(); rsCataList.moveNext())
        if (rsCataList.value("UTILISER").toBool())
            activeCatalogues << rsCataList.value("FICHIER").toString();
    int kinds[4] = {}; // up to date, to update, upcoming, not activated
    int associated = 0;
    for (rsPrixList.moveFirst(); !rsPrixList.eof(); rsPrixList.moveNext()) {
        const QVariant eff = rsPrixList.value("DATEEFF");
        const bool active = rsPrixList.value("UTILISER").toBool();
        ++kinds[!active ? 3 : eff.toDate() > today ? 2 : rsPrixList.value("DATESTK") != eff];
        EXPECT_TRUE(!active || !rsPrixList.value("CODEGRO").isNull());
        const QString catno = rsPrixList.value("CATNO").toString();
        associated += catno.isEmpty() ? 0 : 1;
        for (const QString& code : catno.split(';', Qt::SkipEmptyParts))
            EXPECT_TRUE(activeCatalogues.contains(code)) << code.toStdString();
    }
    for (int count : kinds)
        EXPECT_GE(count, 10);
    EXPECT_GE(associated, 20);

    // The installation kind comes from the second row of PARAPROG.
    EXPECT_EQ(MPDetectInstal(), "1");
    writeParaprog({"x", "Mercantel, also sold as tallYRATE."});
    EXPECT_EQ(MPDetectInstal(), "2") << "any case, among other words";
    writeParaprog({"TALLYRATE", "Mercantel"});
    EXPECT_EQ(MPDetectInstal(), "1") << "only the second row counts";
    writeParaprog({"Tallyrate"});
    prompts.expectMessage("errMPDetectInstal: 3021 Either BOF or EOF is True, or the current "
                          "record has been deleted. Requested operation requires a current "
                          "record. " +
                          LoadText(34));
    EXPECT_EQ(MPDetectInstal(), "1");
    App().UpdateMode = true;
    QFile::remove(App().DataPath + "PARAPROG.DBF");
    EXPECT_EQ(MPDetectInstal(), "1") << "update mode reads nothing";

    CloseData();
    for (Recordset* rs : {&rsPrixList, &rsPrixCodes, &rsCataList, &rsCataFiles, &rsDepart})
        EXPECT_FALSE(rs->isOpen());
    EXPECT_FALSE(connData.isOpen());
    EXPECT_FALSE(connPrg.isOpen());
    // Directories copied from Windows keep their names in any case.
    ASSERT_TRUE(QDir(root.path()).rename("NVNV", "nvnv"));
    ASSERT_TRUE(QDir(root.path()).rename("PRG", "Prg"));
    EXPECT_TRUE(OpenData());
}

// Message 1079 tells the dealer that another workstation uses Partdex: only a real lock says so.
TEST_F(DataStoreTest, OnlyATableHeldByAnotherWorkstationShowsMessage79) {
    QProcess peer;
    peer.start(QStringLiteral(DBASE_PEER), {"lock-file", App().DataPath + "PRIXLIST.DBF"});
    ASSERT_TRUE(peer.waitForReadyRead(10000));
    ASSERT_EQ(peer.readLine().trimmed(), "ready");
    prompts.expectMessage(LoadText(79));
    EXPECT_FALSE(OpenData());
    peer.closeWriteChannel();
    peer.waitForFinished();

    QFile::remove(App().PrgPath + "DEPART.DBF");
    prompts.expectMessage("errOpenData: The table DEPART is not in " +
                          QDir::toNativeSeparators(QDir(App().PrgPath).absolutePath() + "/") + ".");
    EXPECT_FALSE(OpenData());

    ASSERT_TRUE(QDir(App().DataPath).removeRecursively());
    prompts.expectMessageMatching("^errOpenData: .*" +
                                  QRegularExpression::escape(App().DataPath.chopped(1)));
    EXPECT_FALSE(OpenData()) << "a missing directory is named";
}

TEST_F(DataStoreTest, BoundControlsShowTheCurrentRowAndWriteItsPendingValues) {
    ASSERT_TRUE(OpenData());
    QLineEdit code, percent;
    QComboBox depart;
    QCheckBox option;
    FieldBinding& binding = ConfigBinding();
    binding.addLineEdit(&code, PrixField::CodeGro);
    binding.addLineEdit(&percent, PrixField::CoutPct);
    binding.addComboBox(&depart, DepartementField, rsDepart, "DESCR", "CODEP");
    binding.addCheckBox(&option, FirstOptionField);
    BindConfig(true);
    EXPECT_EQ(percent.text(), "10");
    EXPECT_EQ(depart.count(), 13);
    EXPECT_EQ(depart.currentText(), "Klaxons");
    EXPECT_TRUE(option.isChecked());
    const QString storedCode = code.text();
    QList<int> refused;
    QObject::connect(&binding, &FieldBinding::editRefused,
                     [&](int field, const QString&) { refused << field; });

    code.setText("XY");
    Q_EMIT code.textEdited("XY"); // as typing does
    percent.setText("1.2.3");
    Q_EMIT percent.textEdited("1.2.3");
    EXPECT_FALSE(binding.commit(&percent));
    EXPECT_EQ(percent.text(), "1.2.3") << "a refused value stays typed";
    EXPECT_EQ(refused, QList<int>{PrixField::CoutPct});
    percent.setText("12.");
    Q_EMIT percent.textEdited("12.");
    EXPECT_TRUE(binding.commit(&percent));
    EXPECT_EQ(percent.text(), "12.") << "a committed text is not rewritten";
    EXPECT_EQ(rsPrixList.value(PrixField::CodeGro).toString(), storedCode) << "not yet committed";
    EXPECT_TRUE(binding.commit());
    depart.setCurrentIndex(2);
    Q_EMIT depart.activated(2);
    option.click();
    EXPECT_EQ(rsPrixList.value(PrixField::CodeGro).toString(), "XY");
    EXPECT_DOUBLE_EQ(rsPrixList.value(PrixField::CoutPct).toDouble(), 12);
    EXPECT_EQ(rsPrixList.value(PrixField::Departem).toString(), "C");
    EXPECT_EQ(rsPrixList.value(PrixField::ChDesc1), QVariant(false));
    EXPECT_EQ(rsPrixList.storedValue(PrixField::CodeGro).toString(), storedCode) << "pending";
    rsPrixList.cancelUpdate();
    EXPECT_EQ(code.text(), storedCode) << "a cancelled edit shows the stored value again";

    BindConfig(false);
    rsPrixList.moveNext();
    EXPECT_EQ(depart.currentText(), "Klaxons") << "unbound controls no longer follow the row";
    Q_EMIT code.textEdited("QQ");
    binding.commit();
    EXPECT_EQ(rsPrixList.editMode(), EditMode::None) << "nor write into it";
}

// The demo keeps PRIXLIST's form before CATNO, on which the conversion's statements run.
TEST_F(DataStoreTest, TheDemosOlderPriceListTakesTheConversionsStatements) {
    ASSERT_TRUE(QFile::remove(App().DataPath + "PRIXLIST.DBF"));
    ASSERT_TRUE(
        QFile::copy(App().DataPath + "PRIXLIST.OLD-FORM.DBF", App().DataPath + "PRIXLIST.DBF"));
    Connection data;
    data.open(App().DataPath);
    data.execute("SELECT * INTO PRIXTEMP FROM PRIXLIST WHERE FICHIER IS NULL");
    data.execute("ALTER TABLE PRIXTEMP ADD COLUMN CATNO TEXT(254)");
    const qint64 copied = data.execute("INSERT INTO PRIXTEMP SELECT * FROM PRIXLIST");
    Recordset rs;
    rs.open("PRIXTEMP.DBF", data, CursorType::Keyset, LockType::Optimistic);
    EXPECT_EQ(rs.fieldCount(), PrixField::Count);
    EXPECT_GT(copied, 50);
    EXPECT_EQ(rs.recordCount(), copied);
}
