// The command strip's buttons run the price-list commands, by mouse and by keyboard.
#include "mainwindow/frmmain.h"

#include "app/appstate.h"
#include "app/mdifrmmain.h"
#include "app/messages.h"
#include "data/moddata.h"
#include "demotables.h"
#include "mainwindow/commandstrip.h"
#include "pricelists/keyedtree.h"
#include "pricelists/treepanes.h"

#include "scriptedprompter.h"
#include "tempinstall.h"

#include <QTest>
#include <gtest/gtest.h>

namespace {

struct CommandStripFixture : ::testing::Test {
    TempInstall install;
    MDIfrmMain frame;
    frmMain* main = nullptr;

    void SetUp() override {
        ResetAppState();
        App().Settings.Nation = 1000;
        App().DataPath = install.dir(QStringLiteral("NVNV"));
        App().PrgPath = install.dir(QStringLiteral("PRG"));
        App().InfoPath = install.dir(QStringLiteral("NVINFO"));
        writeDemoTables(install.drive());
        ASSERT_TRUE(OpenData());
        main = new frmMain(&frame);
        frame.setCentralWidget(main);
        frame.resize(1000, 700);
        main->Load();
        frame.show();
        frame.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&frame));
    }
    void TearDown() override {
        CloseData();
        ResetAppState();
    }
    QString selectPrompt() const { return LoadText(135) + "\n" + LoadText(136); }
};

} // namespace

TEST_F(CommandStripFixture, ButtonsRunTheirCommandsByMouseAndKeyboard) {
    MenuPicture* select = main->Picture1->picMenu[0];
    {
        ScriptedPrompter prompts;
        prompts.expectInput(selectPrompt(), "*");
        QTest::mouseClick(select, Qt::LeftButton);
    }
    const int shown = main->listPane->tvwList[0]->nodeCount();
    ASSERT_GT(shown, 0);
    EXPECT_EQ(main->listState.ListMarks.selectedCount(), shown) << "every activated list";
    EXPECT_TRUE(main->listPane->tvwList[0]->hasFocus()) << "the list tree gets the focus back";

    select->setFocus();
    {
        ScriptedPrompter prompts;
        prompts.expectInput(selectPrompt(), "");
        QTest::keyClick(select, Qt::Key_Space);
    }
    EXPECT_EQ(main->listState.ListMarks.selectedCount(), 0);

    // Activer, on the tab of lists not activated, with none of them ticked.
    main->listPane->tbsList->setCurrentIndex(3);
    MenuPicture* activate = main->Picture1->picMenu[1];
    ASSERT_TRUE(activate->isVisible());
    activate->setFocus();
    {
        ScriptedPrompter prompts;
        prompts.expectMessage(LoadText(141));
        QTest::keyClick(activate, Qt::Key_Return);
    }
}
