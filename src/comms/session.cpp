#include "comms/session.h"

#include "app/appstate.h"
#include "app/fileop.h"
#include "app/hiddenstrings.h"
#include "app/installpath.h"
#include "app/messages.h"
#include "app/prompts.h"
#include "app/serviceprogram.h"
#include "comms/programupdater.h"
#include "comms/protocol.h"
#include "comms/sessionerror.h"
#include "comms/sessiontext.h"
#include "comms/sessionview.h"
#include "comms/winsockerrors.h"
#include "partsfile/cp1252.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <limits>

namespace {

// Hidden entries naming the protocol's words and the received files.
enum Hidden {
    LedgermakerWord = 5,
    CatFileName = 9,
    CataFileName = 10,
    PartdexFileName = 14,
    PartdexWord = 15,
    ListFileName = 18,
    StartFileName = 26,
    StartWord = 27,
};

const QString IndexArchiveName = QStringLiteral("NVINFO.ARJ");
const QString LedgermakerArchiveName = QStringLiteral("LEDGVERS.ARJ");
const QString UpdaterName = QStringLiteral("UPDATE.EXE");

// The label and the progress bar follow the transfer at most this often; the file itself is
// written as each piece arrives.
constexpr qint64 CaptionIntervalMs = 50;

constexpr qint64 ReadAhead = 1 << 20;

std::unique_ptr<QIODevice> openForWriting(const QString& path) {
    auto file = std::make_unique<QFile>(path);
    file->open(QIODevice::WriteOnly | QIODevice::Truncate);
    return file;
}

bool isAnnouncement(const QByteArray& token) {
    return token != Protocol::Ready && token != Protocol::Versions && token != Protocol::Error;
}

} // namespace

// Where an announced file goes and how it is acknowledged.
struct DownloadSession::Destination {
    QString path; // empty: no file is opened and nothing is sent
    QByteArray acknowledgement;
};

DownloadSession::DownloadSession(SessionView& view, QObject* parent)
    : QObject(parent), view_(view), clock_([] { return QTime::currentTime(); }),
      openFile_(openForWriting), programDir_(QCoreApplication::applicationDirPath()) {
    static DetachedUpdater detached;
    updater_ = &detached;
    // channelReadyRead is delivered again inside a wait that an arrival's own handler runs
    // (readyRead is not): the plan waits inside the handler that completed the start file.
    connect(&socket_, &QTcpSocket::channelReadyRead, this, &DownloadSession::onReadyRead);
    connect(&socket_, &QTcpSocket::errorOccurred, this, &DownloadSession::onSocketError);
    connect(&socket_, &QTcpSocket::disconnected, this, &DownloadSession::onDisconnected);
    connect(&socket_, &QTcpSocket::stateChanged, this, &DownloadSession::wakeWaiters);
    // Each arrival is written at once; reading at most this much ahead keeps the memory of a
    // long transfer small when the disk is slower than the line.
    socket_.setReadBufferSize(ReadAhead);
    captionTimer_.setSingleShot(true);
    connect(&captionTimer_, &QTimer::timeout, this, [this] {
        if (inTransfer_)
            showTransfer(true);
    });
    silenceTimer_.setSingleShot(true);
    connect(&silenceTimer_, &QTimer::timeout, this, [this] {
        if (!running_)
            return;
        if (ServiceProgramRunning()) { // the server waits for us meanwhile
            restartSilenceTimer();
            return;
        }
        Q_EMIT silenceTimedOut();
        closeSocket();
        SocketClosed();
    });
}

DownloadSession::~DownloadSession() {
    closingSocket_ = true;
    socket_.abort();
    for (QEventLoop* loop : waiters_)
        loop->quit();
}

QString DownloadSession::programUpdatePath() const {
    return programDir_ + u'/' + UpdaterName;
}

// ---- Starting and stopping ----

void DownloadSession::cmdOKClick() {
    if (followUpRunning_ && !running_)
        return; // a stopped session's plan is still running out
    if (running_) {
        if (MsgBox(LoadText(114), Buttons::YesNo) != Answer::Yes)
            return;
        StopRequested = true;
        TransferFailed = true;
        wakeWaiters();
        Deconnecte(true);
        return;
    }
    if (!closing_)
        start();
}

void DownloadSession::start() {
    running_ = true;
    view_.sessionStarted();
    closeSocket();
    closingSocket_ = false;
    const AppSettings& settings = App().Settings;
    socket_.connectToHost(settings.IP, quint16(settings.Port ? settings.Port : 2001));
    restartSilenceTimer();
}

void DownloadSession::abortConnection() {
    running_ = false;
    closingSocket_ = true;
    silenceTimer_.stop();
    socket_.abort();
    closeTransferFile();
    inTransfer_ = false;
}

void DownloadSession::restartSilenceTimer() {
    if (silenceTimeout_ > 0 && running_)
        silenceTimer_.start(silenceTimeout_);
}

// ---- Socket events ----

void DownloadSession::onReadyRead() {
    if (socket_.state() == QAbstractSocket::ConnectingState)
        return;
    const QByteArray data = socket_.readAll();
    if (!data.isEmpty())
        DataArrival(data);
}

void DownloadSession::onSocketError(QAbstractSocket::SocketError error) {
    if (closingSocket_)
        return;
    const int number = Winsock::NumberOf(error);
    if (number != 0)
        SocketError(number, socket_.errorString());
}

void DownloadSession::onDisconnected() {
    if (!closingSocket_)
        SocketClosed();
}

void DownloadSession::SocketError(int number, const QString& description) {
    switch (number) {
    case Winsock::ConnectionReset:
        return; // the session goes on
    case Winsock::ConnectionRefused:
        MsgBox(LoadText(59), Buttons::Ok, Icon::Critical);
        break;
    case Winsock::TimedOut:
        MsgBox(LoadText(60), Buttons::Ok, Icon::Critical);
        break;
    case Winsock::HostNotFound:
    case Winsock::NoData:
        break;
    default:
        MsgBox(QStringLiteral("wsckError: ") + QString::number(number) + u' ' + description);
        break;
    }
    wakeWaiters();
    Deconnecte(false);
}

void DownloadSession::SocketClosed() {
    StopRequested = true;
    TransferFailed = true;
    wakeWaiters();
    // A waiting plan notices the failure and closes the session itself; before the plan
    // (the start file) nobody else would.
    if (CurrentRequest.isEmpty() || !followUpRunning_)
        Deconnecte(false);
}

// ---- Arrivals ----

void DownloadSession::DataArrival(const QByteArray& data) {
    restartSilenceTimer();
    try {
        if (inTransfer_)
            fileData(data); // whatever its first bytes look like
        else
            handleMessage(data);
    } catch (const SessionError& error) {
        if (error.number() == SessionError::BadFileNameOrNumber ||
            error.number() == SessionError::FileNotFound) {
            // The file cannot be written here: the server is told, the wait ends as failed.
            setProgress(100);
            TransferFailed = true;
            send(QByteArray(Protocol::ClientError) + QByteArray::number(error.number()) +
                 EncodeCp1252(error.description()));
        } else {
            MsgBox(QStringLiteral("errDataArrival: ") + QString::number(error.number()) + u' ' +
                   error.description() + SessionText::LineBreak + App().ContactLine);
            Deconnecte(false);
        }
    }
    wakeWaiters();
}

void DownloadSession::handleMessage(const QByteArray& data) {
    const QByteArray token = Protocol::tokenOf(data);
    const auto known = std::find_if(Protocol::ServerTokens.begin(), Protocol::ServerTokens.end(),
                                    [&token](const char* word) { return token == word; });
    if (known == Protocol::ServerTokens.end()) {
        fileData(data);
    } else if (token == Protocol::Ready) {
        setProgress(0);
        CurrentRequest = HiddenString(StartWord);
        sendText(CurrentRequest);
    } else if (token == Protocol::Versions) {
        storeVersions(data);
    } else if (token == Protocol::Error) {
        serverError();
    } else if (isAnnouncement(token)) {
        announce(token, data);
    }
}

DownloadSession::Destination DownloadSession::destinationOf(const QByteArray& token) const {
    const AppState& app = App();
    const QByteArray ack = Protocol::Acknowledge;
    const auto in = [](const QString& dir, const QString& name) {
        return ResolveInstallPath(dir, name);
    };
    const QByteArray suffix = EncodeCp1252(RequestSuffix);
    if (token == Protocol::StartAnnounce)
        return {in(app.PrgPath, HiddenString(StartFileName)),
                ack + EncodeCp1252(HiddenString(StartWord))};
    if (token == Protocol::IndexArchive)
        return {in(app.DataPath, IndexArchiveName), ack + Protocol::IndexArchive};
    if (token == Protocol::PriceList)
        return {in(app.PrgPath, HiddenString(ListFileName)), ack + Protocol::PriceList + suffix};
    if (token == Protocol::CatalogueFile) {
        const QByteArray code = EncodeCp1252(CatalogueFile);
        if (CurrentRequest == u"CAT")
            return {in(app.PrgPath, HiddenString(CatFileName)),
                    ack + Protocol::AskCatalogue + code};
        if (CurrentRequest == u"CATA")
            return {in(app.PrgPath, HiddenString(CataFileName)),
                    ack + Protocol::AskCatalogueSecond + code};
        return {};
    }
    if (token == Protocol::Partdex)
        return {in(app.DataPath, HiddenString(PartdexFileName)), ack + Protocol::Partdex + suffix};
    if (token == Protocol::Ledgermaker)
        return {in(app.DataPath, LedgermakerArchiveName), ack + Protocol::Ledgermaker + suffix};
    return {programUpdatePath(), ack + Protocol::ProgramUpdate};
}

void DownloadSession::announce(const QByteArray& token, const QByteArray& data) {
    const Destination destination = destinationOf(token);
    const qint64 size = Protocol::AnnouncedSize(data);
    if (size > std::numeric_limits<qint32>::max() || size < std::numeric_limits<qint32>::min())
        throw SessionError(6, QStringLiteral("Overflow"));
    ExpectedSize = qint32(size);
    closeTransferFile();
    inTransfer_ = false;
    transferBroken_ = false;
    ReceivedBytes = 0;
    // The start file's announcement keeps the clock of the session's first transfer.
    if (token != Protocol::StartAnnounce || !transferClock_.isValid())
        transferClock_.start();
    captionClock_.invalidate();
    if (destination.path.isEmpty())
        return;
    FileOp(QStringLiteral("DELETE"), destination.path);
    std::unique_ptr<QIODevice> file = openFile_(destination.path);
    if (!file || !file->isOpen())
        throw SessionError(SessionError::FileNotFound,
                           file ? file->errorString() : QStringLiteral("File not found"));
    transferFile_ = std::move(file);
    inTransfer_ = ExpectedSize > 0;
    send(destination.acknowledgement);
}

void DownloadSession::storeVersions(const QByteArray& data) {
    const auto versions = SessionText::SplitVersions(data);
    if (!versions)
        throw SessionError(5, QStringLiteral("Invalid procedure call or argument"));
    for (int i = 0; i < 3; ++i)
        VersionTable[i][0] = (*versions)[i];
}

void DownloadSession::serverError() {
    TransferFailed = true;
    setProgress(100);
    Deconnecte(false);
}

void DownloadSession::fileData(const QByteArray& data) {
    if (!transferFile_ && !transferBroken_)
        throw SessionError(SessionError::BadFileNameOrNumber,
                           QStringLiteral("Bad file name or number"));
    if (transferBroken_) {
        // The rest of a file that could not be written: counted, not kept.
        countReceived(data.size());
        inTransfer_ = ReceivedBytes < ExpectedSize;
        return;
    }
    if (!transferFile_->seek(ReceivedBytes) || transferFile_->write(data) != qint64(data.size())) {
        const QString reason = transferFile_->errorString();
        closeTransferFile();
        transferBroken_ = true;
        countReceived(data.size());
        inTransfer_ = ReceivedBytes < ExpectedSize;
        throw SessionError(SessionError::BadFileNameOrNumber, reason);
    }
    countReceived(data.size());
    if (ExpectedSize <= 0)
        throw SessionError(11, QStringLiteral("Division by zero"));
    setProgress(float(double(ReceivedBytes) / double(ExpectedSize) * 100.0));
    inTransfer_ = progress_ < 100;
    showTransfer(!inTransfer_);
    if (!inTransfer_)
        completeFile();
}

void DownloadSession::countReceived(qsizetype bytes) {
    const qint64 total = qint64(ReceivedBytes) + bytes;
    ReceivedBytes = qint32(std::min<qint64>(total, std::numeric_limits<qint32>::max()));
}

void DownloadSession::showTransfer(bool final) {
    if (!final && captionClock_.isValid() && captionClock_.elapsed() < CaptionIntervalMs) {
        // Shown a little later, so that a transfer that stalls shows where it stands.
        if (!captionTimer_.isActive())
            captionTimer_.start(int(CaptionIntervalMs));
        return;
    }
    captionTimer_.stop();
    captionClock_.start();
    const double seconds = double(transferClock_.nsecsElapsed()) / 1e9;
    const double rate = double(ReceivedBytes) / (seconds + 0.001) / 1000.0;
    view_.showProgress(progress_);
    view_.showTransferStatus(SessionText::TransferCaption(ReceivedBytes, progress_, rate));
}

QString DownloadSession::checkedFile(const QString& request) const {
    const AppState& app = App();
    if (request == u"UPDATE")
        return programUpdatePath();
    if (request == u"NVINF")
        return ResolveInstallPath(app.DataPath, IndexArchiveName);
    if (request == u"LISTE")
        return ResolveInstallPath(app.PrgPath, HiddenString(ListFileName));
    if (request == u"CAT")
        return ResolveInstallPath(app.PrgPath, HiddenString(CatFileName));
    if (request == u"CATA")
        return ResolveInstallPath(app.PrgPath, HiddenString(CataFileName));
    if (request == u"PARTD")
        return ResolveInstallPath(app.DataPath, HiddenString(PartdexFileName));
    if (request == HiddenString(StartWord))
        return ResolveInstallPath(app.PrgPath, HiddenString(StartFileName));
    return {};
}

void DownloadSession::completeFile() {
    closeTransferFile();
    const QString path = checkedFile(CurrentRequest);
    if (path.isEmpty())
        return;
    const bool whole = QFileInfo(path).size() == qint64(ExpectedSize);
    if (CurrentRequest != HiddenString(StartWord)) {
        if (!whole)
            TransferFailed = true;
        return;
    }
    if (!whole) {
        // A damaged start file: nothing more is asked; the session waits for the user.
        TransferFailed = true;
        CurrentRequest.clear();
        return;
    }
    setProgress(0);
    CheckVersions();
}

void DownloadSession::closeTransferFile() {
    if (transferFile_)
        transferFile_->close();
    transferFile_.reset();
}

void DownloadSession::setProgress(float percent) {
    progress_ = percent;
    view_.showProgress(percent);
    wakeWaiters();
}

void DownloadSession::send(const QByteArray& message) {
    if (socket_.state() != QAbstractSocket::ConnectedState) {
        // A request that meets a closed connection fails at once instead of waiting for ever.
        TransferFailed = true;
        wakeWaiters();
        return;
    }
    socket_.write(message);
    // Handed to the system at once: a message has no end mark of its own, so two requests
    // must not leave in one piece (an "ERROR:" and the plan's next request, say).
    socket_.flush();
    restartSilenceTimer();
}

void DownloadSession::sendText(const QString& text) {
    send(EncodeCp1252(text));
}

// ---- Waits ----

void DownloadSession::WaitForTransfer() {
    waitUntil([this] { return progress_ >= 100 || TransferFailed; });
}

void DownloadSession::waitUntil(const std::function<bool()>& done) {
    while (!done()) {
        QEventLoop loop;
        waiters_.push_back(&loop);
        loop.exec();
        waiters_.erase(std::find(waiters_.begin(), waiters_.end(), &loop));
    }
}

void DownloadSession::wakeWaiters() {
    for (QEventLoop* loop : waiters_)
        loop->quit();
}
