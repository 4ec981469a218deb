// convertlists from the command line: its arguments, its exit statuses and what it writes.
#include "oldtables.h"

#include "dbase/connection.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <gmock/gmock.h>

using ::testing::HasSubstr;

namespace {

struct Result {
    int status = -1;
    std::string out;
    std::string err;
};

Result convertlists(const QStringList& arguments) {
    QProcess process;
    process.start(CONVERTLISTS_PATH, arguments);
    process.waitForFinished(60000);
    return {process.exitCode(), process.readAllStandardOutput().toStdString(),
            process.readAllStandardError().toStdString()};
}

class ConvertListsTest : public ::testing::Test {
protected:
    void SetUp() override {
        QDir().mkpath(drive() + "PRG");
        QDir().mkpath(dataDir());
        QFile menu(drive() + "PRG/MENU.EXE");
        ASSERT_TRUE(menu.open(QIODevice::WriteOnly));
        WriteOldPrixList(dataDir(), ManyLists(30, 4));
        WriteCataList(dataDir(), ManyCatalogues(5, 4));
    }
    QString drive() const { return root.path() + u'/'; }
    QString dataDir() const { return drive() + "NVNV/"; }
    int fieldCount() {
        Connection data;
        data.open(dataDir());
        return TableText(data, "PRIXLIST").first().count(u'|') + 1;
    }
    QStringList files() const { return QDir(dataDir()).entryList(QDir::Files); }

    QTemporaryDir root;
};

} // namespace

TEST_F(ConvertListsTest, BadArgumentsOrAFolderThatIsNoInstallationWriteNothing) {
    const QStringList before = files();
    for (const QStringList& arguments :
         {QStringList{}, QStringList{drive(), "--quick"}, QStringList{drive(), drive()},
          QStringList{dataDir()}, QStringList{root.path() + "/missing"}}) {
        const Result result = convertlists(arguments);
        EXPECT_EQ(result.status, 2) << arguments.join(' ').toStdString();
        EXPECT_THAT(result.err, HasSubstr("usage: convertlists DRIVE"));
    }
    EXPECT_EQ(files(), before);
    EXPECT_EQ(fieldCount(), 45);

    const Result help = convertlists({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_THAT(help.out, HasSubstr("--force"));
    const Result version = convertlists({"--version"});
    EXPECT_EQ(version.status, 0);
    EXPECT_THAT(version.out, HasSubstr("convertlists "));
}

TEST_F(ConvertListsTest, AnOldTableIsConvertedOnceWithItsProgress) {
    const Result first = convertlists({drive()});
    EXPECT_EQ(first.status, 0) << first.err;
    EXPECT_THAT(first.err, HasSubstr("Chargement en cours......100%"));
    EXPECT_THAT(first.err, HasSubstr("Conversion terminée."));
    EXPECT_EQ(fieldCount(), 46);

    const QDateTime written = QFileInfo(dataDir() + "PRIXLIST.DBF").lastModified();
    const Result again = convertlists({drive(), "--english"});
    EXPECT_EQ(again.status, 0);
    EXPECT_THAT(again.out, HasSubstr("already converted"));
    EXPECT_EQ(QFileInfo(dataDir() + "PRIXLIST.DBF").lastModified(), written);

    const Result forced = convertlists({"--force", "--english", drive()});
    EXPECT_EQ(forced.status, 0) << forced.err;
    EXPECT_THAT(forced.err, HasSubstr("Conversion complete."));
    EXPECT_EQ(fieldCount(), 46);
}

TEST_F(ConvertListsTest, AFailedConversionLeavesTheTableWhole) {
    QFile::remove(dataDir() + "CATALIST.DBF");
    const Result result = convertlists({drive()});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr("errConvert: "));
    EXPECT_EQ(fieldCount(), 45);
}
