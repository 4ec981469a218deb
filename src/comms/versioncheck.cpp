// The installed and offered versions: the companions' captions, the offer of a newer program
// and the hand-over to its updater.

#include "app/appstate.h"
#include "app/events.h"
#include "app/fileop.h"
#include "app/messages.h"
#include "app/prompts.h"
#include "app/version.h"
#include "comms/programupdater.h"
#include "comms/session.h"
#include "comms/sessiontext.h"
#include "comms/sessionview.h"
#include "data/moddata.h"
#include "dbase/dberror.h"

#include <QFileInfo>

namespace {

constexpr int PartdexBox = 4;
constexpr int LedgermakerBox = 5;

// NVVERSION of the versions table's first two rows; a missing table or row leaves its
// version empty.
void readInstalledVersions(QString& partdex, QString& ledgermaker) {
    Recordset versions;
    try {
        versions.open(QStringLiteral("SELECT * FROM NVVERS"), connPrg);
    } catch (const DbError&) {
        return;
    }
    QString* targets[] = {&partdex, &ledgermaker};
    for (QString* target : targets) {
        if (versions.eof())
            return;
        try {
            *target = versions.value(QStringLiteral("NVVERSION")).toString();
        } catch (const DbError&) {
            return;
        }
        versions.moveNext();
    }
}

} // namespace

QString DownloadSession::ownVersion() const {
    const ProgramVersion version = CurrentVersion();
    return QString::number(version.major) + u'.' + QString::number(version.minor) + u'.' +
           QString::number(version.revision);
}

void DownloadSession::SetupEnv() {
    try {
        if (!App().UpdateMode)
            readInstalledVersions(VersionTable[0][1], VersionTable[1][1]);
        view_.setChoiceCaption(PartdexBox,
                               view_.choiceCaption(PartdexBox) + u' ' + VersionTable[0][1]);
        view_.setChoiceCaption(LedgermakerBox,
                               view_.choiceCaption(LedgermakerBox) + u' ' + VersionTable[1][1]);
    } catch (const std::exception& error) {
        MsgBox(QStringLiteral("ErrSetupEnv: 0 ") + QString::fromUtf8(error.what()) +
               SessionText::LineBreak + App().ContactLine);
        App().QuitWithoutAsking = true;
        view_.closeProgram();
    }
}

void DownloadSession::CheckVersions() {
    followUpRunning_ = true;
    bool programEnded = false;
    try {
        VersionTable[2][1] = ownVersion();
        Download(QStringLiteral("VER"));
        const auto offered = SessionText::VersionValue(VersionTable[2][0]);
        const auto own = SessionText::VersionValue(VersionTable[2][1]);
        if (offered && own) {
            if (*offered > *own && offerProgramUpdate()) {
                programEnded = updateProgram();
            } else {
                markCompanions();
                StopRequested = false;
                runPlan();
            }
        }
    } catch (const std::exception&) {
        // Any failure closes the session with its report.
    }
    followUpRunning_ = false;
    if (programEnded)
        return;
    DoEvents();
    Deconnecte(false);
}

bool DownloadSession::offerProgramUpdate() {
    const QString question = LoadText(65) + SessionText::LineBreak + QStringLiteral("Version: ") +
                             VersionTable[2][1] + SessionText::LineBreak + SessionText::LineBreak +
                             LoadText(66);
    return MsgBox(question, Buttons::YesNo) == Answer::Yes;
}

// Receives the updater and hands over to it; true when the program ends. An updater that
// did not arrive whole is not started: the report says so and the session closes as usual.
bool DownloadSession::updateProgram() {
    const QString path = programUpdatePath();
    FileOp(QStringLiteral("DELETE"), path);
    Download(QStringLiteral("UPD"));
    const bool whole = ExpectedSize > 0 && QFileInfo(path).size() == qint64(ExpectedSize);
    if (!whole) {
        report(QStringLiteral("> ") + QFileInfo(path).fileName() + u' ' + LoadText(51));
        view_.itemDone(QFileInfo(path).fileName(), false);
        return false;
    }
    App().QuitWithoutAsking = true;
    Deconnecte(true);
    if (!updater_->start(path)) {
        App().QuitWithoutAsking = false;
        report(QStringLiteral("> ") + QFileInfo(path).fileName() + u' ' + LoadText(51));
        return false;
    }
    updater_->endProgram();
    return true;
}

void DownloadSession::markCompanions() {
    const bool newPartdex = VersionTable[0][0] != VersionTable[0][1];
    view_.setChoiceBold(PartdexBox, newPartdex);
    if (newPartdex)
        view_.setChoiceCaption(PartdexBox, QStringLiteral("Partdex ") + VersionTable[0][0] + u' ' +
                                               LoadText(64));
    const bool newLedgermaker = VersionTable[1][0] != VersionTable[1][1];
    view_.setChoiceBold(LedgermakerBox, newLedgermaker);
    if (newLedgermaker)
        view_.setChoiceCaption(LedgermakerBox,
                               LoadText(48) + u' ' + VersionTable[1][0] + u' ' + LoadText(64));
}

void DownloadSession::runPlan() {
    const DownloadChoice choice = view_.downloadChoice();
    if (choice.boxes[3])
        Download(QStringLiteral("REP"));
    if (choice.boxes[4])
        Download(QStringLiteral("INF"));
    if (choice.boxes[5])
        Download(QStringLiteral("AUT"));
    if (const int mode = choice.listMode(); mode != 0)
        Download(QStringLiteral("LST") + QString::number(mode));
}
