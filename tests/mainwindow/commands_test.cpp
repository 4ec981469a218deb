// The command strip's buttons run the price-list commands, by mouse and by keyboard.
#include "app/messages.h"
#include "mainwindow/commandstrip.h"
#include "pricelists/keyedtree.h"
#include "pricelists/treepanes.h"

#include "mainwindowfixture.h"
#include "scriptedprompter.h"

using CommandButtons = MainWindowOnDemoData;

TEST_F(CommandButtons, ButtonsRunTheirCommandsByMouseAndKeyboard) {
    loadActive();
    const QString selectPrompt = LoadText(135) + "\n" + LoadText(136);
    MenuPicture* select = main->Picture1->picMenu[0];
    {
        ScriptedPrompter prompts;
        prompts.expectInput(selectPrompt, "*");
        QTest::mouseClick(select, Qt::LeftButton);
    }
    const int shown = main->listPane->tvwList[0]->nodeCount();
    ASSERT_GT(shown, 0);
    EXPECT_EQ(main->listState.ListMarks.selectedCount(), shown) << "every activated list";
    EXPECT_TRUE(main->listPane->tvwList[0]->hasFocus()) << "the list tree gets the focus back";

    select->setFocus();
    {
        ScriptedPrompter prompts;
        prompts.expectInput(selectPrompt, "");
        QTest::keyClick(select, Qt::Key_Space);
    }
    EXPECT_EQ(main->listState.ListMarks.selectedCount(), 0);

    // Activer, on the tab of lists not activated, with none of them ticked.
    main->listPane->tbsList->setCurrentIndex(3);
    MenuPicture* activate = main->Picture1->picMenu[1];
    ASSERT_TRUE(activate->isVisible());
    activate->setFocus();
    ScriptedPrompter prompts;
    prompts.expectMessage(LoadText(141));
    QTest::keyClick(activate, Qt::Key_Return);
}
