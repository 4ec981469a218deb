#include "app/appstate.h"
#include "app/hiddenstrings.h"
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

// A data directory holding the stand-in service program, as the start-up leaves it.
class ServiceProgramTest : public ::testing::Test {
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

    QTemporaryDir dir;
};

} // namespace

// Codes 0 and 2 to 9 start the program, found whatever the case of its name, with the
// installation kind and, for 5 and 9, the flag; other codes give the previous task id. A
// program that cannot start gives its box and -1.
TEST_F(ServiceProgramTest, StartsTheProgramForItsCodesOnly) {
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
    EXPECT_EQ(LastServiceTaskId(), run);
    for (const QString& other : QStringList{"1", "A", QString()})
        EXPECT_EQ(RunServiceProgram(other, 0), run);
    EXPECT_GT(RunServiceProgram("6", 7), 0);
    EXPECT_NE(LastServiceTaskId(), run);
    EXPECT_EQ(loggedCalls(name), QStringList({"5 2 12", "6 2"}));
}

// The windows are served during the wait; another code given meanwhile waits for the run to end.
TEST_F(ServiceProgramTest, WaitsForTheEndWhileTheEventLoopRuns) {
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
    timer.stop();
    EXPECT_EQ(seenInside, run);
    EXPECT_EQ(loggedWhenBack, QStringList({"7 2"}));
    EXPECT_GT(ticks, 5);
    EXPECT_TRUE(runningSeen);
    EXPECT_FALSE(ServiceProgramRunning());
}
