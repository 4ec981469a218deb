#pragma once

// A download session on a small installation: PRIXLIST with three lists, CATALIST with two
// catalogues, NVVERS, NVAPPEL and DEPART, the stand-in service program in the data
// directory, the data store open, a recording view, a scripted server and a fixed clock.

#include "app/appstate.h"
#include "app/serviceprogram.h"
#include "comms/programupdater.h"
#include "comms/session.h"
#include "comms/sessiontext.h"
#include "comms/sessionview.h"
#include "data/moddata.h"
#include "dbase/tablewriter.h"
#include "pricelists/listmarks.h"
#include "scriptedserver.h"
#include "support/scriptedprompter.h"
#include "support/tempinstall.h"
#include "testfiles.h"

#include <QFile>
#include <QSet>
#include <QStringList>
#include <QTest>
#include <gtest/gtest.h>
#include <memory>
#include <utility>

inline void WriteSessionTables(const TempInstall& install) {
    const auto text = [](const char* name, int length) {
        return FieldDef{QString::fromLatin1(name), 'C', length, 0};
    };
    const auto logical = [](const char* name) {
        return FieldDef{QString::fromLatin1(name), 'L', 1, 0};
    };
    const QString data = install.dir(QStringLiteral("NVNV"));
    const QString prg = install.dir(QStringLiteral("PRG"));
    NewTable lists;
    lists.fields = {logical("UTILISER"),   text("DESC", 40),      text("FICHIER", 8),
                    text("CODEGRO", 4),    logical("PASOBLIGER"), {"DATEEFF", 'D', 8, 0},
                    {"DATESTK", 'D', 8, 0}};
    // ALPHA waits for its update; the others are up to date.
    const QDate day(2026, 3, 1);
    lists.rows = {{true, "ALPHA FREINS", "ALP", "ALP", false, day, day.addDays(-7)},
                  {true, "BETA FILTRES", "BET", QVariant(), true, day, day},
                  {true, "GAMMA COURROIES", "GAM", QVariant(), false, day, day},
                  {false, "OMEGA ERROR LISTE", "OME", "OME", false, day, QVariant()}};
    writeNewTable(data + "PRIXLIST.DBF", lists);
    NewTable catalogues;
    catalogues.fields = {text("FICHIER", 3), text("DESC", 30), logical("UTILISER")};
    catalogues.rows = {{"C1", "Catalogue Un", true}, {"C2", "Catalogue Deux", true}};
    writeNewTable(data + "CATALIST.DBF", catalogues);
    NewTable versions;
    versions.fields = {text("NVVERSION", 20)};
    versions.rows = {{"5.2.1"}, {"3.8.0"}};
    writeNewTable(prg + "NVVERS.DBF", versions);
    NewTable appel;
    for (int n = 1; n <= 8; ++n)
        appel.fields << FieldDef{QStringLiteral("P_%1").arg(n), 'C', 8, 0};
    appel.rows = {{"DEMO", "PDX1", "LGM1", "", "", "", "PDX2", "LGM2"}};
    writeNewTable(prg + "NVAPPEL.DBF", appel);
    NewTable paraprog; // the French product: installation kind 1
    paraprog.fields = {text("PROGRAM", 40)};
    paraprog.rows = {{"PARTDEX 5.2"}, {"MERCANTEL 2004.3"}};
    writeNewTable(data + "PARAPROG.DBF", paraprog);
    NewTable depart;
    depart.fields = {text("CODE", 2), text("NOM", 20)};
    depart.rows = {{"01", "Pièces"}};
    writeNewTable(prg + "DEPART.DBF", depart);
}

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
    DownloadChoice downloadChoice() override {
        DownloadChoice choice;
        std::copy(std::begin(boxes), std::end(boxes), std::begin(choice.boxes));
        choice.expListText = expListText;
        choice.listMarks = &marks;
        choice.listCount = marks.upperBound();
        choice.checkedCatCount = int(checkedCatalogues.size());
        choice.catalogueChecked = [this](const QString& code) {
            return checkedCatalogues.contains(code);
        };
        return choice;
    }
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
    SessionTest() {
        ResetAppState();
        ResetServiceProgramState();
        AppState& app = App();
        app.Settings.Nation = 1000;
        app.Settings.Instal = 1;
        app.Settings.IP = QStringLiteral("127.0.0.1");
        app.Settings.Port = qint16(server.port());
        app.PrgPath = install.dir(QStringLiteral("PRG"));
        app.DataPath = install.dir(QStringLiteral("NVNV"));
        app.InfoPath = install.dir(QStringLiteral("NVINFO"));
        WriteSessionTables(install);
        QFile::copy(QStringLiteral(MERCANTEL_BINARY_DIR "/src/") + install.serviceProgramName(),
                    data(install.serviceProgramName()));
        EXPECT_TRUE(OpenData());
        view.marks.redim(rsPrixList.recordCount());
        session = std::make_unique<DownloadSession>(view);
        session->setClock([] { return QTime(14, 32, 5); });
        session->setProgramDir(install.programDir());
        session->setUpdater(&updater);
    }

    ~SessionTest() override {
        session.reset();
        CloseData();
        ResetAppState();
    }

    // Starts a session and pumps events until it is closed.
    void runSession() {
        session->start();
        ASSERT_TRUE(QTest::qWaitFor([this] { return !session->running(); }, 20000))
            << "the session did not end";
    }

    // Lines of the service program's log: its arguments.
    QStringList serviceCalls() const {
        // A job the stand-in could not do adds a line of its own ("! " and the reason).
        QStringList calls = LoggedLines(data(QStringLiteral("NVSERV.LOG")));
        calls.removeIf([](const QString& line) { return line.startsWith(u"! "); });
        return calls;
    }
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
inline QString ReportLine(const QString& text) {
    return SessionText::ReportTime(QTime(14, 32, 5)) + text + QStringLiteral("\r\n");
}
inline const QString ReportEnd = QStringLiteral("\r\n--- Fin du rapport ---");
