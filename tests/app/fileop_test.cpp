#include "app/fileop.h"
#include "app/installpath.h"

#include "testfiles.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

class FileOpTest : public ::testing::Test {
protected:
    QString path(const QString& name) const { return dir.filePath(name); }
    QTemporaryDir dir;
};

} // namespace

// Installations copied from Windows keep their names in any case: files and directories are
// found whatever the case asked, and a missing file still points into the directory on disk.
TEST_F(FileOpTest, ExistenceAndPathsFollowTheDiskInAnyCase) {
    WriteBytes(path("Nvnv/Sub/Stock.Dbf"), "x");
    EXPECT_TRUE(FileOp(QString(), path("Nvnv/Sub/Stock.Dbf")));
    EXPECT_TRUE(FileOp("ANY", path("NVNV/SUB/STOCK.DBF")));
    EXPECT_TRUE(FileOp(QString(), path("nvnv")));
    EXPECT_TRUE(FileOp(QString(), path("NVNV/SUB/")));
    EXPECT_FALSE(FileOp(QString(), path("NVNV/STOCK.DBF")));
    EXPECT_FALSE(FileOp(QString(), path("missing")));
    EXPECT_FALSE(FileOp(QString(), QString()));

    EXPECT_EQ(ResolveInstallPath(path("NVNV/SUB/STOCK.DBF")), path("Nvnv/Sub/Stock.Dbf"));
    EXPECT_EQ(ResolveInstallPath(path("NVNV/SUB/")), path("Nvnv/Sub/"));
    EXPECT_EQ(ResolveInstallPath(path("NVNV/"), "sub"), path("Nvnv/Sub"));
    EXPECT_EQ(ResolveInstallPath(path("NVNV/OTHER.DBF")), path("Nvnv/OTHER.DBF"));
    EXPECT_EQ(ResolveInstallPath(path("PRG/MENU.EXE")), path("PRG/MENU.EXE"));
}

TEST_F(FileOpTest, MoveRefusesAnExistingTargetAndAnswersFalse) {
    WriteBytes(path("a"), "first");
    EXPECT_FALSE(FileOp("MOVE", path("a"), path("b")));
    EXPECT_FALSE(FileOp(QString(), path("a")));
    EXPECT_EQ(ReadBytes(path("b")), "first");
    // A target that exists under another case is an existing target too.
    WriteBytes(path("a"), "second");
    EXPECT_FALSE(FileOp("MOVE", path("a"), path("B")));
    EXPECT_EQ(ReadBytes(path("a")), "second");
    EXPECT_EQ(ReadBytes(path("b")), "first");

    EXPECT_FALSE(FileOp("MOVE", path("missing"), path("c")));
    EXPECT_FALSE(FileOp(QString(), path("c")));
}

TEST_F(FileOpTest, CopyOverwritesAndKeepsTheProgramRunnable) {
    WriteBytes(path("source"), "new content");
    QFile::setPermissions(path("source"), QFile::permissions(path("source")) | QFile::ExeOwner);
    WriteBytes(path("TARGET"), "old content that is longer");

    EXPECT_FALSE(FileOp("COPY", path("source"), path("target")));
    EXPECT_EQ(ReadBytes(path("TARGET")), "new content");
    EXPECT_FALSE(QFile::exists(path("target"))) << "the target keeps its name on disk";
    EXPECT_TRUE(QFile::permissions(path("TARGET")) & QFile::ExeOwner);

    // A file copied onto itself (its name in another case) is left whole.
    EXPECT_FALSE(FileOp("COPY", path("TARGET"), path("target")));
    EXPECT_EQ(ReadBytes(path("TARGET")), "new content");

    EXPECT_FALSE(FileOp("COPY", path("missing"), path("TARGET")));
    EXPECT_EQ(ReadBytes(path("TARGET")), "new content");
    ASSERT_TRUE(QDir(dir.path()).mkdir("folder"));
    EXPECT_FALSE(FileOp("COPY", path("source"), path("folder")));
    EXPECT_TRUE(QFileInfo(path("folder")).isDir());
}

TEST_F(FileOpTest, CreateFolderAndDeleteAnswerFalseAndTouchOnlyWhatTheyName) {
    EXPECT_FALSE(FileOp("CFOLDER", path("NVINFO")));
    EXPECT_TRUE(QFileInfo(path("NVINFO")).isDir());
    // One level only, like the system's directory creation.
    EXPECT_FALSE(FileOp("CFOLDER", path("x/y")));
    EXPECT_FALSE(QFile::exists(path("x")));

    WriteBytes(path("update.exe"), "x");
    EXPECT_FALSE(FileOp("DELETE", path("UPDATE.EXE")));
    EXPECT_FALSE(QFile::exists(path("update.exe")));
    EXPECT_FALSE(FileOp("DELETE", path("NVINFO")));
    EXPECT_TRUE(QFileInfo(path("NVINFO")).isDir()) << "DELETE removes files, not directories";
    EXPECT_FALSE(FileOp("DELETE", path("missing")));
}
