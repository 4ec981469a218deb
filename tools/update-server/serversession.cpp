#include "serversession.h"

#include "comms/protocol.h"

namespace {

// A file goes out in pieces of this size while the socket holds less than HighWater bytes
// still to send: the memory used stays small whatever the file's size.
constexpr qint64 PieceSize = 64 * 1024;
constexpr qint64 HighWater = 256 * 1024;

QString printable(const QByteArray& message) {
    const QByteArray shown = message.left(60);
    QString text;
    for (const char c : shown)
        text += (c >= ' ' && c <= '~') ? QChar::fromLatin1(c) : QChar(u'.');
    return message.size() > shown.size() ? text + QStringLiteral("...") : text;
}

} // namespace

QByteArray announcementToken(const QByteArray& request) {
    if (request == Protocol::StartAnnounce)
        return Protocol::StartAnnounce;
    if (request == Protocol::AskIndexArchive)
        return Protocol::IndexArchive;
    if (request == Protocol::AskProgramUpdate)
        return Protocol::ProgramUpdate;
    if (request.startsWith(Protocol::AskCatalogue) ||
        request.startsWith(Protocol::AskCatalogueSecond))
        return Protocol::CatalogueFile;
    return request.left(Protocol::TokenLength); // LISTE, PARTD, LEDGM
}

QByteArray acknowledgementFor(const QByteArray& request) {
    const QByteArray token = announcementToken(request);
    // The index and the program update are acknowledged by their announcement's token; the
    // other files by the request itself, item code included.
    if (token == Protocol::IndexArchive || token == Protocol::ProgramUpdate)
        return Protocol::Acknowledge + token;
    return Protocol::Acknowledge + request;
}

ServerSession::ServerSession(QTcpSocket* socket, const ServerContent& content,
                             const ServerFaults& faults, QObject* parent)
    : QObject(parent), socket_(socket), content_(content), faults_(faults) {
    socket->setParent(this);
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    pause_.setSingleShot(true);
    connect(&pause_, &QTimer::timeout, this, &ServerSession::sendMore);
    connect(socket, &QTcpSocket::readyRead, this, &ServerSession::onReadyRead);
    connect(socket, &QTcpSocket::bytesWritten, this, [this] {
        if (state_ == State::Streaming && !pause_.isActive() && faults_.chunkDelayMs == 0)
            sendMore();
    });
    connect(socket, &QTcpSocket::disconnected, this, [this] {
        log(QStringLiteral("client left"));
        pause_.stop();
        file_.close();
        Q_EMIT finished();
    });
}

ServerSession::~ServerSession() = default;

void ServerSession::start() {
    if (faults_.silentOnConnect) {
        state_ = State::Silent;
        log(QStringLiteral("connected; staying silent"));
        return;
    }
    log(QStringLiteral("connected"));
    sendMessage(Protocol::Ready);
}

void ServerSession::log(const QString& line) {
    Q_EMIT logLine(line);
}

void ServerSession::sendMessage(const QByteArray& message) {
    log(QStringLiteral("> ") + printable(message));
    socket_->write(message);
    socket_->flush();
}

QList<QByteArray> clientMessages(const QByteArray& arrival) {
    // The client's report of a file it could not write has no answer, so its next request
    // can follow it in the same read: it starts at the first request word after the report.
    static const char* const words[] = {
        Protocol::StartAnnounce,      Protocol::Versions,   Protocol::AskProgramUpdate,
        Protocol::AskIndexArchive,    Protocol::AskList,    Protocol::AskCatalogue,
        Protocol::AskCatalogueSecond, Protocol::Partdex,    Protocol::Ledgermaker,
        Protocol::Acknowledge,        Protocol::ClientError};
    QList<QByteArray> messages;
    QByteArray rest = arrival;
    while (rest.startsWith(Protocol::ClientError)) {
        qsizetype next = -1;
        for (const char* word : words) {
            const qsizetype at = rest.indexOf(word, 1);
            if (at > 0 && (next < 0 || at < next))
                next = at;
        }
        if (next < 0)
            break;
        messages << rest.left(next);
        rest = rest.mid(next);
    }
    messages << rest;
    return messages;
}

void ServerSession::onReadyRead() {
    for (const QByteArray& message : clientMessages(socket_->readAll()))
        handleMessage(message);
}

void ServerSession::handleMessage(const QByteArray& message) {
    log(QStringLiteral("< ") + printable(message));
    switch (state_) {
    case State::Silent:
        return;
    case State::Idle:
        handleRequest(message);
        return;
    case State::AwaitingAck:
        handleWhileAwaiting(message);
        return;
    case State::Streaming:
        if (message.startsWith(Protocol::ClientError)) {
            log(QStringLiteral("the client cannot take the file; it is abandoned"));
            endTransfer();
            return;
        }
        waiting_ << message;
        return;
    }
}

void ServerSession::handleRequest(const QByteArray& request) {
    if (request.startsWith(Protocol::ClientError))
        return; // the client's report of a file it could not write: nothing to answer
    if (ServerFaults::namesAny(faults_.silentOn, request)) {
        goSilent(QStringLiteral("no answer to this request"));
        return;
    }
    if (ServerFaults::namesAny(faults_.errorOn, request)) {
        sendMessage(Protocol::Error);
        return;
    }
    if (request.startsWith(Protocol::Versions)) {
        sendMessage(Protocol::Versions + content_.versions());
        return;
    }
    const std::optional<QString> path = content_.fileFor(request);
    if (!path) {
        log(QStringLiteral("nothing to serve for this request"));
        sendMessage(Protocol::Error);
        return;
    }
    announce(request, *path);
}

void ServerSession::announce(const QByteArray& request, const QString& path) {
    file_.close();
    file_.setFileName(path);
    if (!file_.open(QIODevice::ReadOnly)) {
        log(QStringLiteral("cannot read ") + path);
        sendMessage(Protocol::Error);
        return;
    }
    transfer_ = Transfer{request, acknowledgementFor(request), 0,
                         ServerFaults::valueFor(faults_.closeAfter, request),
                         ServerFaults::valueFor(faults_.stallAfter, request)};
    const qint64 size =
        file_.size() + ServerFaults::valueFor(faults_.wrongSize, request).value_or(0);
    state_ = State::AwaitingAck;
    sendMessage(Protocol::announcement(announcementToken(request).constData(), size));
}

void ServerSession::handleWhileAwaiting(const QByteArray& message) {
    if (message == transfer_.acknowledgement) {
        state_ = State::Streaming;
        sendMore();
        return;
    }
    file_.close();
    state_ = State::Idle;
    if (message.startsWith(Protocol::ClientError)) {
        log(QStringLiteral("the client cannot take the file; it is abandoned"));
        return;
    }
    log(QStringLiteral("expected the acknowledgement ") + printable(transfer_.acknowledgement));
    sendMessage(Protocol::Error);
}

void ServerSession::sendMore() {
    const qint64 pieceSize = faults_.chunkSize > 0 ? faults_.chunkSize : PieceSize;
    while (state_ == State::Streaming && socket_->bytesToWrite() < HighWater) {
        qint64 want = pieceSize;
        for (const std::optional<qint64>& limit : {transfer_.closeAt, transfer_.stallAt})
            if (limit)
                want = qMin(want, *limit - transfer_.sent);
        const QByteArray piece = want > 0 ? file_.read(want) : QByteArray();
        if (!piece.isEmpty()) {
            socket_->write(piece);
            transfer_.sent += piece.size();
        }
        if (transfer_.closeAt && transfer_.sent >= *transfer_.closeAt) {
            log(QStringLiteral("closing after %1 bytes of the file").arg(transfer_.sent));
            state_ = State::Silent;
            file_.close();
            socket_->disconnectFromHost();
            return;
        }
        if (transfer_.stallAt && transfer_.sent >= *transfer_.stallAt) {
            goSilent(QStringLiteral("silent after %1 bytes of the file").arg(transfer_.sent));
            return;
        }
        if (file_.atEnd() || piece.isEmpty()) {
            log(QStringLiteral("sent %1 bytes").arg(transfer_.sent));
            endTransfer();
            return;
        }
        if (faults_.chunkDelayMs > 0 || faults_.chunkSize > 0) {
            scheduleMore();
            return;
        }
    }
}

void ServerSession::scheduleMore() {
    socket_->flush();
    if (faults_.chunkDelayMs > 0)
        pause_.start(faults_.chunkDelayMs);
}

void ServerSession::endTransfer() {
    pause_.stop();
    file_.close();
    state_ = State::Idle;
    while (state_ == State::Idle && !waiting_.isEmpty())
        handleRequest(waiting_.takeFirst());
}

void ServerSession::goSilent(const QString& why) {
    log(why);
    pause_.stop();
    file_.close();
    state_ = State::Silent;
}
