// A download from the main window, in both languages: the Download tab during the transfer
// (stop button, disabled trees, progress caption), the stop, the report window and the
// window given back.
#include "app/appstate.h"
#include "app/frmrapport.h"
#include "app/mdifrmmain.h"
#include "app/messages.h"
#include "comms/downloadpage.h"
#include "data/moddata.h"
#include "demotables.h"
#include "mainwindow/commandstrip.h"
#include "mainwindow/downloadview.h"
#include "mainwindow/frmmain.h"
#include "pricelists/pricelistsui.h"
#include "pricelists/treepanes.h"
#include "scriptedprompter.h"
#include "scriptedserver.h"
#include "tempinstall.h"

#include <QApplication>
#include <QCheckBox>
#include <QDeadlineTimer>
#include <QGroupBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRegularExpression>
#include <QTimer>
#include <gtest/gtest.h>

namespace {

void pumpWhile(const std::function<bool()>& condition) {
    const QDeadlineTimer deadline(20000);
    while (condition() && !deadline.hasExpired()) {
        QEventLoop loop;
        QTimer::singleShot(5, &loop, &QEventLoop::quit);
        loop.exec();
    }
}

// Saves a picture of a window when the run asks for pictures (to look at them).
void keepPicture(QWidget& widget, const QString& name) {
    const QString folder = qEnvironmentVariable("MERCANTEL_SCREENSHOTS");
    if (!folder.isEmpty())
        widget.grab().save(folder + u'/' + name + QStringLiteral(".png"));
}

} // namespace

TEST(DownloadView, StopMidListThenTheReportAndTheWindowGivenBack) {
    for (const qint16 nation : {qint16(1000), qint16(2000)}) {
        SCOPED_TRACE(nation);
        TempInstall install;
        ResetAppState();
        AppState& app = App();
        app.Settings.Nation = nation;
        app.DataPath = install.dir(QStringLiteral("NVNV"));
        app.PrgPath = install.dir(QStringLiteral("PRG"));
        app.InfoPath = install.dir(QStringLiteral("NVINFO"));
        writeDemoTables(install.drive());
        ASSERT_TRUE(OpenData());
        ScriptedServer server;
        app.Settings.IP = QStringLiteral("127.0.0.1");
        app.Settings.Port = qint16(server.port());
        server.answerStart("start", "2004.3.2");
        ScriptedServer::Reply list = ScriptedServer::file("LISTE", QByteArray(200000, 'l'));
        list.silentAfter = 48120;
        server.answerStartingWith("LISTE", list);

        MDIfrmMain frame;
        auto* main = new frmMain(&frame);
        frame.setCentralWidget(main);
        frame.resize(1100, 760);
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
                keepPicture(*rapport, QStringLiteral("report-%1").arg(nation));
                rapport->cmdOKClick();
            }
        });
        closer.start(20);

        // While the list stalls part-way (inside the session's wait): the tab as the dealer
        // sees it, then the stop.
        QString caption, button;
        bool framesEnabled = true, treesEnabled = true, buttonEnabled = false;
        int progress = -1;
        QTimer watcher;
        QObject::connect(&watcher, &QTimer::timeout, [&] {
            if (!page.lblTransfert->text().startsWith(QStringLiteral("48120")))
                return;
            watcher.stop();
            caption = page.lblTransfert->text();
            button = page.cmdOK->text();
            buttonEnabled = page.cmdOK->isEnabled();
            framesEnabled = page.fraMAJ->isEnabled();
            treesEnabled =
                main->listPane->tbsList->isEnabled() || main->Picture1->picMenu[0]->isEnabled();
            progress = page.ProgressBar1->value();
            keepPicture(frame, QStringLiteral("session-%1").arg(nation));
            // The stop closes at once without a report; the report comes when the plan has
            // run out, with the interrupted list's line.
            prompts.expectMessage(LoadText(114), Answer::Yes);
            main->downloadView->cmdOKClick();
        });
        watcher.start(10);
        main->downloadView->cmdOKClick();
        pumpWhile([&] { return main->downloadView->session().running(); });
        closer.stop();

        EXPECT_EQ(button, LoadText(116));
        EXPECT_TRUE(buttonEnabled);
        EXPECT_FALSE(framesEnabled);
        EXPECT_FALSE(treesEnabled);
        EXPECT_TRUE(caption.contains(QRegularExpression(
            QStringLiteral("^48120 %1 \\(%24\\)\n[0-9]*\\.[0-9]{2} k/s$").arg(LoadText(88)))))
            << caption.toStdString();
        EXPECT_EQ(progress, 24);
        EXPECT_TRUE(reportShown.endsWith(LoadText(68))) << reportShown.toStdString();
        EXPECT_TRUE(reportShown.contains(u' ' + LoadText(51) + u'\n'));
        EXPECT_EQ(page.cmdOK->text(), LoadText(96));
        EXPECT_TRUE(page.fraMAJ->isEnabled());
        EXPECT_TRUE(main->listPane->tbsList->isEnabled());
        EXPECT_TRUE(main->Picture1->picMenu[0]->isEnabled());
        EXPECT_TRUE(page.lblIDTransfert->text().startsWith(LoadText(69)));
        EXPECT_EQ(page.ProgressBar1->value(), 0);
        frame.hide();
        CloseData();
    }
    ResetAppState();
}
