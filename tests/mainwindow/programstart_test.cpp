// The program started as main() starts it, on a demo installation: the real data store,
// installation kind and main window behind start-up, no stand-ins.
#include "app/appstate.h"
#include "app/mdifrmmain.h"
#include "app/messages.h"
#include "app/settings.h"
#include "data/moddata.h"
#include "demotables.h"
#include "mainwindow/programwiring.h"

#include "scriptedprompter.h"
#include "tempinstall.h"

#include <QDialogButtonBox>
#include <QFile>
#include <QPushButton>
#include <gtest/gtest.h>

TEST(ProgramStart, ANormalStartShowsTheMainWindowAndAnOrderlyCloseWritesTheSettingsBack) {
    ResetAppState();
    TempInstall install;
    writeDemoTables(install.drive());
    install.installServiceProgram();
    const QString key = RegistryKeyPathText;
    const CRegSettings settings(install.settingsFile());
    settings.SetValue(key, QStringLiteral("Drive"), install.drive());
    settings.SetValue(key, QStringLiteral("Format"), QStringLiteral("1"));
    const StartupEnvironment environment{install.programDir(), settings,
                                         [](const QString&, const QString&) { return false; }};

    MDIfrmMain* frame = nullptr;
    ASSERT_EQ(StartProgram({}, environment, frame), StartupOutcome::MainWindowShown);
    ASSERT_TRUE(frame && frame->isVisible());
    EXPECT_TRUE(rsPrixList.isOpen() && rsPrixList.recordCount() > 0);
    EXPECT_EQ(App().Settings.Instal, 1);
    QFile log(install.dir(QStringLiteral("NVNV")) + QStringLiteral("NVSERV.LOG"));
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    EXPECT_TRUE(log.readAll().contains("0 1")) << "the service program's start-up run";
    const QDialogButtonBox qtButtons(QDialogButtonBox::Cancel);
    EXPECT_EQ(qtButtons.button(QDialogButtonBox::Cancel)->text(), QStringLiteral("Annuler"));

    settings.SetValue(key, QStringLiteral("Width"), QStringLiteral("0.1"));
    ScriptedPrompter prompts;
    prompts.expectMessage(LoadText(35), Answer::Yes);
    EXPECT_TRUE(frame->close());
    EXPECT_FALSE(rsPrixList.isOpen()) << "the data store is closed";
    EXPECT_EQ(settings.QueryValue(key, QStringLiteral("Drive")), install.drive());
    EXPECT_NEAR(settings.QueryValue(key, QStringLiteral("Width")).toDouble(), 0.56, 0.01)
        << "the layout as it stands";
    ResetAppState();
}
