// Nothing of the price-list table is lost, whatever stops a conversion: a child process running
// it is stopped after each file step and killed at random moments, and each time PRIXLIST is
// either the old table or the complete new one, and the next run ends with the new one.
#include "oldtables.h"
#include "testfiles.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <gmock/gmock.h>
#include <random>

using ::testing::HasSubstr;

namespace {

struct Tables {
    QStringList prixList;
    QStringList usedCodes;
};

// The files of `to` become those of `from`.
void copyFiles(const QString& from, const QString& to) {
    QDir().mkpath(to);
    for (const QString& name : QDir(to).entryList(QDir::Files))
        QFile::remove(to + name);
    for (const QString& name : QDir(from).entryList(QDir::Files))
        QFile::copy(from + name, to + name);
}

// An installation of `lists` lists and `catalogues` catalogues, with its tables before and after
// an uninterrupted run, the files of each saved in a folder of its own.
class KillTest : public ::testing::Test {
protected:
    void prepare(int lists, int catalogues, int codes) {
        WriteBytes(drive() + "PRG/MENU.EXE", {});
        QDir().mkpath(dataDir());
        WriteOldPrixList(dataDir(), ManyLists(lists, codes));
        WriteCataList(dataDir(), ManyCatalogues(catalogues, codes));
        copyFiles(dataDir(), oldState);
        before = tables();
        expectSuccess(convert());
        after = tables();
        copyFiles(dataDir(), convertedState);
        copyFiles(oldState, dataDir());
    }
    QString drive() const { return root.path() + u'/'; }
    QString dataDir() const { return drive() + "NVNV/"; }
    Tables tables() const { return {TableRows(dataDir(), "PRIXLIST"), UsedCodes(dataDir())}; }
    ProgramRun convert() const { return RunProgram(CONVERTLISTS_PATH, {drive()}, 120000); }
    // The child stops after the file step `step` (0: it does not); `by` is "fail" or "die".
    ProgramRun stopAfter(int step, const char* by, const QStringList& options = {}) const {
        const QStringList arguments{QString::number(step), by, drive()};
        return RunProgram(CONVERT_CHILD_PATH, arguments + options, 120000);
    }
    static void expectSuccess(const ProgramRun& run) {
        ASSERT_EQ(run.status, 0) << QByteArray(run.out + run.err).constData();
    }

    // PRIXLIST and CATALIST are those of an uninterrupted run.
    void expectNew() {
        const Tables now = tables();
        EXPECT_EQ(FirstDifference(now.prixList, after.prixList), "");
        EXPECT_EQ(FirstDifference(now.usedCodes, after.usedCodes), "");
    }
    void expectOldOrNew() {
        if (TableRows(dataDir(), "PRIXLIST") != before.prixList)
            expectNew();
    }
    // The next run finishes or redoes the conversion, and leaves no work table.
    void expectNextRunGivesNew() {
        expectSuccess(convert());
        expectNew();
        EXPECT_THAT(QDir(dataDir()).entryList({"PRIXTEMP.*", "CATATEMP.*"}, QDir::Files),
                    ::testing::IsEmpty());
    }

    QTemporaryDir root;
    const QString oldState = root.filePath("old/");
    const QString convertedState = root.filePath("converted/");
    Tables before;
    Tables after;
};

int stepCount(const ProgramRun& run) {
    return run.out.mid(run.out.lastIndexOf("steps ") + 6).trimmed().toInt();
}

} // namespace

// The conversion, and the rebuild of the "Convert" command line followed by the conversion.
TEST_F(KillTest, AFailureOrAnEndAfterEachFileStepLosesNothing) {
    prepare(120, 10, 12);
    struct Run {
        const char* by;
        QString start;
        QStringList options;
    };
    for (const Run& run : {Run{"fail", oldState, {}}, Run{"die", oldState, {}},
                           Run{"die", convertedState, {"--force"}}}) {
        copyFiles(run.start, dataDir());
        const int steps = stepCount(stopAfter(0, run.by, run.options));
        ASSERT_GE(steps, 8 + 8); // the file steps and one per activated catalogue
        for (int step = 1; step <= steps; ++step) {
            SCOPED_TRACE(std::string(run.by) + " after file step " + std::to_string(step) + " " +
                         run.options.join(' ').toStdString());
            copyFiles(run.start, dataDir());
            const ProgramRun stopped = stopAfter(step, run.by, run.options);
            if (run.by == std::string("fail")) {
                EXPECT_EQ(stopped.status, 1);
                EXPECT_THAT(stopped.err.toStdString(), HasSubstr("errConvert: "));
            } else {
                EXPECT_EQ(stopped.status, 3);
            }
            expectOldOrNew();
            expectNextRunGivesNew();
        }
    }
}

TEST_F(KillTest, AKillAtFiftyRandomMomentsLosesNothing) {
    prepare(400, 16, 24);
    QElapsedTimer clock;
    clock.start();
    expectSuccess(convert());
    const qint64 duration = clock.elapsed();
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    std::uniform_int_distribution<qint64> moment(0, duration);
    int killedRunning = 0;
    for (int kill = 0; kill < 50; ++kill) {
        copyFiles(oldState, dataDir());
        const qint64 at = moment(random);
        SCOPED_TRACE("killed after " + std::to_string(at) + " ms of " + std::to_string(duration));
        QProcess child;
        child.start(CONVERTLISTS_PATH, {drive()});
        ASSERT_TRUE(child.waitForStarted());
        QThread::msleep(static_cast<unsigned long>(at));
        if (child.state() == QProcess::Running) {
            ++killedRunning;
            child.kill();
        }
        child.waitForFinished();
        expectOldOrNew();
        expectNextRunGivesNew();
    }
    EXPECT_GE(killedRunning, 25);
}
