#include "sessionfixture.h"

#include "testfiles.h"

#include "app/appstate.h"
#include "app/serviceprogram.h"
#include "comms/sessiontext.h"
#include "data/moddata.h"
#include "dbase/tablewriter.h"

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QFile>
#include <QTimer>

namespace {

FieldDef text(const char* name, int length) {
    return {QString::fromLatin1(name), 'C', length, 0};
}
FieldDef logical(const char* name) {
    return {QString::fromLatin1(name), 'L', 1, 0};
}

void writeTables(const TempInstall& install) {
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

} // namespace

QString ReportLine(const QString& text) {
    return SessionText::ReportTime(QTime(14, 32, 5)) + text + QStringLiteral("\r\n");
}

DownloadChoice RecordingView::downloadChoice() {
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

SessionTest::SessionTest() {
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
    writeTables(install);
    QFile::copy(QStringLiteral(MERCANTEL_BINARY_DIR "/src/") + install.serviceProgramName(),
                data(install.serviceProgramName()));
    EXPECT_TRUE(OpenData());
    view.marks.redim(rsPrixList.recordCount());
    session = std::make_unique<DownloadSession>(view);
    session->setClock([] { return QTime(14, 32, 5); });
    session->setProgramDir(install.programDir());
    session->setUpdater(&updater);
}

SessionTest::~SessionTest() {
    session.reset();
    CloseData();
    ResetAppState();
}

void SessionTest::runSession() {
    session->start();
    waitWhile([this] { return session->running(); });
    ASSERT_FALSE(session->running()) << "the session did not end";
}

void SessionTest::waitWhile(const std::function<bool()>& condition, int limitMs) {
    QDeadlineTimer deadline(limitMs);
    while (condition() && !deadline.hasExpired()) {
        QEventLoop loop;
        QTimer::singleShot(5, &loop, &QEventLoop::quit);
        loop.exec();
    }
}

QStringList SessionTest::serviceCalls() const {
    // A job the stand-in could not do adds a line of its own ("! " and the reason).
    QStringList calls = LoggedLines(data(QStringLiteral("NVSERV.LOG")));
    calls.removeIf([](const QString& line) { return line.startsWith(u"! "); });
    return calls;
}
