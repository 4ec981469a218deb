#pragma once

// A download session on a small installation: PRIXLIST with three lists, CATALIST with two
// catalogues, NVVERS, NVAPPEL and DEPART, the stand-in service program in the data
// directory, the data store open, a recording view, a scripted server and a fixed clock.

#include "comms/programupdater.h"
#include "comms/session.h"
#include "comms/sessionview.h"
#include "pricelists/listmarks.h"
#include "scriptedserver.h"
#include "support/scriptedprompter.h"
#include "support/tempinstall.h"

#include <QSet>
#include <QStringList>
#include <gtest/gtest.h>
#include <memory>
#include <utility>

// Records what the session shows.
class RecordingView : public SessionView {
public:
    void showProgress(float) override {}
    void showTransferTitle(const QString&) override {}
    void showTransferStatus(const QString& text) override { statuses << text; }
    void sessionStarted() override { events << QStringLiteral("started"); }
    void setDownloadButtonEnabled(bool enabled) override {
        events << (enabled ? QStringLiteral("button on") : QStringLiteral("button off"));
    }
    void enableControls() override { events << QStringLiteral("enabled"); }
    void sessionEnded() override { events << QStringLiteral("ended"); }
    void setBusy(bool) override {}
    DownloadChoice downloadChoice() override;
    void uncheckBox(int index) override { boxes[index] = false; }
    QString choiceCaption(int index) const override { return captions[index]; }
    void setChoiceCaption(int index, const QString& caption) override { captions[index] = caption; }
    void setChoiceBold(int index, bool bold) override { this->bold[index] = bold; }
    void rebuildViews() override { events << QStringLiteral("rebuilt"); }
    void restoreWindow() override {}
    void showReport(const QString& report) override {
        reports << report;
        if (auto hook = std::exchange(onReport, nullptr))
            hook();
    }
    void closeProgram() override { events << QStringLiteral("close program"); }
    void itemDone(const QString&, bool) override {}

    bool boxes[6] = {};
    QString expListText;
    ListMarkTable marks;
    QSet<QString> checkedCatalogues;
    QString captions[6] = {
        {}, {}, {}, {}, QStringLiteral("Partdex"), QStringLiteral("Ledgermaker")};
    bool bold[6] = {};
    QStringList statuses, events, reports;
    // Runs once while the next report is shown.
    std::function<void()> onReport;
};

class RecordingUpdater : public ProgramUpdater {
public:
    bool start(const QString& path) override {
        started << path;
        return true;
    }
    void endProgram() override { ended = true; }
    QStringList started;
    bool ended = false;
};

class SessionTest : public ::testing::Test {
protected:
    SessionTest();
    ~SessionTest() override;

    // Starts a session and pumps events until it is closed (or the time limit passes, which
    // fails the test).
    void runSession();
    // Pumps events while the condition holds, at most limitMs.
    static void waitWhile(const std::function<bool()>& condition, int limitMs = 20000);
    // Lines of the service program's log: its arguments.
    QStringList serviceCalls() const;
    // Box 1 with ALPHA and BETA marked for their update.
    void chooseAlphaAndBeta() {
        view.boxes[1] = true;
        view.marks(0, 0) = QStringLiteral("ALP");
        view.marks(0, 1) = QStringLiteral("BET");
    }
    QString prg(const QString& name) const { return install.dir(QStringLiteral("PRG")) + name; }
    QString data(const QString& name) const { return install.dir(QStringLiteral("NVNV")) + name; }

    TempInstall install;
    ScriptedServer server;
    ScriptedPrompter prompts;
    RecordingView view;
    RecordingUpdater updater;
    std::unique_ptr<DownloadSession> session;
};

// A line of the report, written at the fixed clock's time.
QString ReportLine(const QString& text);
// The report's last line.
inline const QString ReportEnd = QStringLiteral("\r\n--- Fin du rapport ---");
