// Start-up with the conversion as the program wires it: an old installation converts and opens,
// the "Convert" command line rebuilds the table and ends, a converted one opens without a word.
#include "oldtables.h"
#include "scriptedprompter.h"
#include "tempinstall.h"

#include "app/appstate.h"
#include "app/frmsplash.h"
#include "app/messages.h"
#include "app/settings.h"
#include "app/startup.h"
#include "data/moddata.h"
#include "partsfile/modnvconvert.h"

#include <QApplication>
#include <QLabel>
#include <QTimer>
#include <gmock/gmock.h>

namespace {

class StartupConvertTest : public ::testing::Test {
protected:
    void SetUp() override {
        ResetAppState();
        install.installServiceProgram();
        CRegSettings(install.settingsFile())
            .SetValue(RegistryKeyPathText, QStringLiteral("Drive"), install.drive());
        WriteOldPrixList(install.dir("NVNV"), {{"L1", "AB"}, {"L2", "CD"}});
        WriteCataList(install.dir("NVNV"), {Catalogue("C1")});
        hooks.openData = [] {
            connData.open(App().DataPath);
            rsPrixList.open(QStringLiteral("SELECT * FROM PRIXLIST ORDER BY [DESC]"), connData,
                            CursorType::Keyset, LockType::Optimistic);
            rsCataList.open(QStringLiteral("SELECT * FROM CATALIST ORDER BY [DESC]"), connData,
                            CursorType::Keyset, LockType::Optimistic);
            return true;
        };
        hooks.convert = [](bool forced) { return modNVConvert::Convert(forced); };
        hooks.showMainWindow = [this] { mainWindowShown = true; };
    }
    void TearDown() override {
        for (Recordset* rs : {&rsPrixList, &rsCataList})
            if (rs->isOpen())
                rs->close();
        if (connData.isOpen())
            connData.close();
    }
    StartupOutcome start(const QString& commandLine) {
        const StartupEnvironment environment{install.programDir(),
                                             CRegSettings(install.settingsFile()),
                                             [](const QString&, const QString&) { return true; }};
        return Main(commandLine, hooks, environment);
    }
    int fieldCount() const { return rsPrixList.fieldCount(); }

    TempInstall install;
    StartupHooks hooks;
    bool mainWindowShown = false;
};

// The splash window's status label, read while the conversion runs.
class SplashWatch {
public:
    SplashWatch() {
        QObject::connect(&timer_, &QTimer::timeout, [this] {
            for (QWidget* widget : QApplication::topLevelWidgets())
                if (auto* splash = qobject_cast<frmSplash*>(widget))
                    texts.insert(splash->Label1->text());
        });
        timer_.start(0);
    }
    QSet<QString> texts;

private:
    QTimer timer_;
};

} // namespace

TEST_F(StartupConvertTest, AnOldInstallationConvertsWithProgressOnTheSplashThenOpens) {
    ScriptedPrompter prompts;
    ExpectConversion(prompts, Answer::Ok);
    SplashWatch splash;
    EXPECT_EQ(start(QString()), StartupOutcome::MainWindowShown);
    EXPECT_TRUE(mainWindowShown);
    EXPECT_EQ(fieldCount(), 46); // the shared recordsets read the new tables
    EXPECT_EQ(rsCataList.recordCount(), 1);
    EXPECT_TRUE(splash.texts.contains(QStringLiteral("Chargement en cours......100%")));
}

TEST_F(StartupConvertTest, TheConvertCommandLineRebuildsAndEnds) {
    {
        ScriptedPrompter prompts;
        ExpectConversion(prompts, Answer::Ok);
        ASSERT_EQ(start(QString()), StartupOutcome::MainWindowShown);
    }
    TearDown();
    ScriptedPrompter prompts;
    ExpectRebuild(prompts);
    mainWindowShown = false;
    EXPECT_EQ(start(QStringLiteral("Convert")), StartupOutcome::Ended);
    EXPECT_FALSE(mainWindowShown);
    rsPrixList.requery();
    EXPECT_EQ(fieldCount(), 45);
}

TEST_F(StartupConvertTest, ACancelledConversionEndsTheStart) {
    ScriptedPrompter prompts;
    ExpectConversion(prompts, Answer::Cancel);
    EXPECT_EQ(start(QString()), StartupOutcome::Ended);
    EXPECT_FALSE(mainWindowShown);
    EXPECT_TRUE(App().QuitWithoutAsking);
    EXPECT_EQ(fieldCount(), 45);
}
