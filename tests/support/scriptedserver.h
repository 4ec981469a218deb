#pragma once

// An update server in the test process, on a loopback port: it greets with "OKOKO", answers
// each request as the test scripted it, and records every message the client sent, in order.
// An answer is a file (announced with its token and size, streamed once the client
// acknowledges it), a plain message, or silence. Faults: a wrong announced size, a close
// after some bytes of a file, small chunks.

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>

class ScriptedServer : public QObject {
public:
    struct Reply {
        QByteArray message; // sent as it is (a plain message), or the announcement token
        QByteArray content; // a file's bytes, streamed after the acknowledgement
        bool isFile = false;
        qint64 announcedSize = -1; // -1: the content's size
        qint64 closeAfter = -1;    // close the connection after this many bytes of the file
        qint64 silentAfter = -1;   // send this many bytes of the file, then nothing more
        int chunkSize = 0;         // 0: the whole file in one write
    };
    static Reply file(const QByteArray& token, const QByteArray& content);
    static Reply message(const QByteArray& text);

    ScriptedServer();
    quint16 port() const { return server_.serverPort(); }

    // The answer to a request, by its exact bytes.
    void answer(const QByteArray& request, const Reply& reply);
    // The answer to every request that starts with these bytes and has no exact answer.
    void answerStartingWith(const QByteArray& prefix, const Reply& reply);
    // The usual start: the start file and the versions "1.0;2.0;" + program version.
    void answerStart(const QByteArray& startFile, const QByteArray& programVersion);

    // Every message the client sent, in order.
    QList<QByteArray> received;
    // Greeting sent on connection (empty: nothing).
    QByteArray greeting = "OKOKO";

private:
    void onConnection();
    void onRequest();
    QList<QByteArray> split(const QByteArray& data) const;
    void handle(const QByteArray& request);
    void stream(const Reply& reply);

    QTcpServer server_;
    QPointer<QTcpSocket> client_;
    QHash<QByteArray, Reply> replies_;
    QList<QPair<QByteArray, Reply>> prefixReplies_;
    QList<Reply> awaitingAck_;
};
