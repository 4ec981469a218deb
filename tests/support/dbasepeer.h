#pragma once

#include <QProcess>
#include <QStringList>

// Another workstation's program, played by the dbase_peer helper in a process of its own: it
// holds a lock or changes a row as its arguments say, answers one line per step, and for the
// lock commands keeps the lock until this object goes.
class DbasePeer {
public:
    DbasePeer(const QString& program, const QStringList& args) {
        process_.start(program, args);
        process_.waitForStarted();
    }
    ~DbasePeer() {
        process_.closeWriteChannel();
        if (!process_.waitForFinished(5000))
            process_.kill();
    }
    DbasePeer(const DbasePeer&) = delete;
    DbasePeer& operator=(const DbasePeer&) = delete;

    QString answer() {
        while (!process_.canReadLine())
            if (!process_.waitForReadyRead(10000))
                break;
        return QString::fromUtf8(process_.readLine()).trimmed();
    }

private:
    QProcess process_;
};
