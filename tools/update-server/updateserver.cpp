#include "updateserver.h"

#include "serversession.h"

#include <QTcpSocket>

UpdateServer::UpdateServer(ServerContent content, ServerFaults faults, QObject* parent)
    : QObject(parent), content_(std::move(content)), faults_(std::move(faults)) {
    connect(&listener_, &QTcpServer::newConnection, this, &UpdateServer::acceptPending);
}

bool UpdateServer::start(quint16 port) {
    if (!listener_.listen(QHostAddress::LocalHost, port)) {
        error_ = listener_.errorString();
        return false;
    }
    port_ = listener_.serverPort();
    if (faults_.refuseConnections) {
        listener_.close();
        Q_EMIT logLine(QStringLiteral("refusing connections on port %1").arg(port_));
    }
    return true;
}

void UpdateServer::acceptPending() {
    while (QTcpSocket* socket = listener_.nextPendingConnection()) {
        const int number = ++sessions_;
        auto* session = new ServerSession(socket, content_, faults_, this);
        connect(session, &ServerSession::logLine, this, [this, number](const QString& line) {
            Q_EMIT logLine(QStringLiteral("[%1] %2").arg(number).arg(line));
        });
        connect(session, &ServerSession::finished, session, &QObject::deleteLater);
        session->start();
    }
}
