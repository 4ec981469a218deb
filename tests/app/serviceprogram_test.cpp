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
        qunsetenv("NVSERVICE_DELAY_MS");
    }
    void TearDown() override {
        qunsetenv("NVSERVICE_DELAY_MS");
        ResetAppState();
        ResetServiceProgramState();
    }

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

TEST_F(ServiceProgramTest, PassesTheOperationTheInstallationKindAndTheFlagWhereItBelongs) {
    installProgram(HiddenString(0));
    const qint64 first = RunServiceProgram(QStringLiteral("0"), 0);
    EXPECT_GT(first, 0);
    EXPECT_EQ(LastServiceTaskId(), first);
    EXPECT_GT(RunServiceProgram(QStringLiteral("5"), 12), 0);
    EXPECT_GT(RunServiceProgram(QStringLiteral("9"), 3), 0);
    EXPECT_GT(RunServiceProgram(QStringLiteral("6"), 7), 0);
    EXPECT_EQ(loggedCalls(), QStringList({"0 2", "5 2 12", "9 2 3", "6 2"}));
    EXPECT_NE(LastServiceTaskId(), first);
}

TEST_F(ServiceProgramTest, WaitsForTheEndWhileTheEventLoopRuns) {
    installProgram(HiddenString(0));
    qputenv("NVSERVICE_DELAY_MS", "400");
    int ticks = 0;
    bool runningSeen = false;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        ++ticks;
        runningSeen = runningSeen || ServiceProgramRunning();
    });
    timer.start(10);
    EXPECT_GT(RunServiceProgram(QStringLiteral("0"), 0), 0);
    timer.stop();
    // The program logs as it ends: its line is there when the call returns.
    EXPECT_EQ(loggedCalls(), QStringList({"0 2"}));
    EXPECT_GT(ticks, 5) << "the windows were not served during the wait";
    EXPECT_TRUE(runningSeen);
    EXPECT_FALSE(ServiceProgramRunning());
}

TEST_F(ServiceProgramTest, OtherCodesStartNothingAndGiveThePreviousTaskId) {
    installProgram(HiddenString(0));
    EXPECT_EQ(RunServiceProgram(QStringLiteral("1"), 0), 0);
    const qint64 run = RunServiceProgram(QStringLiteral("8"), 0);
    EXPECT_EQ(RunServiceProgram(QStringLiteral("1"), 0), run);
    EXPECT_EQ(RunServiceProgram(QStringLiteral("A"), 0), run);
    EXPECT_EQ(RunServiceProgram(QString(), 0), run);
    EXPECT_EQ(loggedCalls(), QStringList({"8 2"}));
}

TEST_F(ServiceProgramTest, AnotherCodeDuringARunWaitsForThatRunToEnd) {
    installProgram(HiddenString(0));
    qputenv("NVSERVICE_DELAY_MS", "300");
    qint64 seenInside = -1;
    QStringList loggedWhenBack;
    QTimer::singleShot(20, [&] {
        seenInside = RunServiceProgram(QStringLiteral("1"), 0);
        loggedWhenBack = loggedCalls();
    });
    const qint64 run = RunServiceProgram(QStringLiteral("7"), 0);
    EXPECT_EQ(seenInside, run);
    EXPECT_EQ(loggedWhenBack, QStringList({"7 2"}));
}

TEST_F(ServiceProgramTest, AProgramThatCannotStartGivesItsBoxAndMinusOne) {
    ScriptedPrompter prompts;
    prompts.expectMessage(QStringLiteral("53 File not found"));
    EXPECT_EQ(RunServiceProgram(QStringLiteral("0"), 0), -1);
    WriteBytes(dir.filePath(HiddenString(0)), "not a program"); // not executable
    prompts.expectMessage(QStringLiteral("70 Permission denied"));
    EXPECT_EQ(RunServiceProgram(QStringLiteral("0"), 0), -1);
    EXPECT_EQ(LastServiceTaskId(), 0);
}

TEST_F(ServiceProgramTest, FindsTheProgramWhateverTheCaseOfItsName) {
    installProgram(HiddenString(0).toLower());
    EXPECT_GT(RunServiceProgram(QStringLiteral("0"), 0), 0);
    EXPECT_EQ(loggedCalls(HiddenString(0).toLower()), QStringList({"0 2"}));
}
