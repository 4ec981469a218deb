// The data store on a small installation: opening, the installation kind, closing, and the
// binding of the configuration pane.
#include "app/appstate.h"
#include "app/messages.h"
#include "data/moddata.h"
#include "dbase/dberror.h"
#include "dbase/tablewriter.h"
#include "support/scriptedprompter.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <memory>

namespace {

FieldDef text(const char* name, int length) {
    return {name, 'C', length, 0};
}
FieldDef logical(const char* name) {
    return {name, 'L', 1, 0};
}

void write(const QString& path, const QList<FieldDef>& fields, const QList<QVariantList>& rows) {
    NewTable t;
    t.fields = fields;
    t.rows = rows;
    writeNewTable(path, t);
}

// PRIXLIST fields up to CH_COUT (0 to 19): enough for the pane's bound controls.
QList<FieldDef> prixListFields() {
    QList<FieldDef> f = {logical("UTILISER"), text("DESC", 30), text("FICHIER", 8)};
    f << FieldDef{"DATEEFF", 'D', 8, 0} << FieldDef{"DATESTK", 'D', 8, 0} << text("CODEGRO", 4)
      << logical("PASOBLIGER");
    for (const char* code : {"CODENVC", "CODEUNI", "CODEACK", "CODEUAP"})
        f << text(code, 4);
    f << FieldDef{"COUTDE", 'N', 1, 0};
    for (const char* pct : {"COUTPCT", "PCT1", "PCT2", "PCT3"})
        f << FieldDef{pct, 'N', 6, 2};
    f << text("DEPARTEM", 2) << logical("CH_DESC1") << logical("CH_DESC2") << logical("CH_COUT");
    return f;
}

QVariantList prixListRow(const char* desc, const char* fichier, const char* code,
                         const char* depart, bool option) {
    QVariantList row(20);
    row[0] = true;
    row[1] = desc;
    row[2] = fichier;
    row[5] = code;
    row[12] = 10.5;
    row[16] = depart;
    row[17] = option;
    row[18] = !option;
    return row;
}

class DataStoreTest : public ::testing::Test {
protected:
    void SetUp() override {
        ResetAppState();
        ASSERT_TRUE(root.isValid());
        QDir(root.path()).mkpath("NVNV");
        QDir(root.path()).mkpath("PRG");
        App().DataPath = root.path() + "/NVNV/";
        App().PrgPath = root.path() + "/PRG/";
        App().ContactLine = LoadText(34);
        write(App().DataPath + "PRIXLIST.DBF", prixListFields(),
              {prixListRow("Zinc", "ZNC", "ZN", "02", true),
               prixListRow("Brakes", "BRK", "AB", "01", false)});
        write(App().DataPath + "CATALIST.DBF", {text("FICHIER", 3), text("DESC", 30)},
              {{"C2", "Second"}, {"C1", "First"}});
        writeParaprog({"MENU", "Tallyrate 2004"});
        QList<QVariantList> departs;
        for (int i = 1; i <= 20; ++i)
            departs << QVariantList{QStringLiteral("%1").arg(i, 2, 10, QLatin1Char('0')),
                                    QStringLiteral("Department %1").arg(i)};
        write(App().PrgPath + "DEPART.DBF", {text("CODEP", 2), text("DESCR", 20)}, departs);
    }

    void TearDown() override {
        BindConfig(false);
        ConfigBinding().clearControls();
        CloseData();
    }

    void writeParaprog(const QStringList& programs) {
        QList<QVariantList> rows;
        for (const QString& p : programs)
            rows << QVariantList{p};
        write(App().DataPath + "PARAPROG.DBF", {text("PROGRAM", 40)}, rows);
    }

    QTemporaryDir root;
};

} // namespace

TEST_F(DataStoreTest, OpensTheFiveRecordsetsInTheirOrderAndClosesThem) {
    ScriptedPrompter prompts;
    ASSERT_TRUE(OpenData());
    EXPECT_EQ(rsPrixList.value("DESC").toString(), "Brakes") << "sorted by description";
    EXPECT_EQ(rsPrixCodes.fieldCount(), 2);
    EXPECT_EQ(rsCataList.value("FICHIER").toString(), "C1");
    EXPECT_EQ(rsDepart.recordCount(), 13) << "only the first 13 departments";
    CloseData();
    for (Recordset* rs : {&rsPrixList, &rsPrixCodes, &rsCataList, &rsCataFiles, &rsDepart})
        EXPECT_FALSE(rs->isOpen());
    EXPECT_FALSE(connData.isOpen());
    EXPECT_FALSE(connPrg.isOpen());

    // Directories copied from Windows keep their names in any case.
    ASSERT_TRUE(QDir(root.path()).rename("NVNV", "nvnv"));
    ASSERT_TRUE(QDir(root.path()).rename("PRG", "Prg"));
    EXPECT_TRUE(OpenData());
    EXPECT_EQ(rsDepart.recordCount(), 13);
}

// Message 1079 tells the dealer that another workstation uses Partdex: only a real lock says so.
TEST_F(DataStoreTest, OnlyATableHeldByAnotherWorkstationShowsMessage79) {
    QProcess peer;
    peer.start(QStringLiteral(DBASE_PEER), {"lock-file", App().DataPath + "PRIXLIST.DBF"});
    ASSERT_TRUE(peer.waitForReadyRead(10000));
    ASSERT_EQ(peer.readLine().trimmed(), "ready");
    ScriptedPrompter prompts;
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

TEST_F(DataStoreTest, InstallationKindFromTheSecondRowOfParaprog) {
    ScriptedPrompter prompts;
    ASSERT_TRUE(OpenData());
    EXPECT_EQ(MPDetectInstal(), "2");
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
}

TEST_F(DataStoreTest, BoundControlsShowTheCurrentRowAndWriteItsPendingValues) {
    ScriptedPrompter prompts;
    ASSERT_TRUE(OpenData());
    QLineEdit desc, code, percent;
    QComboBox depart;
    QCheckBox option0, option1;
    FieldBinding& binding = ConfigBinding();
    binding.addLineEdit(&desc, 1);
    binding.addLineEdit(&code, 5);
    binding.addLineEdit(&percent, 12);
    binding.addComboBox(&depart, DepartementField, rsDepart, "DESCR", "CODEP");
    binding.addCheckBox(&option0, FirstOptionField);
    binding.addCheckBox(&option1, FirstOptionField + 1);
    BindConfig(true);
    EXPECT_EQ(desc.text(), "Brakes");
    EXPECT_EQ(percent.text(), "10.5");
    EXPECT_EQ(depart.count(), 13);
    EXPECT_EQ(depart.currentText(), "Department 1");
    EXPECT_FALSE(option0.isChecked());
    EXPECT_TRUE(option1.isChecked());

    code.setText("XY");
    Q_EMIT code.textEdited("XY"); // as typing does
    EXPECT_EQ(rsPrixList.value("CODEGRO").toString(), "AB") << "typed, not yet committed";
    EXPECT_TRUE(binding.hasTyped(&code));
    EXPECT_TRUE(binding.commit());
    EXPECT_FALSE(binding.hasTyped(&code));
    depart.setCurrentIndex(2);
    Q_EMIT depart.activated(2);
    option0.click();
    EXPECT_EQ(rsPrixList.value("CODEGRO").toString(), "XY");
    EXPECT_EQ(rsPrixList.value("DEPARTEM").toString(), "03");
    EXPECT_EQ(rsPrixList.value("CH_DESC1"), QVariant(true));
    EXPECT_EQ(rsPrixList.storedValue(5).toString(), "AB") << "pending, not yet saved";

    rsPrixList.cancelUpdate();
    EXPECT_EQ(code.text(), "AB") << "a cancelled edit shows the stored value again";
    rsPrixList.moveNext();
    EXPECT_EQ(desc.text(), "Zinc");
    EXPECT_EQ(depart.currentText(), "Department 2");

    BindConfig(false);
    rsPrixList.moveFirst();
    EXPECT_EQ(desc.text(), "Zinc") << "unbound controls no longer follow the row";
    Q_EMIT code.textEdited("QQ");
    binding.commit();
    EXPECT_EQ(rsPrixList.value("CODEGRO").toString(), "AB") << "nor write into it";
    EXPECT_EQ(rsPrixList.editMode(), EditMode::None);
}

TEST_F(DataStoreTest, ATypedValueThatDoesNotFitIsRefusedAndStaysTyped) {
    ScriptedPrompter prompts;
    ASSERT_TRUE(OpenData());
    QLineEdit percent, date;
    ConfigBinding().addLineEdit(&percent, 12);
    ConfigBinding().addLineEdit(&date, 3);
    BindConfig(true);
    QList<int> refused;
    QObject::connect(&ConfigBinding(), &FieldBinding::editRefused,
                     [&](int field, const QString&) { refused << field; });
    // Too wide for its N6.2 field, a point too many, a month 13, a one-digit day.
    for (const char* text : {"1000", "1.2.3"}) {
        percent.setText(text);
        Q_EMIT percent.textEdited(text);
        EXPECT_FALSE(ConfigBinding().commit()) << text;
        EXPECT_EQ(percent.text(), text);
        EXPECT_DOUBLE_EQ(rsPrixList.value(12).toDouble(), 10.5) << text;
    }
    percent.setText("12.");
    Q_EMIT percent.textEdited("12.");
    EXPECT_TRUE(ConfigBinding().commit());
    EXPECT_EQ(percent.text(), "12.") << "a committed text is not rewritten";
    EXPECT_DOUBLE_EQ(rsPrixList.value(12).toDouble(), 12);
    const QVariant storedDate = rsPrixList.value(3);
    for (const char* text : {"2026.13.01", "2026.11.5"}) {
        date.setText(text);
        Q_EMIT date.textEdited(text);
        EXPECT_FALSE(ConfigBinding().commit(&date)) << text;
        EXPECT_TRUE(ConfigBinding().hasTyped(&date));
        EXPECT_EQ(rsPrixList.value(3), storedDate) << text;
    }
    EXPECT_EQ(refused, (QList<int>{12, 12, 3, 3}));
}
