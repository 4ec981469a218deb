// convertlists from the command line: its arguments, its exit statuses and what it writes.
#include "oldtables.h"
#include "testfiles.h"

#include "dbase/connection.h"
#include "partsfile/modnvconvert.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gmock/gmock.h>

using ::testing::HasSubstr;

namespace {

ProgramRun convertlists(const QStringList& arguments) {
    return RunProgram(CONVERTLISTS_PATH, arguments);
}

class ConvertListsTest : public ::testing::Test {
protected:
    void SetUp() override {
        WriteBytes(drive() + "PRG/MENU.EXE", {});
        QDir().mkpath(dataDir());
        WriteOldPrixList(dataDir(), ManyLists(30, 4));
        WriteCataList(dataDir(), ManyCatalogues(5, 4));
    }
    QString drive() const { return root.path() + u'/'; }
    QString dataDir() const { return drive() + "NVNV/"; }
    int fieldCount() {
        Connection data;
        data.open(dataDir());
        return modNVConvert::PrixListFieldCount(data);
    }
    QDateTime written() const { return QFileInfo(dataDir() + "PRIXLIST.DBF").lastModified(); }

    QTemporaryDir root;
};

} // namespace

TEST_F(ConvertListsTest, BadArgumentsOrAFolderThatIsNoInstallationWriteNothing) {
    const QStringList before = QDir(dataDir()).entryList(QDir::Files);
    for (const QStringList& arguments :
         {QStringList{}, QStringList{drive(), "--quick"}, QStringList{drive(), drive()},
          QStringList{dataDir()}, QStringList{root.path() + "/missing"}}) {
        const ProgramRun result = convertlists(arguments);
        EXPECT_EQ(result.status, 2) << arguments.join(' ').toStdString();
        EXPECT_THAT(result.err.toStdString(), HasSubstr("usage: convertlists DRIVE"));
    }
    EXPECT_EQ(QDir(dataDir()).entryList(QDir::Files), before);
    EXPECT_EQ(fieldCount(), 45);

    const ProgramRun help = convertlists({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_THAT(help.out.toStdString(), HasSubstr("--force"));
    const ProgramRun version = convertlists({"--version"});
    EXPECT_EQ(version.status, 0);
    EXPECT_THAT(version.out.toStdString(), HasSubstr("convertlists "));
}

TEST_F(ConvertListsTest, AnOldTableIsConvertedOnceWithItsProgress) {
    const ProgramRun first = convertlists({drive()});
    EXPECT_EQ(first.status, 0) << first.err.constData();
    EXPECT_THAT(first.err.toStdString(), HasSubstr("Chargement en cours......100%"));
    EXPECT_THAT(first.err.toStdString(), HasSubstr("Conversion terminée."));
    EXPECT_EQ(fieldCount(), 46);

    const QDateTime converted = written();
    const ProgramRun again = convertlists({drive(), "--english"});
    EXPECT_EQ(again.status, 0);
    EXPECT_THAT(again.out.toStdString(), HasSubstr("already converted"));
    EXPECT_EQ(written(), converted);

    const ProgramRun forced = convertlists({"--force", "--english", drive()});
    EXPECT_EQ(forced.status, 0) << forced.err.constData();
    EXPECT_THAT(forced.err.toStdString(), HasSubstr("Conversion complete."));
    EXPECT_NE(written(), converted);
    EXPECT_EQ(fieldCount(), 46);
}
