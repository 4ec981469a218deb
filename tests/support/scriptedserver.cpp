#include "scriptedserver.h"

#include "app/version.h"

ScriptedServer::Reply ScriptedServer::file(const QByteArray& token, const QByteArray& content) {
    Reply reply;
    reply.message = token;
    reply.content = content;
    reply.isFile = true;
    return reply;
}

ScriptedServer::Reply ScriptedServer::message(const QByteArray& text) {
    Reply reply;
    reply.message = text;
    return reply;
}

ScriptedServer::ScriptedServer() {
    server_.listen(QHostAddress::LocalHost, 0);
    connect(&server_, &QTcpServer::newConnection, this, &ScriptedServer::onConnection);
}

void ScriptedServer::answer(const QByteArray& request, const Reply& reply) {
    replies_.insert(request, reply);
}

void ScriptedServer::answerStartingWith(const QByteArray& prefix, const Reply& reply) {
    prefixReplies_ << qMakePair(prefix, reply);
}

void ScriptedServer::answerStart(const QByteArray& startFile, const QByteArray& programVersion) {
    answer("BATI3", file("BATI3", startFile));
    const ProgramVersion own = CurrentVersion();
    const QByteArray ownText = QByteArray::number(own.major) + '.' + QByteArray::number(own.minor) +
                               '.' + QByteArray::number(own.revision);
    answer("VERSI" + ownText, message("VERSI1.0;2.0;" + programVersion));
}

void ScriptedServer::onConnection() {
    client_ = server_.nextPendingConnection();
    connect(client_, &QTcpSocket::readyRead, this, &ScriptedServer::onRequest);
    if (!greeting.isEmpty())
        client_->write(greeting);
}

// A client error message has no end of its own: the next request may arrive in the same read.
QList<QByteArray> ScriptedServer::split(const QByteArray& data) const {
    if (!data.startsWith("ERROR:"))
        return {data};
    for (auto it = replies_.cbegin(); it != replies_.cend(); ++it) {
        if (data.endsWith(it.key()) && data.size() > it.key().size())
            return {data.left(data.size() - it.key().size()), it.key()};
    }
    return {data};
}

void ScriptedServer::onRequest() {
    for (const QByteArray& request : split(client_->readAll()))
        handle(request);
}

void ScriptedServer::handle(const QByteArray& request) {
    received << request;
    if (request.startsWith("ENVOI")) {
        if (!awaitingAck_.isEmpty())
            stream(awaitingAck_.takeFirst());
        return;
    }
    const Reply* reply = nullptr;
    if (const auto exact = replies_.constFind(request); exact != replies_.cend())
        reply = &*exact;
    for (const auto& [prefix, candidate] : prefixReplies_) {
        if (!reply && request.startsWith(prefix))
            reply = &candidate;
    }
    if (!reply)
        return; // silence
    if (!reply->isFile) {
        client_->write(reply->message);
        return;
    }
    const qint64 size = reply->announcedSize >= 0 ? reply->announcedSize : reply->content.size();
    client_->write(reply->message + QByteArray::number(size));
    awaitingAck_ << *reply;
}

void ScriptedServer::stream(const Reply& reply) {
    QByteArray bytes = reply.content;
    if (reply.closeAfter >= 0)
        bytes.truncate(reply.closeAfter);
    if (reply.silentAfter >= 0)
        bytes.truncate(reply.silentAfter);
    const qsizetype chunk =
        reply.chunkSize > 0 ? reply.chunkSize : qMax<qsizetype>(1, bytes.size());
    for (qsizetype at = 0; at < bytes.size(); at += chunk) {
        client_->write(bytes.mid(at, chunk));
        client_->flush();
    }
    if (reply.closeAfter >= 0)
        client_->disconnectFromHost();
}
