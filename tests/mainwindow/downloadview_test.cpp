// A download from the main window, in both languages: the Download tab during the transfer
// (stop button, disabled trees, progress caption), the stop, the report window and the
// window given back.
#include "app/frmrapport.h"
#include "app/messages.h"
#include "comms/downloadpage.h"
#include "mainwindow/commandstrip.h"
#include "mainwindow/downloadview.h"
#include "pricelists/treepanes.h"

#include "mainwindowfixture.h"
#include "scriptedprompter.h"
#include "scriptedserver.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRegularExpression>

struct DownloadInBothLanguages : MainWindowOnDemoData, ::testing::WithParamInterface<qint16> {};
INSTANTIATE_TEST_SUITE_P(Nations, DownloadInBothLanguages, ::testing::Values(1000, 2000));

TEST_P(DownloadInBothLanguages, StopMidListThenTheReportAndTheWindowGivenBack) {
    AppState& app = App();
    app.Settings.Nation = GetParam();
    ScriptedServer server;
    app.Settings.IP = QStringLiteral("127.0.0.1");
    app.Settings.Port = qint16(server.port());
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

    // The report window, whenever it comes, is read and closed.
    QString reportShown;
    QTimer closer;
    QObject::connect(&closer, &QTimer::timeout, [&] {
        if (auto* rapport = qobject_cast<frmRapport*>(QApplication::activeModalWidget())) {
            reportShown = rapport->txtRapport->toPlainText();
            rapport->cmdOKClick();
        }
    });
    closer.start(20);

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
    main->downloadView->cmdOKClick();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !main->downloadView->session().running(); }, 20000));
    closer.stop();

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
