#pragma once

#include <QHostAddress>
#include <QTcpSocket>
#include <QTest>

// The client side of a conversation with the update server, byte by byte. Every wait runs the
// event loop, so a server in the same process goes on serving meanwhile.
class ServerConversation {
public:
    explicit ServerConversation(quint16 port) {
        QObject::connect(&socket_, &QTcpSocket::readyRead, [this] { ++arrivals_; });
        socket_.connectToHost(QHostAddress::LocalHost, port);
        (void)QTest::qWaitFor(
            [this] { return connected() || socket_.state() == QAbstractSocket::UnconnectedState; },
            5000);
    }

    bool connected() const { return socket_.state() == QAbstractSocket::ConnectedState; }
    QAbstractSocket::SocketError error() const { return socket_.error(); }

    void send(const QByteArray& message) {
        socket_.write(message);
        socket_.flush();
    }
    // Everything that has arrived once something arrives: one message of the server.
    QByteArray next(int timeoutMs = 5000) {
        (void)QTest::qWaitFor([this] { return socket_.bytesAvailable() > 0; }, timeoutMs);
        return socket_.readAll();
    }
    // The server's answer to a request. For a file, an acknowledgement follows the announcement
    // unless it is a refusal.
    QByteArray ask(const QByteArray& request, const QByteArray& acknowledgement = {}) {
        send(request);
        const QByteArray answer = next();
        if (!acknowledgement.isEmpty() && !answer.startsWith("ERROR"))
            send(acknowledgement);
        return answer;
    }
    // The next `size` bytes (fewer when the connection closes or the wait times out).
    QByteArray receive(qint64 size, int timeoutMs = 5000) {
        QByteArray data;
        (void)QTest::qWaitFor(
            [&] {
                data += socket_.read(size - data.size());
                return data.size() >= size || !connected();
            },
            timeoutMs);
        return data + socket_.read(size - data.size());
    }
    // True when nothing arrives for ms milliseconds.
    bool quietFor(int ms) {
        return !QTest::qWaitFor([this] { return socket_.bytesAvailable() > 0; }, ms);
    }
    // The number of separate arrivals counted since the connection, for pacing checks.
    int arrivals() const { return arrivals_; }

private:
    QTcpSocket socket_;
    int arrivals_ = 0;
};
