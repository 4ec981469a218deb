#pragma once

#include "servercontent.h"
#include "serverfaults.h"

#include <QObject>
#include <QTcpServer>

// The demonstration update server: it plays the maker's server for the desktop program, the
// command-line downloads and the tests, serving a content directory on the loopback interface.
// Each connection is one session (ServerSession); several may run at once.
class UpdateServer : public QObject {
    Q_OBJECT
public:
    UpdateServer(ServerContent content, ServerFaults faults, QObject* parent = nullptr);

    // Listens on 127.0.0.1:port (0: a free port below 32768, which the desktop program's
    // 16-bit Port setting can hold). With refuseConnections, the port is only
    // reserved and then left closed, so that connecting to it is refused. False when the port
    // cannot be had; errorString() says why.
    bool start(quint16 port);
    quint16 port() const { return port_; }
    QString errorString() const { return error_; }

    // Sessions that have begun since the start.
    int sessionCount() const { return sessions_; }

Q_SIGNALS:
    void logLine(const QString& line);

private:
    void acceptPending();

    ServerContent content_;
    ServerFaults faults_;
    QTcpServer listener_;
    quint16 port_ = 0;
    QString error_;
    int sessions_ = 0;
};
