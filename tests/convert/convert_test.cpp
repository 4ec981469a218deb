// The price-list table conversion: CATNO derived from the catalogues' categories, the rebuild,
// and the program's procedure with its questions, progress and error window.
#include "oldtables.h"
#include "scriptedprompter.h"

#include "app/appstate.h"
#include "app/frmerrmsg.h"
#include "app/frmsplash.h"
#include "app/messages.h"
#include "data/moddata.h"
#include "partsfile/modnvconvert.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>
#include <gmock/gmock.h>

using namespace modNVConvert;
using ::testing::ElementsAre;

namespace {

class ConvertTest : public ::testing::Test {
protected:
    void SetUp() override {
        ResetAppState();
        App().Settings.Nation = 1000;
        App().DataPath = dir.path() + u'/';
    }
    void TearDown() override {
        closeDataStore();
        QDir::setCurrent(previousDir);
    }

    QString dataDir() const { return App().DataPath; }
    // The shared connection and recordsets as the program holds them when Convert runs.
    void openDataStore(bool withCatalogues = true) {
        connData.open(dataDir());
        rsPrixList.open(QStringLiteral("SELECT * FROM PRIXLIST ORDER BY [DESC]"), connData,
                        CursorType::Keyset, LockType::Optimistic);
        if (withCatalogues)
            rsCataList.open(QStringLiteral("SELECT * FROM CATALIST ORDER BY [DESC]"), connData,
                            CursorType::Keyset, LockType::Optimistic);
    }
    void closeDataStore() {
        for (Recordset* rs : {&rsPrixList, &rsCataList})
            if (rs->isOpen())
                rs->close();
        if (connData.isOpen())
            connData.close();
    }
    void convert() {
        Connection data;
        data.open(dataDir());
        ConversionObserver quiet;
        ConvertTable(data, quiet);
    }
    // The program's procedure, as start-up runs it (forced: the "Convert" command line).
    static bool convertAtStart(bool forced) { return Convert(forced); }
    QStringList prixList() const { return TableRows(dataDir(), QStringLiteral("PRIXLIST")); }

    QTemporaryDir dir;
    const QString previousDir = QDir::currentPath();
};

} // namespace

TEST_F(ConvertTest, CatnoComesFromTheActivatedCataloguesCategories) {
    WriteOldPrixList(dataDir(), {{"L1", "AB"},
                                 {"L2", "AB"},
                                 {"L3", "AB", false},
                                 {"L4", "CD"},
                                 {"L5", "EF"},
                                 {"L6", "GH"},
                                 {"L8", "IJ"}});
    WriteCataList(dataDir(),
                  {// Two categories with one code: the lists get the catalogue once.
                   Catalogue{"TWICE", true, {"AB", "AB"}, {}, "A"},
                   // The code in use wins over the suggested one; a code no activated list has
                   // is cleared.
                   Catalogue{"USED", true, {"XX", "EF", ""}, {"CD", "ZZ", "CD"}, "B"},
                   // Not activated: contributes nothing, keeps its codes.
                   Catalogue{"IDLE", false, {"AB"}, {"QQ"}, "C"},
                   // XC1 comes first (DESC order) and gives "XC1;", which holds "C1;": the lists
                   // of GH look associated with C1 already, and its category stops at the first.
                   Catalogue{"C1", true, {"GH", "IJ"}, {}, "E"},
                   Catalogue{"XC1", true, {"GH"}, {}, "D"}});
    convert();
    EXPECT_THAT(CatnoByList(dataDir()), ElementsAre("L1|TWICE;", "L2|TWICE;", "L3|", "L4|USED;",
                                                    "L5|", "L6|XC1;", "L8|C1;"));
    EXPECT_THAT(UsedCodes(dataDir()),
                ElementsAre("TWICE|AB|AB|||||||", "USED|CD||||||||", "IDLE|QQ||||||||",
                            "C1|GH|IJ|||||||", "XC1|GH||||||||"));
}

// A list naming a catalogue that is no longer activated sends the trees to the restart mode:
// the rebuild, then a start whose conversion is refused ends, and one that converts again (with
// its progress on the splash window) no longer names it. The start after it leaves the converted
// table as it is, and puts a new program file waiting beside it in the place of the old one.
TEST_F(ConvertTest, TheRestartModeLetsTheNextStartOpen) {
    WriteOldPrixList(dataDir(), {{"L1", "AB"}, {"L2", "CD"}});
    WriteCataList(dataDir(),
                  {Catalogue{"C1", true, {"AB"}, {}, "A"}, Catalogue{"C2", true, {"CD"}, {}, "B"}});
    const QStringList old = prixList();
    convert();
    ASSERT_THAT(CatnoByList(dataDir()), ElementsAre("L1|C1;", "L2|C2;"));
    WriteCataList(dataDir(), {Catalogue{"C1", true, {"AB"}, {}, "A"},
                              Catalogue{"C2", false, {"CD"}, {}, "B"}});
    openDataStore();
    ScriptedPrompter prompts;
    prompts.expectMessage(LoadText(133), Buttons::Ok, Icon::Information, {}, Answer::Ok);
    EXPECT_FALSE(convertAtStart(true));
    EXPECT_TRUE(App().QuitWithoutAsking);
    closeDataStore();
    EXPECT_EQ(FirstDifference(prixList(), old), "") << "the old fields come back";

    App().QuitWithoutAsking = false;
    openDataStore();
    prompts.expectMessage(LoadText(80), Buttons::OkCancel, Icon::None, {}, Answer::Cancel)
        .expectMessage(LoadText(82));
    EXPECT_FALSE(convertAtStart(false));
    EXPECT_TRUE(App().QuitWithoutAsking);
    EXPECT_EQ(FirstDifference(prixList(), old), "");

    frmSplash splash;
    splash.show();
    prompts.expectMessage(LoadText(80), Buttons::OkCancel, Icon::None, {}, Answer::Ok)
        .expectMessage(LoadText(81));
    EXPECT_TRUE(convertAtStart(false));
    EXPECT_THAT(CatnoByList(dataDir()), ElementsAre("L1|C1;", "L2|"));
    EXPECT_EQ(splash.Label1->text(), "Chargement en cours......100%");
    EXPECT_EQ(rsPrixList.fieldCount(), 46); // the shared recordsets read the new tables
    rsCataList.moveFirst();
    EXPECT_EQ(rsCataList.value(QStringLiteral("GRL1")).toString(), "AB");

    const QDateTime written = QFileInfo(dataDir() + "PRIXLIST.DBF").lastModified();
    QStringList files = QDir(dataDir()).entryList(QDir::Files) << "MERCANTE.EXE";
    files.sort(); // and no MERCANTE.NEW, no table made or removed
    WriteBytes(dataDir() + "MERCANTE.EXE", "old program");
    WriteBytes(dataDir() + "MERCANTE.NEW", "new program");
    EXPECT_TRUE(convertAtStart(false));
    EXPECT_EQ(QFileInfo(dataDir() + "PRIXLIST.DBF").lastModified(), written);
    EXPECT_EQ(QDir(dataDir()).entryList(QDir::Files), files);
    EXPECT_EQ(ReadBytes(dataDir() + "MERCANTE.EXE"), "new program");
}

TEST_F(ConvertTest, AFailureShowsTheErrorWindowAndEndsTheProgram) {
    WriteOldPrixList(dataDir(), {{"L1", "AB"}});
    const QStringList old = prixList();
    openDataStore(false); // no CATALIST: the conversion cannot read the categories
    ScriptedPrompter prompts;
    prompts.expectMessage(LoadText(80), Buttons::OkCancel, Icon::None, {}, Answer::Ok);
    QString shown;
    QTimer closer;
    QObject::connect(&closer, &QTimer::timeout, [&shown] {
        if (auto* window = qobject_cast<frmErrMsg*>(QApplication::activeModalWidget())) {
            shown = window->lblMessage->text();
            window->cmdOK->click();
        }
    });
    closer.start(10);
    EXPECT_FALSE(convertAtStart(false));
    EXPECT_TRUE(shown.startsWith(QStringLiteral("errConvert: \r\n") + LoadText(137) + "\r\n"))
        << shown.toStdString();
    EXPECT_EQ(prixList(), old);
}
