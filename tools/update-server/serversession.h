#pragma once

#include "servercontent.h"
#include "serverfaults.h"

#include <QFile>
#include <QObject>
#include <QPointer>
#include <QTcpSocket>
#include <QTimer>
#include <optional>

// One client's conversation with the update server. The server speaks first ("OKOKO"); then it
// answers each request: the versions, or a file announced by its token and size, streamed only
// once the client has acknowledged the announcement ("ENVOI" and the request's word and item).
// Every message goes out in one write; files go out in pieces as the socket takes them, so a
// large file never sits in memory.
class ServerSession : public QObject {
    Q_OBJECT
public:
    ServerSession(QTcpSocket* socket, const ServerContent& content, const ServerFaults& faults,
                  QObject* parent = nullptr);
    ~ServerSession() override;

    // Greets the client: "OKOKO", unless the server is to stay silent.
    void start();

Q_SIGNALS:
    // One line of what happened, for the server's log.
    void logLine(const QString& line);
    void finished();

private:
    enum class State { Idle, AwaitingAck, Streaming, Silent };

    struct Transfer {
        QByteArray request;
        QByteArray acknowledgement;
        qint64 sent = 0;
        std::optional<qint64> closeAt;
        std::optional<qint64> stallAt;
    };

    void onReadyRead();
    void handleMessage(const QByteArray& message);
    void handleRequest(const QByteArray& request);
    void handleWhileAwaiting(const QByteArray& message);
    void announce(const QByteArray& request, const QString& path);
    void sendMessage(const QByteArray& message);
    void sendMore();
    void scheduleMore();
    void endTransfer();
    void goSilent(const QString& why);
    void log(const QString& line);

    QPointer<QTcpSocket> socket_;
    const ServerContent& content_;
    const ServerFaults& faults_;
    State state_ = State::Idle;
    Transfer transfer_;
    QFile file_;
    QTimer pause_;
    QList<QByteArray> waiting_; // requests that arrived while a file was going out
};

// The token that announces the file a request asks for, and the acknowledgement that lets it
// go out.
QByteArray announcementToken(const QByteArray& request);
QByteArray acknowledgementFor(const QByteArray& request);

// The client's messages in one read: one, unless an error report came with what followed it.
QList<QByteArray> clientMessages(const QByteArray& arrival);
