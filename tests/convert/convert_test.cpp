// The price-list table conversion: CATNO derived from the catalogues' categories, the rebuild,
// and the program's procedure with its questions, progress and error window.
#include "oldtables.h"
#include "scriptedprompter.h"
#include "testfiles.h"

#include "app/appstate.h"
#include "app/frmerrmsg.h"
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
        previousDir = QDir::currentPath();
    }
    void TearDown() override {
        for (Recordset* rs : {&rsPrixList, &rsCataList})
            if (rs->isOpen())
                rs->close();
        for (Connection* connection : {&connData, &data})
            if (connection->isOpen())
                connection->close();
        QDir::setCurrent(previousDir);
    }

    QString dataDir() const { return App().DataPath; }
    Connection& open() {
        if (!data.isOpen())
            data.open(dataDir());
        return data;
    }
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
        rsPrixList.close();
        rsCataList.close();
        connData.close();
    }
    void convert() {
        ConversionObserver quiet;
        ConvertTable(open(), quiet);
    }
    // The program's procedure, as start-up runs it (forced: the "Convert" command line).
    static bool convertAtStart(bool forced) { return Convert(forced); }

    QTemporaryDir dir;
    Connection data;
    QString previousDir;
};

Catalogue catalogue(const QString& fichier, QList<std::pair<QString, QString>> categories,
                    const QString& desc = {}) {
    Catalogue c(fichier);
    c.desc = desc;
    for (int n = 0; n < categories.size(); ++n) {
        c.gr[n] = categories[n].first;
        c.grl[n] = categories[n].second;
    }
    return c;
}

// Closes the error window once it shows, keeping its text.
class ErrorWindowCloser {
public:
    ErrorWindowCloser() {
        QObject::connect(&timer_, &QTimer::timeout, [this] {
            if (auto* window = qobject_cast<frmErrMsg*>(QApplication::activeModalWidget())) {
                text = window->lblMessage->text();
                window->cmdOK->click();
            }
        });
        timer_.start(10);
    }
    QString text;

private:
    QTimer timer_;
};

} // namespace

TEST_F(ConvertTest, CatnoComesFromTheActivatedCataloguesCategories) {
    WriteOldPrixList(dataDir(),
                     {{"L1", "AB"}, {"L2", "AB"}, {"L3", "AB", false}, {"L4", "CD"}, {"L5", "EF"}});
    WriteCataList(
        dataDir(),
        {// Two categories with one code: the lists get the catalogue once.
         catalogue("TWICE", {{"AB", ""}, {"AB", ""}}, "A"),
         // The code in use wins over the suggested one; a code no activated list has is cleared.
         catalogue("USED", {{"XX", "CD"}, {"EF", "ZZ"}, {"", "CD"}}, "B"),
         // Not activated: contributes nothing, keeps its codes.
         [] {
             Catalogue c = catalogue("IDLE", {{"AB", "QQ"}}, "C");
             c.utiliser = false;
             return c;
         }()});
    convert();
    EXPECT_THAT(CatnoByList(data), ElementsAre("L1=TWICE;", "L2=TWICE;", "L3=", "L4=USED;", "L5="));
    EXPECT_THAT(UsedCodes(data),
                ElementsAre("TWICE=AB,AB,,,,,,,", "USED=CD,,,,,,,,", "IDLE=QQ,,,,,,,,"));
}

TEST_F(ConvertTest, ANameEndingAnotherCountsAsHeld) {
    WriteOldPrixList(dataDir(), {{"L1", "AB"}, {"L2", "AB"}, {"L3", "CD"}});
    // XC1 comes first (DESC order) and gives "XC1;", which holds "C1;": the lists of AB look
    // associated with C1 already, and its category stops at the first of them.
    WriteCataList(dataDir(), {catalogue("C1", {{"AB", ""}, {"CD", ""}}, "B"),
                              catalogue("XC1", {{"AB", ""}}, "A")});
    convert();
    EXPECT_THAT(CatnoByList(data), ElementsAre("L1=XC1;", "L2=XC1;", "L3=C1;"));
    EXPECT_THAT(UsedCodes(data), ElementsAre("C1=AB,CD,,,,,,,", "XC1=AB,,,,,,,,"));
}

TEST_F(ConvertTest, EveryRowAndFieldIsKeptInItsPlace) {
    const QList<OldList> lists = ManyLists(300, 20);
    WriteOldPrixList(dataDir(), lists);
    WriteCataList(dataDir(), ManyCatalogues(30, 20));
    const QStringList before = TableText(open(), QStringLiteral("PRIXLIST"));
    convert();
    QStringList after = TableText(data, QStringLiteral("PRIXLIST"));
    ASSERT_EQ(after.size(), before.size());
    EXPECT_TRUE(after[0].endsWith(u"|CATNO"));
    for (QString& line : after)
        line = line.section(u'|', 0, -2); // without CATNO
    EXPECT_EQ(after, before);
    EXPECT_EQ(PrixListFieldCount(data), 46);
    // The work tables are gone, the categories' copy too.
    EXPECT_TRUE(data.tablePath(QStringLiteral("PRIXTEMP")).isEmpty());
    EXPECT_TRUE(data.tablePath(QStringLiteral("CATATEMP")).isEmpty());
}

TEST_F(ConvertTest, RebuildThenConvertGivesTheSameCatno) {
    WriteOldPrixList(dataDir(), ManyLists(200, 12));
    WriteCataList(dataDir(), ManyCatalogues(25, 12));
    convert();
    const QStringList first = CatnoByList(data);
    const QStringList codes = UsedCodes(data);
    ConversionObserver quiet;
    RebuildOldTable(data, quiet);
    EXPECT_EQ(PrixListFieldCount(data), 45);
    convert();
    EXPECT_EQ(CatnoByList(data), first);
    EXPECT_EQ(UsedCodes(data), codes);
}

// A converted table is not touched; a new program file waiting beside it replaces the old one.
TEST_F(ConvertTest, AConvertedTableIsNotTouchedAndANewProgramFileIsSwappedIn) {
    WriteOldPrixList(dataDir(), {{"L1", "AB"}});
    WriteCataList(dataDir(), {catalogue("C1", {{"AB", ""}})});
    convert();
    data.close();
    const QDateTime written = QFileInfo(dataDir() + "PRIXLIST.DBF").lastModified();
    WriteBytes(dataDir() + "MERCANTE.EXE", "old program");
    WriteBytes(dataDir() + "MERCANTE.NEW", "new program");
    const QStringList files = QDir(dataDir()).entryList(QDir::Files).filter(u".DBF");
    openDataStore();
    ScriptedPrompter nothingAsked;
    EXPECT_TRUE(convertAtStart(false));
    EXPECT_EQ(QFileInfo(dataDir() + "PRIXLIST.DBF").lastModified(), written);
    EXPECT_EQ(QDir(dataDir()).entryList(QDir::Files).filter(u".DBF"), files);
    EXPECT_EQ(rsPrixList.fieldCount(), 46);
    EXPECT_FALSE(QFile::exists(dataDir() + "MERCANTE.NEW"));
    EXPECT_EQ(ReadBytes(dataDir() + "MERCANTE.EXE"), "new program");
}

// A list naming a catalogue that is no longer activated sends the trees to the restart mode:
// the rebuild, then a start that converts again and no longer names it.
TEST_F(ConvertTest, TheRestartModeLetsTheNextStartOpen) {
    WriteOldPrixList(dataDir(), {{"L1", "AB"}, {"L2", "CD"}});
    WriteCataList(dataDir(),
                  {catalogue("C1", {{"AB", ""}}, "A"), catalogue("C2", {{"CD", ""}}, "B")});
    const QStringList old = TableText(open(), QStringLiteral("PRIXLIST"));
    convert();
    ASSERT_THAT(CatnoByList(data), ElementsAre("L1=C1;", "L2=C2;"));
    Catalogue idle = catalogue("C2", {{"CD", ""}}, "B");
    idle.utiliser = false;
    WriteCataList(dataDir(), {catalogue("C1", {{"AB", ""}}, "A"), idle});
    data.close();
    openDataStore();
    {
        ScriptedPrompter prompts;
        ExpectRebuild(prompts);
        EXPECT_FALSE(convertAtStart(true));
        EXPECT_TRUE(App().QuitWithoutAsking);
    }
    closeDataStore();
    EXPECT_EQ(TableText(open(), QStringLiteral("PRIXLIST")), old) << "the old fields come back";
    data.close();
    openDataStore();
    ScriptedPrompter prompts;
    ExpectConversion(prompts, Answer::Ok);
    EXPECT_TRUE(convertAtStart(false));
    EXPECT_THAT(CatnoByList(open()), ElementsAre("L1=C1;", "L2="));
}

TEST_F(ConvertTest, AFailureShowsTheErrorWindowAndEndsTheProgram) {
    WriteOldPrixList(dataDir(), {{"L1", "AB"}});
    openDataStore(false); // no CATALIST: the conversion cannot read the categories
    ScriptedPrompter prompts;
    prompts.expectMessage(LoadText(80), Buttons::OkCancel, Icon::None, {}, Answer::Ok);
    ErrorWindowCloser errorWindow;
    EXPECT_FALSE(convertAtStart(false));
    EXPECT_TRUE(
        errorWindow.text.startsWith(QStringLiteral("errConvert: \r\n") + LoadText(137) + "\r\n"))
        << errorWindow.text.toStdString();
    EXPECT_EQ(PrixListFieldCount(open()), 45);
}
