#include "serverconversation.h"

#include <QHostAddress>
#include <QTest>

ServerConversation::ServerConversation(quint16 port) {
    QObject::connect(&socket_, &QTcpSocket::readyRead, [this] { ++arrivals_; });
    socket_.connectToHost(QHostAddress::LocalHost, port);
    (void)QTest::qWaitFor(
        [this] {
            return socket_.state() == QAbstractSocket::ConnectedState ||
                   socket_.state() == QAbstractSocket::UnconnectedState;
        },
        5000);
}

bool ServerConversation::connected() const {
    return socket_.state() == QAbstractSocket::ConnectedState;
}

void ServerConversation::send(const QByteArray& message) {
    socket_.write(message);
    socket_.flush();
}

QByteArray ServerConversation::next(int timeoutMs) {
    (void)QTest::qWaitFor([this] { return socket_.bytesAvailable() > 0; }, timeoutMs);
    return socket_.readAll();
}

QByteArray ServerConversation::receive(qint64 size, int timeoutMs) {
    QByteArray data;
    (void)QTest::qWaitFor(
        [&] {
            data += socket_.read(size - data.size());
            return data.size() >= size || socket_.state() != QAbstractSocket::ConnectedState;
        },
        timeoutMs);
    data += socket_.read(size - data.size());
    return data;
}

bool ServerConversation::quietFor(int ms) {
    return !QTest::qWaitFor([this] { return socket_.bytesAvailable() > 0; }, ms);
}

bool ServerConversation::closedWithin(int ms) {
    return QTest::qWaitFor([this] { return socket_.state() == QAbstractSocket::UnconnectedState; },
                           ms);
}
