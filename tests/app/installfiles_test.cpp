// The installation's files: found, moved, copied and deleted whatever the case of their names,
// and the service program run from the data directory.
#include "app/appstate.h"
#include "app/fileop.h"
#include "app/hiddenstrings.h"
#include "app/installpath.h"
#include "app/serviceprogram.h"
#include "support/scriptedprompter.h"
#include "support/testfiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTimer>
#include <gtest/gtest.h>

namespace {

// A data directory, where the start-up leaves the stand-in service program.
class InstallFilesTest : public ::testing::Test {
protected:
    void SetUp() override {
        ResetAppState();
        ResetServiceProgramState();
        App().DataPath = dir.path() + u'/';
        App().Settings.Instal = 2;
    }
    void TearDown() override { qunsetenv("NVSERVICE_DELAY_MS"); }

    void installProgram(const QString& name) {
        const QString built = QStringLiteral(MERCANTEL_BINARY_DIR "/src/") + HiddenString(0);
        ASSERT_TRUE(QFile::exists(built)) << "stand-in not built: " << built.toStdString();
        ASSERT_TRUE(QFile::copy(built, dir.filePath(name)));
    }

    // The arguments of each logged call, in order (not the lines of the jobs that failed:
    // this directory is no installation). The log is named after the program as it is on disk.
    QStringList loggedCalls(const QString& program = HiddenString(0)) const {
        QStringList calls =
            LoggedLines(dir.filePath(QFileInfo(program).completeBaseName() + ".LOG"));
        calls.removeIf([](const QString& line) { return line.startsWith(u"! "); });
        return calls;
    }

    QString path(const QString& name) const { return dir.filePath(name); }

    QTemporaryDir dir;
};

} // namespace

// Codes 0 and 2 to 9 start the program, found whatever the case of its name, with the
// installation kind and, for 5 and 9, the flag; other codes give the previous task id. A
// program that cannot start gives its box and -1.
TEST_F(InstallFilesTest, StartsTheProgramForItsCodesOnly) {
    const QString name = HiddenString(0).toLower();
    ScriptedPrompter prompts;
    prompts.expectMessage("53 File not found");
    EXPECT_EQ(RunServiceProgram("0", 0), -1);
    WriteBytes(dir.filePath(name), "not a program"); // not executable
    prompts.expectMessage("70 Permission denied");
    EXPECT_EQ(RunServiceProgram("0", 0), -1);
    EXPECT_EQ(RunServiceProgram("1", 0), 0) << "no task yet";

    QFile::remove(dir.filePath(name));
    installProgram(name);
    const qint64 run = RunServiceProgram("5", 12);
    EXPECT_GT(run, 0);
    for (const QString& other : QStringList{"1", "A", QString()})
        EXPECT_EQ(RunServiceProgram(other, 0), run);
    EXPECT_GT(RunServiceProgram("6", 7), 0);
    EXPECT_NE(LastServiceTaskId(), run);
    EXPECT_EQ(loggedCalls(name), QStringList({"5 2 12", "6 2"}));
}

// The windows are served during the wait; another code given meanwhile waits for the run to end.
TEST_F(InstallFilesTest, WaitsForTheEndWhileTheEventLoopRuns) {
    installProgram(HiddenString(0));
    qputenv("NVSERVICE_DELAY_MS", "300");
    int ticks = 0;
    bool runningSeen = false;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        ++ticks;
        runningSeen = runningSeen || ServiceProgramRunning();
    });
    timer.start(10);
    qint64 seenInside = -1;
    QStringList loggedWhenBack;
    QTimer::singleShot(20, [&] {
        seenInside = RunServiceProgram("1", 0);
        loggedWhenBack = loggedCalls();
    });
    const qint64 run = RunServiceProgram("7", 0);
    EXPECT_EQ(seenInside, run);
    EXPECT_EQ(loggedWhenBack, QStringList({"7 2"}));
    EXPECT_GT(ticks, 5);
    EXPECT_TRUE(runningSeen);
    EXPECT_FALSE(ServiceProgramRunning());
}

// Installations copied from Windows keep their names in any case: files and directories are
// found whatever the case asked, and a missing file still points into the directory on disk.
TEST_F(InstallFilesTest, ExistenceAndPathsFollowTheDiskInAnyCase) {
    WriteBytes(path("Nvnv/Sub/Stock.Dbf"), "x");
    EXPECT_TRUE(FileOp("ANY", path("NVNV/SUB/STOCK.DBF")));
    EXPECT_TRUE(FileOp(QString(), path("nvnv")));
    EXPECT_TRUE(FileOp(QString(), path("NVNV/SUB/")));
    EXPECT_FALSE(FileOp(QString(), path("NVNV/STOCK.DBF")));
    EXPECT_FALSE(FileOp(QString(), path("missing")));

    EXPECT_EQ(ResolveInstallPath(path("NVNV/SUB/STOCK.DBF")), path("Nvnv/Sub/Stock.Dbf"));
    EXPECT_EQ(ResolveInstallPath(path("NVNV/SUB/")), path("Nvnv/Sub/"));
    EXPECT_EQ(ResolveInstallPath(path("NVNV/"), "sub"), path("Nvnv/Sub"));
    EXPECT_EQ(ResolveInstallPath(path("NVNV/OTHER.DBF")), path("Nvnv/OTHER.DBF"));
    EXPECT_EQ(ResolveInstallPath(path("PRG/MENU.EXE")), path("PRG/MENU.EXE"));
}

TEST_F(InstallFilesTest, MoveRefusesAnExistingTargetAndAnswersFalse) {
    WriteBytes(path("a"), "first");
    EXPECT_FALSE(FileOp("MOVE", path("a"), path("b")));
    EXPECT_FALSE(FileOp(QString(), path("a")));
    EXPECT_EQ(ReadBytes(path("b")), "first");
    // A target that exists under another case is an existing target too.
    WriteBytes(path("a"), "second");
    EXPECT_FALSE(FileOp("MOVE", path("a"), path("B")));
    EXPECT_EQ(ReadBytes(path("a")), "second");
    EXPECT_EQ(ReadBytes(path("b")), "first");
}

// Every operation answers false; each touches only what it names.
TEST_F(InstallFilesTest, CopyCreateFolderAndDeleteTouchOnlyWhatTheyName) {
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
