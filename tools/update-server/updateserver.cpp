#include "updateserver.h"

#include "serversession.h"

#include <QRandomGenerator>
#include <QTcpSocket>

UpdateServer::UpdateServer(ServerContent content, ServerFaults faults, QObject* parent)
    : QObject(parent), content_(std::move(content)), faults_(std::move(faults)) {
    connect(&listener_, &QTcpServer::newConnection, this, &UpdateServer::acceptPending);
}

namespace {

// The desktop program keeps its server port in a 16-bit signed setting: a free port is looked
// for below 32768, where the system's own choice (its ephemeral range) seldom is.
constexpr int LowestFreePort = 10000;
constexpr int HighestFreePort = 32767;
constexpr int FreePortTries = 200;

bool listenOnFreePort(QTcpServer& listener) {
    for (int i = 0; i < FreePortTries; ++i) {
        const auto port =
            quint16(QRandomGenerator::global()->bounded(LowestFreePort, HighestFreePort + 1));
        if (listener.listen(QHostAddress::LocalHost, port))
            return true;
    }
    return listener.listen(QHostAddress::LocalHost, 0);
}

} // namespace

bool UpdateServer::start(quint16 port) {
    const bool listening =
        port == 0 ? listenOnFreePort(listener_) : listener_.listen(QHostAddress::LocalHost, port);
    if (!listening) {
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
