// The end of every download session.
//
// Deconnecte pumps events while it waits (for the connection to close, for a running unpack
// job, for the report window), so it can be asked for again meanwhile: a socket error or the
// server's close may arrive in those waits. A call made while another one runs does nothing:
// the running one already closes the connection, gives the window back and resets the
// session.
//
// While the session's plan is still running (the version check called from the start file's
// arrival), a close that would show the report only stops the plan and closes the connection:
// the plan always ends with its own Deconnecte, which then shows one report holding every
// line. A silent close (the stop button, the self-update) gives the window back at once.

#include "app/appstate.h"
#include "app/events.h"
#include "app/messages.h"
#include "app/prompts.h"
#include "app/serviceprogram.h"
#include "comms/session.h"
#include "comms/sessiontext.h"
#include "comms/sessionview.h"

void DownloadSession::Deconnecte(bool silent) {
    if (closing_)
        return;
    if (!silent && followUpRunning_) {
        stopForClose();
        return;
    }
    closing_ = true;
    try {
        closeSession(silent);
    } catch (const std::exception& error) {
        MsgBox(QStringLiteral("errDeconnecte: ") + QString::fromUtf8(error.what()));
    }
    closing_ = false;
    Q_EMIT closed();
}

void DownloadSession::stopForClose() {
    StopRequested = true;
    TransferFailed = true;
    closeSocket();
    wakeWaiters();
}

void DownloadSession::closeSocket() {
    closingSocket_ = true;
    silenceTimer_.stop();
    socket_.close();
    closeTransferFile();
    inTransfer_ = false;
}

void DownloadSession::closeSession(bool silent) {
    view_.setBusy(true);
    view_.showTransferTitle(LoadText(67));
    closeSocket();
    ReportText += SessionText::LineBreak + LoadText(68);
    waitUntil([this] { return socket_.state() == QAbstractSocket::UnconnectedState; });
    view_.setDownloadButtonEnabled(false);
    RunServiceProgram(QString()); // waits for an unpack job still running
    view_.showTransferTitle(LoadText(69) + SessionText::ReportTime(clock_()));
    view_.showTransferStatus(QString());
    setProgress(0);
    view_.enableControls();
    if (!App().UpdateMode)
        view_.rebuildViews();
    view_.restoreWindow();
    DoEvents();
    if (!silent)
        view_.showReport(ReportText);
    ReportText.clear();
    running_ = false;
    view_.sessionEnded();
    view_.setBusy(false);
}
