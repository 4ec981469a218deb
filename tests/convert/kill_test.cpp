// convertlists from the command line, and nothing of the price-list table lost whatever stops a
// conversion: after each file step or killed at random, PRIXLIST is either the old table or the
// complete new one, and the next run ends with the new one.
#include "oldtables.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <gmock/gmock.h>
#include <random>

using ::testing::HasSubstr;

namespace {

// The files of `to` become those of `from`.
void copyFiles(const QString& from, const QString& to) {
    QDir().mkpath(to);
    for (const QString& name : QDir(to).entryList(QDir::Files))
        QFile::remove(to + name);
    for (const QString& name : QDir(from).entryList(QDir::Files))
        QFile::copy(from + name, to + name);
}

// An installation whose old tables hold `lists` lists and `catalogues` catalogues.
class ConvertListsTest : public ::testing::Test {
protected:
    void install(int lists, int catalogues, int codes) {
        WriteBytes(drive() + "PRG/MENU.EXE", {});
        QDir().mkpath(dataDir());
        WriteOldPrixList(dataDir(), ManyLists(lists, codes));
        WriteCataList(dataDir(), ManyCatalogues(catalogues, codes));
    }
    QString drive() const { return root.path() + u'/'; }
    QString dataDir() const { return drive() + "NVNV/"; }
    static ProgramRun convertlists(const QStringList& arguments) {
        return RunProgram(CONVERTLISTS_PATH, arguments, 120000);
    }

    // The tables before and after an uninterrupted run, the files of each saved in a folder.
    // The run shows its progress; a second run leaves the converted table as it is.
    void prepare(int lists, int catalogues, int codes) {
        install(lists, catalogues, codes);
        copyFiles(dataDir(), oldState);
        before = TableRows(dataDir(), "PRIXLIST");
        const ProgramRun first = convertlists({drive()});
        ASSERT_EQ(first.status, 0) << first.err.constData();
        EXPECT_THAT(first.err.toStdString(), HasSubstr("Chargement en cours......100%"));
        EXPECT_THAT(first.err.toStdString(), HasSubstr("Conversion terminée."));
        after = tables();
        QStringList kept = TableRows(dataDir(), "PRIXLIST");
        for (QString& line : kept)
            line = line.section(u'|', 0, -2); // without CATNO, the last field
        EXPECT_EQ(FirstDifference(kept, before), "") << "every row and field is kept";
        copyFiles(dataDir(), convertedState);
        const QDateTime written = QFileInfo(dataDir() + "PRIXLIST.DBF").lastModified();
        EXPECT_THAT(convertlists({drive()}).out.toStdString(), HasSubstr("already converted"));
        EXPECT_EQ(QFileInfo(dataDir() + "PRIXLIST.DBF").lastModified(), written);
        copyFiles(oldState, dataDir());
    }
    // PRIXLIST's rows, then the categories in use of CATALIST.
    QStringList tables() const { return TableRows(dataDir(), "PRIXLIST") + UsedCodes(dataDir()); }
    // The child stops after the file step `step` (0: it does not); `by` is "fail" or "die".
    ProgramRun stopAfter(int step, const char* by, const QStringList& options) const {
        const QStringList arguments{QString::number(step), by, drive(), "--english"};
        return RunProgram(CONVERT_CHILD_PATH, arguments + options, 120000);
    }

    // PRIXLIST is the old table, or the new one with CATALIST's categories of the new one.
    void expectOldOrNew() {
        if (TableRows(dataDir(), "PRIXLIST") != before) {
            EXPECT_EQ(FirstDifference(tables(), after), "");
        }
    }
    // The next run finishes or redoes the conversion, and leaves no work table.
    void expectNextRunGivesNew() {
        const ProgramRun run = convertlists({drive()});
        ASSERT_EQ(run.status, 0) << run.err.constData();
        EXPECT_EQ(FirstDifference(tables(), after), "");
        EXPECT_THAT(QDir(dataDir()).entryList({"PRIXTEMP.*", "CATATEMP.*"}, QDir::Files),
                    ::testing::IsEmpty());
    }

    QTemporaryDir root;
    const QString oldState = root.filePath("old/");
    const QString convertedState = root.filePath("converted/");
    QStringList before; // PRIXLIST
    QStringList after;  // PRIXLIST and the categories
};
using KillTest = ConvertListsTest;

} // namespace

TEST_F(ConvertListsTest, BadArgumentsOrAFolderThatIsNoInstallationWriteNothing) {
    install(30, 5, 4);
    const QStringList files = QDir(dataDir()).entryList(QDir::Files);
    const QStringList prixList = TableRows(dataDir(), "PRIXLIST");
    for (const QStringList& arguments :
         {QStringList{}, QStringList{drive(), "--quick"}, QStringList{drive(), drive()},
          QStringList{dataDir()}, QStringList{root.path() + "/missing"}}) {
        const ProgramRun result = convertlists(arguments);
        EXPECT_EQ(result.status, 2) << arguments.join(' ').toStdString();
        EXPECT_THAT(result.err.toStdString(), HasSubstr("usage: convertlists DRIVE"));
    }
    EXPECT_EQ(QDir(dataDir()).entryList(QDir::Files), files);
    EXPECT_EQ(FirstDifference(TableRows(dataDir(), "PRIXLIST"), prixList), "");

    EXPECT_THAT(convertlists({"--help"}).out.toStdString(), HasSubstr("--force"));
    EXPECT_THAT(convertlists({"--version"}).out.toStdString(), HasSubstr("convertlists "));
}

// The conversion, and the rebuild of the "Convert" command line followed by the conversion,
// with their messages in English.
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
        const ProgramRun whole = stopAfter(0, run.by, run.options);
        EXPECT_THAT(whole.err.toStdString(), HasSubstr("Conversion complete."));
        const int steps = whole.out.mid(whole.out.lastIndexOf("steps ") + 6).trimmed().toInt();
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
    ASSERT_EQ(convertlists({drive()}).status, 0);
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
