// The main window: closing, its keys, the layout by keys and saved, the command strip as the
// keyboard, the mouse and a screen reader reach it, and a download. CTest runs the WindowLayout
// group again at twice the density.
#include "app/messages.h"
#include "app/panelayout.h"
#include "app/settings.h"
#include "comms/bulletinpage.h"
#include "comms/downloadpage.h"
#include "mainwindow/commandstrip.h"
#include "mainwindow/downloadview.h"
#include "mainwindow/splitterbars.h"
#include "partsfile/partsearchpane.h"
#include "pricelists/configpane.h"
#include "pricelists/keyedtree.h"
#include "pricelists/pricelistsui.h"
#include "pricelists/treeinteractions.h"
#include "pricelists/treepanes.h"

#include "mainwindowfixture.h"
#include "scriptedprompter.h"
#include "scriptedserver.h"

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRegularExpression>
#include <QTabWidget>
#include <QTest>
#include <QTimer>

namespace {

using WindowLayout = MainWindowOnDemoData;
using MainWindowFixture = MainWindowOnDemoData;

const Qt::KeyboardModifiers AltShift = Qt::AltModifier | Qt::ShiftModifier;

// Runs `act`, which opens a modal window, closed as it opens; returns the class of the window
// that opened, or nothing when none did. `shown` gets what its text box showed.
template <typename Act> QString dialogOpenedBy(Act act, QString* shown = nullptr) {
    QString opened;
    QTimer closer;
    QObject::connect(&closer, &QTimer::timeout, [&] {
        if (QWidget* dialog = QApplication::activeModalWidget()) {
            opened = QString::fromLatin1(dialog->metaObject()->className());
            if (shown)
                *shown = dialog->findChild<QPlainTextEdit*>()->toPlainText();
            dialog->close();
        }
    });
    closer.start(10);
    act();
    return opened;
}

QString accessibleName(QObject* object) {
    return QAccessible::queryAccessibleInterface(object)->text(QAccessible::Name);
}

} // namespace

TEST_F(WindowLayout, AltShiftArrowsMoveTheSplittersAndTheLayoutIsSaved) {
    App().Settings.Format = 1;
    loadActive();
    const SplitterBars& bars = *main->splitters;
    const PanePlacement start = bars.placement();
    EXPECT_NEAR(FractionsOf(main->CurrentLayout())->height, 0.37, 1e-6) << "the stored fractions";

    QTest::keyClick(frame.windowHandle(), Qt::Key_Left, AltShift);
    EXPECT_DOUBLE_EQ(bars.placement().pane[1].left, start.pane[1].left - 120);
    EXPECT_EQ(main->picForm[1]->x(), TwipsToPixels(start.pane[1].left - 120, main->logicalDpiX()));
    QTest::keyClick(frame.windowHandle(), Qt::Key_Down, AltShift);
    EXPECT_DOUBLE_EQ(bars.placement().pane[2].top, start.pane[2].top + 120);
    QTest::keyClick(frame.windowHandle(), Qt::Key_Right, AltShift);
    QTest::keyClick(frame.windowHandle(), Qt::Key_Up, AltShift);
    EXPECT_EQ(bars.placement().pane[1], start.pane[1]);
    EXPECT_EQ(bars.placement().pane[2], start.pane[2]);

    EXPECT_TRUE(main->KeyDown(Qt::Key_X, AltShift)) << "any other key is consumed";

    // Saved at unload as it stands.
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(frame.windowHandle(), Qt::Key_Up, AltShift);
    main->Unload();
    AppSettings saved;
    AssignStoredSettings(saved, main->settingsStore.EnumValues(App().RegistryKeyPath));
    EXPECT_FLOAT_EQ(saved.Height, float(FractionsOf(main->CurrentLayout())->height));
}

// The strip's buttons run their commands by mouse, keyboard and screen reader and give the
// focus back to the list tree. A press while the configuration pane holds unsaved changes saves
// them (the question) instead of acting; the next press acts.
TEST_F(WindowLayout, TheButtonsRunTheirCommandsOnceUnsavedChangesAreSaved) {
    loadActive();
    const QString selectPrompt = LoadText(135) + "\n" + LoadText(136);
    MenuPicture* select = main->Picture1->picMenu[0];
    ScriptedPrompter prompts;
    prompts.expectInput(selectPrompt, "*");
    QTest::mouseClick(select, Qt::LeftButton);
    const int shown = main->listPane->tvwList[0]->nodeCount();
    ASSERT_GT(shown, 0);
    EXPECT_EQ(main->listState.ListMarks.selectedCount(), shown) << "every activated list";
    EXPECT_TRUE(main->listPane->tvwList[0]->hasFocus()) << "the list tree gets the focus back";
    select->setFocus();
    prompts.expectInput(selectPrompt, "");
    QTest::keyClick(select, Qt::Key_Space);
    EXPECT_EQ(main->listState.ListMarks.selectedCount(), 0);

    main->tbsInfo->setCurrentIndex(1);
    ConfigField* supplier = main->configPane->txtConfig[PrixField::Fournis];
    supplier->setFocus();
    QTest::keyClicks(supplier, "ACME");
    MenuPicture* modify = main->Picture1->picMenu[2];
    const auto clickModify = [&] { QTest::mouseClick(modify, Qt::LeftButton); };
    prompts.expectMessage(MessageCatalogue::text(1061), Answer::No);
    EXPECT_EQ(dialogOpenedBy(clickModify), QString());
    EXPECT_EQ(main->tbsInfo->currentIndex(), 1) << "the command did not run";
    EXPECT_FALSE(modify->isPressed());
    EXPECT_EQ(modify->frameShape(), QFrame::NoFrame);
    EXPECT_EQ(dialogOpenedBy(clickModify), QStringLiteral("frmStock"));
    EXPECT_EQ(main->tbsInfo->currentIndex(), 3);
    QAccessibleActionInterface* reader =
        QAccessible::queryAccessibleInterface(main->Picture1->picMenu[3])->actionInterface();
    ASSERT_NE(reader, nullptr);
    EXPECT_EQ(dialogOpenedBy([&] { reader->doAction(QAccessibleActionInterface::pressAction()); }),
              QStringLiteral("frmOptions"));

    // Activer, on the tab of lists not activated, with none of them ticked.
    main->listPane->tbsList->setCurrentIndex(3);
    MenuPicture* activate = main->Picture1->picMenu[1];
    activate->setFocus();
    prompts.expectMessage(LoadText(141));
    QTest::keyClick(activate, Qt::Key_Return);
}

// The buttons that share a place on the strip follow the trees, each under its own caption and
// named by it for a screen reader, as the panes are by their tabs, in the chosen language; the
// strip widens the captions for the longest one. The part search follows the list shown.
TEST_F(WindowLayout, TheStripFollowsTheTreesAndNamesItsButtonsAndThePanes) {
    main->Load();
    EXPECT_GT(main->bulletinPage->cmbAnnonceur->count(), 0) << "the newsletters are read";
    const CommandStrip& strip = *main->Picture1;
    EXPECT_EQ(QAccessible::queryAccessibleInterface(strip.picMenu[0])->role(), QAccessible::Button);
    const auto expectShown = [&](int shown, int hidden, int caption, int message) {
        EXPECT_TRUE(strip.picMenu[shown]->isVisibleTo(main)) << shown;
        EXPECT_FALSE(strip.picMenu[hidden]->isVisibleTo(main)) << hidden;
        EXPECT_EQ(strip.lblMenu[caption]->text(), MessageCatalogue::text(message));
        EXPECT_EQ(accessibleName(strip.picMenu[shown]), MessageCatalogue::text(message));
    };
    main->listPane->tbsList->setCurrentIndex(3);
    expectShown(1, 4, 1, 1122);
    main->listPane->tbsList->setCurrentIndex(0);
    expectShown(4, 1, 1, 1121);
    KeyedTree& catalogues = *main->catPane->tvwCat[0];
    QTreeWidgetItem* listUnderCatalogue = nullptr;
    for (int i = 0; i < catalogues.topLevelItemCount() && !listUnderCatalogue; ++i)
        listUnderCatalogue = catalogues.topLevelItem(i)->child(0);
    ASSERT_NE(listUnderCatalogue, nullptr);
    main->priceLists->interactions().tvwCatNodeClick(0, listUnderCatalogue);
    expectShown(6, 5, 4, 1125);
    const QString groupCode = rsPrixList.value(PrixField::CodeGro).toString().trimmed();
    ASSERT_FALSE(groupCode.isEmpty());
    EXPECT_TRUE(main->partSearchPane->lblRecherche->text().endsWith(groupCode));

    for (const qint16 nation : {qint16(1000), qint16(2000)}) {
        SCOPED_TRACE(nation);
        App().Settings.Nation = nation;
        main->Label();
        EXPECT_EQ(accessibleName(strip.picMenu[0]), strip.lblMenu[0]->text());
        EXPECT_EQ(accessibleName(main->listPane->tvwList[3]), main->listPane->tbsList->tabText(3));
        EXPECT_EQ(accessibleName(main->catPane->tvwCat[1]), main->catPane->tbsCat->tabText(1));
        EXPECT_EQ(accessibleName(main->tbsInfo->widget(2)), main->tbsInfo->tabText(2));
        for (const QLabel* caption : strip.lblMenu)
            EXPECT_LE(caption->fontMetrics().horizontalAdvance(caption->text()), caption->width());
    }
}

// F5 gives the focus to the list tree, which offers to save what is pending: asked once, and
// not at all when nothing is pending, so that the lists ticked stay ticked. Closing saves what is
// pending and lets the pane go before asking; no question when the program must quit; a value
// the field cannot hold keeps the window open.
TEST_F(MainWindowFixture, F5AndClosingSaveWhatIsPendingFirst) {
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

    BindConfig(true);
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

// A download from the main window, in both languages: the Download tab during the transfer
// (stop button, disabled trees, progress caption), the stop, the report window and the
// window given back.
struct DownloadInBothLanguages : MainWindowOnDemoData, ::testing::WithParamInterface<qint16> {};
INSTANTIATE_TEST_SUITE_P(Nations, DownloadInBothLanguages, ::testing::Values(1000, 2000));

TEST_P(DownloadInBothLanguages, StopMidListThenTheReportAndTheWindowGivenBack) {
    App().Settings.Nation = GetParam();
    ScriptedServer server;
    App().Settings.IP = QStringLiteral("127.0.0.1");
    App().Settings.Port = qint16(server.port());
    server.answerStart("start", "2004.3.2");
    ScriptedServer::Reply list = ScriptedServer::file("LISTE", QByteArray(200000, 'l'));
    list.silentAfter = 48120;
    server.answerStartingWith("LISTE", list);

    ScriptedPrompter prompts;
    main->Load();
    frame.show();
    DownloadPage& page = *main->downloadPage;
    page.chkMAJ[0]->click();
    prompts.expectMessageMatching(QStringLiteral("^") + LoadText(130), Answer::No);

    // While the list stalls part-way (inside the session's wait): the tab as the dealer sees
    // it, then the stop.
    const auto expectWindowUsable = [&](bool usable) {
        EXPECT_EQ(page.fraMAJ->isEnabled(), usable);
        EXPECT_EQ(main->listPane->tbsList->isEnabled(), usable);
        EXPECT_EQ(main->Picture1->picMenu[0]->isEnabled(), usable);
    };
    bool stopped = false;
    QTimer watcher;
    QObject::connect(&watcher, &QTimer::timeout, [&] {
        const QString caption = page.lblTransfert->text();
        if (!caption.startsWith(QStringLiteral("48120")))
            return;
        watcher.stop();
        stopped = true;
        EXPECT_EQ(page.cmdOK->text(), LoadText(116));
        EXPECT_TRUE(page.cmdOK->isEnabled());
        expectWindowUsable(false);
        EXPECT_TRUE(caption.contains(QRegularExpression(
            QStringLiteral("^48120 %1 \\(%24\\)\n[0-9]*\\.[0-9]{2} k/s$").arg(LoadText(88)))))
            << caption.toStdString();
        EXPECT_EQ(page.ProgressBar1->value(), 24);
        EXPECT_FALSE(main->QueryUnload()) << "no closing, and no question, during a transfer";
        // The stop closes at once without a report; the report comes when the plan has run
        // out, with the interrupted list's line.
        prompts.expectMessage(LoadText(114), Answer::Yes);
        main->downloadView->cmdOKClick();
    });
    watcher.start(10);
    QString reportShown;
    const auto download = [&] {
        main->downloadView->cmdOKClick();
        EXPECT_TRUE(
            QTest::qWaitFor([&] { return !main->downloadView->session().running(); }, 20000));
    };
    EXPECT_EQ(dialogOpenedBy(download, &reportShown), QStringLiteral("frmRapport"));

    ASSERT_TRUE(stopped);
    EXPECT_TRUE(reportShown.endsWith(LoadText(68))) << reportShown.toStdString();
    EXPECT_TRUE(reportShown.contains(u' ' + LoadText(51) + u'\n'));
    EXPECT_EQ(page.cmdOK->text(), LoadText(96));
    expectWindowUsable(true);
    EXPECT_TRUE(page.lblIDTransfert->text().startsWith(LoadText(69)));
    EXPECT_EQ(page.ProgressBar1->value(), 0);

    // The plan unchecks a box as a click would: box 2's filter box goes grey with it.
    page.chkMAJ[2]->click();
    main->downloadView->uncheckBox(2);
    EXPECT_FALSE(page.chkMAJ[2]->isChecked());
    EXPECT_FALSE(page.txtExpList->isEnabled());
    EXPECT_TRUE(page.chkMAJ[0]->isEnabled());
}
