#include "app/messages.h"
#include "app/panelayout.h"
#include "comms/downloadpage.h"
#include "mainwindow/commandstrip.h"
#include "mainwindow/downloadview.h"
#include "pricelists/configpane.h"
#include "pricelists/treepanes.h"

#include "mainwindowfixture.h"
#include "scriptedprompter.h"

#include <QCheckBox>

using MainWindowFixture = MainWindowOnDemoData;

// Closing saves what is pending and lets the pane go before asking; no question when the
// program must quit; a value the field cannot hold keeps the window open.
TEST_F(MainWindowFixture, ClosingSavesFirstThenAsksUnlessTheProgramMustQuit) {
    main->Load();
    BindConfig(true);
    ScriptedPrompter prompts;
    prompts.expectMessage(MessageCatalogue::text(1035), Buttons::YesNo, Icon::None, QString(),
                          Answer::No);
    EXPECT_FALSE(main->QueryUnload());
    EXPECT_TRUE(ConfigBinding().isBound()) << "a refused close binds the pane again";
    main->listState.ConfigDirty = Dirty::Pane;
    prompts.expectMessage(MessageCatalogue::text(1061), Answer::No);
    prompts.expectMessage(MessageCatalogue::text(1035), Answer::Yes);
    EXPECT_TRUE(main->QueryUnload());
    EXPECT_EQ(main->listState.ConfigDirty, Dirty::None);
    App().QuitWithoutAsking = true;
    BindConfig(true);
    EXPECT_TRUE(main->QueryUnload());
    EXPECT_FALSE(ConfigBinding().isBound()) << "the pane is let go before the window closes";

    BindConfig(true);
    ConfigField* date = main->configPane->txtConfig[PrixField::DateEff];
    date->selectAll();
    QTest::keyClicks(date, "2026.13.01");
    prompts.expectMessage(MessageCatalogue::text(1146), Buttons::Ok, Icon::Warning, QString(),
                          Answer::Ok);
    EXPECT_FALSE(main->QueryUnload());
    EXPECT_EQ(date->text(), "2026.13.01");
}

TEST_F(MainWindowFixture, UpdateModeDisablesTheCommandsAndUpdateChoicesAndKeepsTheData) {
    App().UpdateMode = true;
    main->Load();
    for (QLabel* button : main->Picture1->picMenu)
        EXPECT_FALSE(button->isEnabled());
    for (auto* box : main->downloadPage->chkMAJ)
        EXPECT_FALSE(box->isEnabled());
    main->Unload();
    EXPECT_TRUE(rsPrixList.isOpen());
}

// The frame picture of the Download tab stays where Alt and the arrows put it until the
// window is laid out afresh: not when the dealer comes back from another program.
TEST_F(MainWindowFixture, AltArrowsMoveTheFramePictureUntilTheWindowIsLaidOutAfresh) {
    loadActive();
    EXPECT_EQ(frame.frameGeometry(), frame.screen()->availableGeometry())
        << "the window takes the desktop's work area";
    QWidget* picFrame = main->downloadPage->picFrame;
    EXPECT_EQ(picFrame->geometry(), main->downloadPage->rect()) << "it fills its tab";
    const QPoint start = picFrame->pos();
    const int step = TwipsToPixels(120, main->logicalDpiX());
    EXPECT_TRUE(main->KeyDown(Qt::Key_Right, Qt::AltModifier));
    EXPECT_TRUE(main->KeyDown(Qt::Key_Down, Qt::AltModifier));
    EXPECT_EQ(picFrame->pos(), start + QPoint(step, step));
    EXPECT_TRUE(main->KeyDown(Qt::Key_Left, Qt::AltModifier));
    EXPECT_TRUE(main->KeyDown(Qt::Key_Up, Qt::AltModifier));
    EXPECT_EQ(picFrame->pos(), start);
    EXPECT_TRUE(main->KeyDown(Qt::Key_X, Qt::AltModifier));
    EXPECT_FALSE(main->KeyDown(Qt::Key_X, Qt::NoModifier));

    main->KeyDown(Qt::Key_Right, Qt::AltModifier);
    QApplicationStateChangeEvent away(Qt::ApplicationInactive);
    QCoreApplication::sendEvent(qApp, &away);
    QEvent activated(QEvent::WindowActivate);
    QCoreApplication::sendEvent(&frame, &activated);
    EXPECT_EQ(picFrame->pos(), start + QPoint(step, 0)) << "back from another program";
    // Activated again from within the program (a dialog closed).
    QCoreApplication::sendEvent(&frame, &activated);
    EXPECT_EQ(picFrame->geometry(), main->downloadPage->rect());
}

// F5 gives the focus to the list tree, which offers to save what is pending: asked once, and
// not at all when nothing is pending, so that the lists ticked stay ticked.
TEST_F(MainWindowFixture, F5AsksOnceAboutPendingChangesAndNothingOtherwise) {
    loadActive();
    main->listState.ListMarks(0, 0) = QStringLiteral("TICKED");
    ConfigField* supplier = main->configPane->txtConfig[PrixField::Fournis];
    supplier->setFocus();
    ScriptedPrompter prompts;
    QTest::keyClick(frame.windowHandle(), Qt::Key_F5); // nothing pending: no question
    EXPECT_TRUE(main->listPane->tvwList[0]->hasFocus());
    EXPECT_EQ(main->listState.ListMarks(0, 0), QStringLiteral("TICKED"));

    supplier->setFocus();
    QTest::keyClicks(supplier, "ACME");
    prompts.expectMessage(MessageCatalogue::text(1061), Answer::Yes);
    QTest::keyClick(frame.windowHandle(), Qt::Key_F5);
    EXPECT_EQ(main->listState.ConfigDirty, Dirty::None);
    EXPECT_EQ(main->listState.ListMarks(0, 0), QStringLiteral("TICKED"));
}
