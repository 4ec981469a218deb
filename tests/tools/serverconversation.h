#pragma once

#include <QByteArray>
#include <QTcpSocket>

// The client side of a conversation with the update server, byte by byte. Every wait runs the
// event loop, so a server in the same process goes on serving meanwhile.
class ServerConversation {
public:
    explicit ServerConversation(quint16 port);

    bool connected() const;
    QAbstractSocket::SocketError error() const { return socket_.error(); }

    void send(const QByteArray& message);
    // Everything that has arrived once something arrives: one message of the server.
    QByteArray next(int timeoutMs = 5000);
    // The next `size` bytes (fewer when the connection closes or the wait times out).
    QByteArray receive(qint64 size, int timeoutMs = 5000);
    // True when nothing arrives for ms milliseconds.
    bool quietFor(int ms);
    // True when the server closes the connection within ms milliseconds.
    bool closedWithin(int ms);
    // The number of separate arrivals counted since the connection, for pacing checks.
    int arrivals() const { return arrivals_; }

private:
    QTcpSocket socket_;
    int arrivals_ = 0;
};
