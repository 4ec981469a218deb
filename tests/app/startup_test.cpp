// Start-up from the command line to the main window, and the settings it reads and saves.
#include "app/appstate.h"
#include "app/installpath.h"
#include "app/messages.h"
#include "app/settings.h"
#include "app/startup.h"

#include "scriptedprompter.h"
#include "tempinstall.h"
#include "testfiles.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QWidget>
#include <functional>
#include <gtest/gtest.h>
#include <tuple>

namespace {

const QString Key = RegistryKeyPathText;

AppSettings readBack(const CRegSettings& store) {
    AppSettings settings;
    AssignStoredSettings(settings, store.EnumValues(Key, 0));
    ApplySettingDefaults(settings);
    return settings;
}

// The windows on the screen, by class.
QStringList visibleWindows() {
    QStringList names;
    for (const QWidget* widget : QApplication::topLevelWidgets())
        if (widget->isVisible())
            names << widget->metaObject()->className();
    return names;
}

// Records which of the later parts start-up called, and with what.
struct StartupRun {
    TempInstall install;
    StartupHooks hooks;
    QStringList calls;
    QStringList started;
    QStringList windowsShown; // as the last step or program started saw them
    bool openDataResult = true;

    StartupRun() {
        ResetAppState();
        hooks.openData = [this] { return record("openData") && openDataResult; };
        hooks.detectInstal = [this] { return record("detectInstal") ? "2" : ""; };
        // As the real conversion does, a forced one rebuilds the table and ends the program.
        hooks.convert = [this](bool forced) {
            return record(forced ? "convert(forced)" : "convert") && !forced;
        };
        hooks.showMainWindow = [this] { record("showMainWindow"); };
        setStoredDrive(install.drive());
        install.installServiceProgram();
    }

    bool record(const char* call) {
        calls << QString::fromLatin1(call);
        windowsShown = visibleWindows();
        return true;
    }

    void setStoredDrive(const QString& drive) const {
        CRegSettings(install.settingsFile()).SetValue(RegistryKeyPathText, "Drive", drive);
    }

    StartupOutcome run(const QString& commandLine) {
        StartupEnvironment env{install.programDir(), CRegSettings(install.settingsFile()),
                               [this](const QString& program, const QString&) {
                                   started << QFileInfo(program).fileName();
                                   windowsShown = visibleWindows();
                                   return true;
                               }};
        return Main(commandLine, hooks, env);
    }

    QStringList serviceLog() const {
        return LoggedLines(ResolveInstallPath(install.dir("NVNV")) + "NVSERV.LOG");
    }
};

} // namespace

TEST(Startup, APendingLauncherIsSwappedAndNothingElseHappens) {
    StartupRun run;
    run.install.write(run.install.programDir() + "/MAIN.NEW", "new launcher");
    EXPECT_EQ(run.run(QString()), StartupOutcome::Ended);
    EXPECT_FALSE(QFile::exists(run.install.programDir() + "/MAIN.NEW"));
    EXPECT_EQ(ReadBytes(run.install.programDir() + "/MAIN.EXE"), "new launcher");
    EXPECT_EQ(run.started, QStringList{"MAIN.EXE"});
    EXPECT_TRUE(run.calls.isEmpty());
    EXPECT_TRUE(App().RegistryKeyPath.isEmpty()) << "no settings are read";
    EXPECT_TRUE(run.windowsShown.isEmpty()) << "no window is shown";
}

// Installations copied from Windows may name their directories in lower case: the paths keep
// their names, the disk's are used.
TEST(Startup, ANormalStartOpensTheDataRunsTheServiceProgramAndShowsTheMainWindow) {
    StartupRun run;
    run.install.write(run.install.programDir() + "/MAIN.EXE", "old launcher");
    ASSERT_TRUE(QDir(run.install.drive()).rename("PRG", "prg"));
    ASSERT_TRUE(QDir(run.install.drive()).rename("NVNV", "nvnv"));
    EXPECT_EQ(run.run(QString()), StartupOutcome::MainWindowShown);
    EXPECT_EQ(run.windowsShown, QStringList{"frmSplash"});
    EXPECT_FALSE(QFile::exists(run.install.programDir() + "/MAIN.EXE"));
    EXPECT_EQ(run.calls, (QStringList{"openData", "detectInstal", "convert", "showMainWindow"}));
    const AppState& app = App();
    EXPECT_EQ(app.PrgPath, run.install.dir("PRG"));
    EXPECT_EQ(app.DataPath, run.install.dir("NVNV"));
    EXPECT_EQ(app.GLPath, run.install.dir("NVGL"));
    EXPECT_EQ(app.InfoPath, run.install.dir("NVINFO"));
    EXPECT_EQ(app.Settings.Instal, 2);
    EXPECT_EQ(app.ContactLine, MessageCatalogue::text(1034));
    EXPECT_EQ(QDir::current().absolutePath(), QDir(run.install.drive()).absoluteFilePath("prg"));
    EXPECT_EQ(run.serviceLog(), QStringList{"0 2"});
}

TEST(Startup, CommandLineWordsFollowTheirCaseRules) {
    {
        StartupRun run;
        EXPECT_EQ(run.run("update"), StartupOutcome::MainWindowShown);
        EXPECT_TRUE(App().UpdateMode);
        EXPECT_EQ(App().Settings.Instal, 1);
        EXPECT_EQ(run.calls, QStringList{"showMainWindow"})
            << "update mode opens no data, converts nothing";
        EXPECT_TRUE(run.serviceLog().isEmpty()) << "and does not run the service program";
    }
    StartupRun run;
    run.run("convert");
    EXPECT_FALSE(App().UpdateMode);
    EXPECT_EQ(run.calls.filter("convert"), QStringList{"convert"}) << "only Convert forces it";
    StartupRun forced;
    EXPECT_EQ(forced.run("Convert"), StartupOutcome::Ended);
    EXPECT_EQ(forced.calls.filter("convert"), QStringList{"convert(forced)"});
}

// The drive is asked four times at most; one typed relative to where the program was started
// (which is not where it goes on) names the same place.
TEST(Startup, TheDriveIsAskedFourTimesAtMostThenTheProgramEnds) {
    for (const bool foundAtLast : {false, true}) {
        StartupRun run;
        run.setStoredDrive("/nowhere");
        QDir::setCurrent(QFileInfo(run.install.drive()).path());
        ScriptedPrompter prompts;
        const QString ask = MessageCatalogue::text(1075);
        for (const QString& typed : QStringList{"/a", "/b", QString()})
            prompts.expectInput(ask, typed, DefaultDrive());
        prompts.expectInput(ask, foundAtLast ? "drive" : "/d");
        if (!foundAtLast)
            prompts.expectMessage(MessageCatalogue::text(1076));
        EXPECT_EQ(run.run(QString()),
                  foundAtLast ? StartupOutcome::MainWindowShown : StartupOutcome::Ended);
        EXPECT_EQ(QFileInfo(App().DataPath).canonicalFilePath(),
                  foundAtLast ? QFileInfo(run.install.dir("NVNV")).canonicalFilePath() : QString());
    }
}

TEST(Startup, FailuresOfTheLaterStepsEndTheStart) {
    const std::function<void(StartupRun&, ScriptedPrompter&)> failures[] = {
        [](StartupRun& run, ScriptedPrompter&) { run.openDataResult = false; },
        [](StartupRun& run, ScriptedPrompter& prompts) { // no service program
            QFile::remove(run.install.programDir() + u'/' + run.install.serviceProgramName());
            prompts.expectMessage(MessageCatalogue::text(1077));
        },
        [](StartupRun& run, ScriptedPrompter& prompts) { // one that cannot run
            run.install.write(run.install.dir("NVNV") + run.install.serviceProgramName(), "x");
            prompts.expectMessageMatching("^\\d+ .+");
            prompts.expectMessage(MessageCatalogue::text(1078));
        }};
    for (const auto& fail : failures) {
        StartupRun run;
        ScriptedPrompter prompts;
        fail(run, prompts);
        EXPECT_EQ(run.run(QString()), StartupOutcome::Ended);
        EXPECT_FALSE(run.calls.contains("showMainWindow"));
    }
}

// Values are read by their exact names, with comma decimals; what is missing takes its default.
TEST(Settings, StoredValuesAreReadByExactNameWithCommaDecimals) {
    TempInstall install;
    EXPECT_EQ(readBack(CRegSettings(install.settingsFile())).IP, DefaultServerHost());

    install.write(install.settingsFile(), "[Software/Norvale%20Systems]\n"
                                          "Width=0,6\nHeight=\"0,45\"\nNation=999\n"
                                          "Port=2101\nIP=10.0.0.5\nnation=2000\nColour=red\n"
                                          "Format=1\nDrive=/srv/dealer\n");
    const AppSettings s = readBack(CRegSettings(install.settingsFile()));
    EXPECT_FLOAT_EQ(s.Width, 0.6f);
    EXPECT_FLOAT_EQ(s.Height, 0.45f);
    EXPECT_EQ(s.Nation, 1000) << "999 is raised to French; 'nation' is another name";
    EXPECT_EQ(std::tie(s.Port, s.IP, s.Format, s.Selection, s.Drive),
              std::tuple(2101, "10.0.0.5", 1, 0, "/srv/dealer"));

    install.write(install.settingsFile(), "[Software/Norvale%20Systems]\nNation=2000\n");
    const AppSettings english = readBack(CRegSettings(install.settingsFile()));
    EXPECT_EQ(english.Nation, 2000);
    EXPECT_EQ(english.Port, 2001);
    EXPECT_EQ(english.Drive, DefaultDrive());
}

// Every value goes back with point decimals, the drive of the data directory, and the stored
// pane fractions unless the layout is to be kept (Format 1).
TEST(Settings, SaveWritesEveryValueBackWithPointDecimalsAndTheDataDrive) {
    TempInstall install;
    const CRegSettings store(install.settingsFile());
    AppState state;
    state.RegistryKeyPath = Key;
    state.Settings = {"/old", 0, 0.45f, 2, "host", 2000, 1, 0.6f, 2101};
    state.DataPath = "/mnt/dealer/NVNV/";
    SaveSettings(store, state, PaneLayout{5000, 3000, 10000, 8000});

    EXPECT_EQ(store.QueryValue(Key, "Width"), "0.6");
    EXPECT_EQ(store.QueryValue(Key, "Height"), "0.45");
    EXPECT_EQ(store.QueryValue(Key, "Drive"), "/mnt/dealer");
    const AppSettings& s = state.Settings;
    const AppSettings back = readBack(store);
    EXPECT_EQ(std::tie(back.Nation, back.Instal, back.Selection, back.Format, back.IP, back.Port),
              std::tie(s.Nation, s.Instal, s.Selection, s.Format, s.IP, s.Port));
    EXPECT_EQ(store.EnumValues(Key).size(), 9);

    state.Settings.Format = 1;
    SaveSettings(store, state, PaneLayout{5000, 3000, 10000, 8000});
    EXPECT_EQ(store.QueryValue(Key, "Width"), "0.504");
    EXPECT_EQ(store.QueryValue(Key, "Height"), "0.37");
}

// A value that exists answers its text, even an empty one; "*" names the key's default value.
TEST(Settings, RegistryOperationsOnTheirOwnKey) {
    TempInstall install;
    const CRegSettings store(install.settingsFile());
    EXPECT_TRUE(store.SetValue(Key, "*", "default value"));
    EXPECT_TRUE(store.SetValue(Key, "Drive", QString()));
    EXPECT_EQ(store.QueryValue(Key, "*"), "default value");
    EXPECT_EQ(store.QueryValue(Key, "Drive", 0, "dflt"), QString());
    EXPECT_EQ(store.QueryValue(Key, "Nothing", 0, "dflt"), "dflt");
    EXPECT_EQ(store.EnumValues(Key).value(0).name, QString()) << "the default value is unnamed";
    EXPECT_TRUE(store.DeleteValue(Key, "Drive"));
    EXPECT_FALSE(store.DeleteValue(Key, "Drive"));
    EXPECT_TRUE(store.DeleteValue(Key, QString()));
    EXPECT_EQ(store.EnumValues(Key).size(), 1);
}
