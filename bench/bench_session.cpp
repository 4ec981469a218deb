// The download session receiving a 256 MiB file over loopback, beside a plain socket copy of
// the same bytes into a file; the peak memory the session adds while receiving it; and the
// processor time it uses while its server stays silent for 10 seconds.
//
// The server runs in its own thread and streams without buffering more than a few writes, so
// that its memory does not count against the session's.

#include "app/appstate.h"
#include "app/prompts.h"
#include "comms/session.h"
#include "comms/sessionview.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>
#include <benchmark/benchmark.h>
#include <ctime>
#include <fstream>
#include <memory>
#include <string>

namespace {

constexpr qint64 FileSize = qint64(256) << 20;
constexpr qint64 Piece = 64 * 1024;
constexpr qint64 MostPending = 1 << 20;

// A server in its own thread: "OKOKO" on connection; to "BATI3" it announces and, once
// acknowledged, streams FileSize bytes; to a version query it answers the client's own
// version. With raw set it streams at once, for a plain socket client. With silent set it
// says "OKOKO" and then nothing.
class StreamingServer : public QObject {
public:
    bool raw = false;
    bool silent = false;
    QTcpServer server;

    void finish() {
        server.close();
        delete client_;
        client_ = nullptr;
    }

    void begin() {
        server.listen(QHostAddress::LocalHost, 0);
        connect(&server, &QTcpServer::newConnection, this, [this] {
            client_ = server.nextPendingConnection();
            connect(client_, &QTcpSocket::readyRead, this, [this] { onRequest(); });
            connect(client_, &QTcpSocket::bytesWritten, this, [this] { streamMore(); });
            if (raw) {
                streaming_ = true;
                streamMore();
            } else {
                client_->write("OKOKO");
            }
        });
    }

private:
    void onRequest() {
        const QByteArray request = client_->readAll();
        if (silent)
            return;
        if (request == "BATI3")
            client_->write("BATI3" + QByteArray::number(FileSize));
        else if (request.startsWith("ENVOI")) {
            streaming_ = true;
            streamMore();
        } else if (request.startsWith("VERSI"))
            client_->write("VERSI1;2;" + request.mid(5));
    }

    void streamMore() {
        static const QByteArray piece(Piece, 'x');
        while (streaming_ && sent_ < FileSize && client_->bytesToWrite() < MostPending) {
            client_->write(piece.constData(), std::min(Piece, FileSize - sent_));
            sent_ += Piece;
        }
        if (sent_ >= FileSize)
            streaming_ = false;
    }

    QTcpSocket* client_ = nullptr;
    bool streaming_ = false;
    qint64 sent_ = 0;
};

// Runs a StreamingServer in a thread of its own for its lifetime.
class ServerThread {
public:
    explicit ServerThread(bool raw, bool silent = false) {
        server_.raw = raw;
        server_.silent = silent;
        server_.moveToThread(&thread_);
        server_.server.moveToThread(&thread_);
        thread_.start();
        QMetaObject::invokeMethod(
            &server_, [this] { server_.begin(); }, Qt::BlockingQueuedConnection);
    }
    ~ServerThread() {
        QMetaObject::invokeMethod(
            &server_, [this] { server_.finish(); }, Qt::BlockingQueuedConnection);
        thread_.quit();
        thread_.wait();
    }
    quint16 port() const { return server_.server.serverPort(); }

private:
    QThread thread_;
    StreamingServer server_;
};

using NullView = QuietSessionView;

qint64 statusKilobytes(const char* field) {
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line)) {
        if (line.rfind(field, 0) == 0)
            return std::stoll(line.substr(std::string(field).size()));
    }
    return -1;
}

void resetPeakMemory() {
    std::ofstream("/proc/self/clear_refs") << "5";
}

double processSeconds() {
    timespec t{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return double(t.tv_sec) + double(t.tv_nsec) / 1e9;
}

void prepare(const QTemporaryDir& dir, quint16 port) {
    AppState& app = App();
    app.Settings.Nation = 1000;
    app.Settings.IP = QStringLiteral("127.0.0.1");
    app.Settings.Port = qint16(port);
    app.UpdateMode = true; // no tables to rebuild after the session
    app.PrgPath = dir.path() + u'/';
    app.DataPath = dir.path() + u'/';
}

void runUntilClosed(DownloadSession& session) {
    QEventLoop loop;
    QObject::connect(&session, &DownloadSession::closed, &loop, [&] {
        if (!session.running())
            loop.quit();
    });
    session.start();
    loop.exec();
}

void SessionReceives256MiB(benchmark::State& state) {
    for (auto _ : state) {
        QTemporaryDir dir;
        ServerThread server(false);
        prepare(dir, server.port());
        NullView view;
        DownloadSession session(view);
        resetPeakMemory();
        const qint64 idle = statusKilobytes("VmRSS:");
        QElapsedTimer clock;
        clock.start();
        runUntilClosed(session);
        const double seconds = double(clock.nsecsElapsed()) / 1e9;
        state.SetIterationTime(seconds);
        state.counters["MiB/s"] = double(FileSize >> 20) / seconds;
        const qint64 peak = statusKilobytes("VmHWM:");
        state.counters["idle RSS MiB"] = double(idle) / 1024.0;
        state.counters["peak RSS growth MiB"] = double(peak - idle) / 1024.0;
        state.counters["file ok"] =
            QFile(dir.filePath(QStringLiteral("NVBATI.DAT"))).size() == FileSize;
    }
}

void RawSocketCopy256MiB(benchmark::State& state) {
    for (auto _ : state) {
        QTemporaryDir dir;
        ServerThread server(true);
        QFile file(dir.filePath(QStringLiteral("copy")));
        file.open(QIODevice::WriteOnly);
        QTcpSocket socket;
        QEventLoop loop;
        qint64 received = 0;
        QObject::connect(&socket, &QTcpSocket::readyRead, &loop, [&] {
            const QByteArray bytes = socket.readAll();
            file.write(bytes);
            received += bytes.size();
            if (received >= FileSize)
                loop.quit();
        });
        QElapsedTimer clock;
        clock.start();
        socket.connectToHost(QHostAddress::LocalHost, server.port());
        loop.exec();
        const double seconds = double(clock.nsecsElapsed()) / 1e9;
        state.SetIterationTime(seconds);
        state.counters["MiB/s"] = double(FileSize >> 20) / seconds;
    }
}

void SilentServerFor10Seconds(benchmark::State& state) {
    for (auto _ : state) {
        QTemporaryDir dir;
        ServerThread server(false, true);
        prepare(dir, server.port());
        NullView view;
        DownloadSession session(view);
        session.start();
        QEventLoop loop;
        QTimer::singleShot(10000, &loop, &QEventLoop::quit);
        const double before = processSeconds();
        loop.exec();
        const double used = processSeconds() - before;
        state.SetIterationTime(10.0);
        state.counters["CPU % of one core"] = used / 10.0 * 100.0;
        session.abortConnection();
    }
}

class SilentPrompts final : public Prompter {
public:
    Answer messageBox(const QString&, Buttons, Icon, const QString&) override { return Answer::No; }
    QString inputBox(const QString&, const QString&, const QString&) override { return {}; }
};

} // namespace

BENCHMARK(RawSocketCopy256MiB)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(SessionReceives256MiB)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(SilentServerFor10Seconds)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    SilentPrompts prompts;
    SetPrompter(&prompts);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
