// Nothing of the price-list table is lost, whatever stops a conversion: a child process running
// it is stopped after each file step and killed at random moments, and each time PRIXLIST is
// either the old table or the complete new one, and the next run ends with the new one.
#include "oldtables.h"
#include "testfiles.h"

#include "dbase/connection.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <gmock/gmock.h>
#include <random>

namespace {

struct Tables {
    QStringList prixList;
    QStringList usedCodes;
};

// The first line where two tables differ, or an empty text when they are the same.
std::string firstDifference(const QStringList& a, const QStringList& b) {
    for (qsizetype i = 0; i < std::max(a.size(), b.size()); ++i) {
        const QString left = a.value(i, QStringLiteral("<none>"));
        const QString right = b.value(i, QStringLiteral("<none>"));
        if (left != right)
            return QStringLiteral("line %1: %2 / %3").arg(i).arg(left, right).toStdString();
    }
    return {};
}

ProgramRun runProgram(const QString& program, const QStringList& arguments) {
    return RunProgram(program, arguments, 120000);
}

// An installation in a temporary directory, its tables copied in from a saved state.
class Installation {
public:
    Installation() {
        QDir().mkpath(drive() + "PRG");
        QDir().mkpath(dataDir());
        WriteBytes(drive() + "PRG/MENU.EXE", {});
    }
    QString drive() const { return root_.path() + u'/'; }
    QString dataDir() const { return drive() + "NVNV/"; }

    void restore(const QString& saved) const {
        for (const QString& name : QDir(dataDir()).entryList(QDir::Files))
            QFile::remove(dataDir() + name);
        for (const QString& name : QDir(saved).entryList(QDir::Files))
            QFile::copy(saved + name, dataDir() + name);
    }
    QString save(const QString& name) const {
        const QString saved = root_.path() + u'/' + name + u'/';
        QDir().mkpath(saved);
        for (const QString& file : QDir(dataDir()).entryList(QDir::Files))
            QFile::copy(dataDir() + file, saved + file);
        return saved;
    }
    Tables tables() const {
        Connection data;
        data.open(dataDir());
        return {TableText(data, QStringLiteral("PRIXLIST")), UsedCodes(data)};
    }
    ProgramRun convert(const QStringList& options = {}) const {
        return runProgram(CONVERTLISTS_PATH, QStringList{drive()} << options);
    }

private:
    QTemporaryDir root_;
};

// One installation of `lists` lists and `catalogues` catalogues: its tables before and after an
// uninterrupted run.
class KillTest : public ::testing::Test {
protected:
    void prepare(int lists, int catalogues, int codes) {
        WriteOldPrixList(install.dataDir(), ManyLists(lists, codes));
        WriteCataList(install.dataDir(), ManyCatalogues(catalogues, codes));
        oldState = install.save(QStringLiteral("old"));
        before = install.tables();
        const ProgramRun run = install.convert();
        ASSERT_EQ(run.status, 0) << (run.out + run.err).constData();
        after = install.tables();
        convertedState = install.save(QStringLiteral("converted"));
        install.restore(oldState);
    }

    // PRIXLIST opens and is one of the tables it may be; CATALIST goes with a complete table.
    void expectOneOf(const QList<const Tables*>& allowed, const std::string& when) {
        SCOPED_TRACE(when);
        const Tables now = install.tables();
        for (const Tables* tables : allowed) {
            if (now.prixList != tables->prixList)
                continue;
            if (tables != &before) {
                EXPECT_EQ(firstDifference(now.usedCodes, tables->usedCodes), "");
            }
            return;
        }
        ADD_FAILURE() << "PRIXLIST is neither table: "
                      << firstDifference(now.prixList, allowed.back()->prixList);
    }
    // The next run finishes or redoes the conversion, and leaves no work table.
    void expectNextRunGives(const Tables& expected, const std::string& when) {
        SCOPED_TRACE(when);
        const ProgramRun run = install.convert();
        ASSERT_EQ(run.status, 0) << (run.out + run.err).constData();
        const Tables now = install.tables();
        EXPECT_EQ(firstDifference(now.prixList, expected.prixList), "");
        EXPECT_EQ(firstDifference(now.usedCodes, expected.usedCodes), "");
        const QStringList left =
            QDir(install.dataDir()).entryList({"PRIXTEMP.*", "CATATEMP.*"}, QDir::Files);
        EXPECT_TRUE(left.isEmpty()) << left.join(' ').toStdString();
    }
    int stepCount(const QStringList& options) {
        const ProgramRun run =
            runProgram(CONVERT_CHILD_PATH, QStringList{"--count", install.drive()} << options);
        return run.out.mid(run.out.lastIndexOf("steps ") + 6).trimmed().toInt();
    }
    ProgramRun stopAfter(int step, const char* by, const QStringList& options = {}) {
        return runProgram(
            CONVERT_CHILD_PATH,
            QStringList{"--stop-after", QString::number(step), "--by", by, install.drive()}
                << options);
    }

    Installation install;
    QString oldState;
    QString convertedState;
    Tables before;
    Tables after;
};

} // namespace

TEST_F(KillTest, AFailureOrAnEndAfterEachFileStepLosesNothing) {
    prepare(120, 10, 12);
    const int steps = stepCount({});
    install.restore(oldState);
    ASSERT_GE(steps, 8 + 8); // the file steps and one per activated catalogue
    for (const char* by : {"fail", "die"}) {
        for (int step = 1; step <= steps; ++step) {
            const std::string when = std::string(by) + " after file step " + std::to_string(step);
            install.restore(oldState);
            const ProgramRun run = stopAfter(step, by);
            EXPECT_EQ(run.status, std::string(by) == "fail" ? 1 : 3) << when;
            expectOneOf({&before, &after}, when);
            expectNextRunGives(after, when);
        }
    }
}

// The rebuild of the "Convert" command line, then the conversion again: PRIXLIST is the converted
// table, its 45-field form or the table converted again.
TEST_F(KillTest, AStoppedRebuildLosesNothing) {
    prepare(120, 10, 12);
    install.restore(convertedState);
    ASSERT_EQ(install.convert({"--force"}).status, 0);
    const Tables again = install.tables();
    install.restore(convertedState);
    const int steps = stepCount({"--force"});
    for (int step = 1; step <= steps; ++step) {
        const std::string when = "rebuild stopped after file step " + std::to_string(step);
        install.restore(convertedState);
        EXPECT_EQ(stopAfter(step, "die", {"--force"}).status, 3) << when;
        expectOneOf({&before, &after, &again}, when);
        const ProgramRun run = install.convert();
        ASSERT_EQ(run.status, 0) << (run.out + run.err).constData();
        expectOneOf({&after, &again}, when);
    }
}

TEST_F(KillTest, AKillAtFiftyRandomMomentsLosesNothing) {
    prepare(400, 16, 24);
    QElapsedTimer clock;
    clock.start();
    ASSERT_EQ(install.convert().status, 0);
    const qint64 duration = clock.elapsed();
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    std::uniform_int_distribution<qint64> moment(0, duration);
    int killedRunning = 0;
    for (int kill = 0; kill < 50; ++kill) {
        install.restore(oldState);
        const qint64 at = moment(random);
        QProcess child;
        child.start(CONVERTLISTS_PATH, {install.drive()});
        ASSERT_TRUE(child.waitForStarted());
        QThread::msleep(static_cast<unsigned long>(at));
        if (child.state() == QProcess::Running) {
            ++killedRunning;
            child.kill();
        }
        child.waitForFinished();
        const std::string when =
            "killed after " + std::to_string(at) + " ms of " + std::to_string(duration);
        expectOneOf({&before, &after}, when);
        expectNextRunGives(after, when);
    }
    EXPECT_GE(killedRunning, 25);
}
