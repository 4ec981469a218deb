#pragma once

// A download session with the maker's update server: the connection, everything that
// arrives on it, the plan of what is fetched, the version check and the close. The session
// has no widgets; it reaches the window through a SessionView and asks its questions through
// the prompt layer.
//
// Waits run the event loop (nested as deep as the session needs): the whole plan runs inside
// the handler of the arrival that completed the start file, while further arrivals, the stop
// button and the service program's end are delivered inside its waits.

#include <QByteArray>
#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QTcpSocket>
#include <QTime>
#include <QTimer>
#include <functional>
#include <memory>
#include <vector>

class QEventLoop;
class QIODevice;
class ProgramUpdater;
class SessionView;
struct DownloadChoice;

class DownloadSession : public QObject {
    Q_OBJECT
public:
    using Clock = std::function<QTime()>;
    // Opens a received file for writing (created empty); the device reports its own errors.
    using FileOpener = std::function<std::unique_ptr<QIODevice>(const QString& path)>;

    explicit DownloadSession(SessionView& view, QObject* parent = nullptr);
    ~DownloadSession() override;

    void setClock(Clock clock) { clock_ = std::move(clock); }
    void setFileOpener(FileOpener opener) { openFile_ = std::move(opener); }
    void setUpdater(ProgramUpdater* updater) { updater_ = updater; }
    // Where the program itself lives: the program update is received there.
    void setProgramDir(const QString& directory) { programDir_ = directory; }
    // A server that sends nothing for this long ends the session as if it had closed the
    // connection (0: wait for ever, as the window does).
    void setSilenceTimeout(int milliseconds) { silenceTimeout_ = milliseconds; }

    // The download button, once the window saved pending changes: starts a session, or while
    // one runs offers to stop it.
    void cmdOKClick();
    // True from the start of a session until its plan has run out: the window may not close
    // and no second session may start meanwhile.
    bool running() const { return running_ || followUpRunning_; }
    // Connects to the server of the settings (IP, Port).
    void start();
    // Drops the connection at once and ends the session without its close (the program ends).
    void abortConnection();

    // Pumps events until the file in transfer is complete or the transfer failed.
    void WaitForTransfer();
    // One item of the plan: "UPD", "VER", "REP", "INF", "AUT" or "LST" and the list mode.
    void Download(const QString& kind);
    // Reads the installed versions of Partdex and Ledgermaker and shows them.
    void SetupEnv();
    // Runs when the start file has arrived: the version check, the self-update offer and the
    // plan, then the close.
    void CheckVersions();
    // Ends the session: closes the connection, waits for it and for the service program,
    // gives the window back, rebuilds the views and, unless silent, shows the report.
    void Deconnecte(bool silent);

    // The socket's events (public so that tests and the fuzz target can feed them).
    void DataArrival(const QByteArray& data);
    void SocketError(int number, const QString& description);
    void SocketClosed();

    float progress() const { return progress_; }
    QString programUpdatePath() const;

    // Session state.
    QString CurrentRequest;
    QString RequestSuffix;
    QString CatalogueFile;
    qint32 ExpectedSize = 0;
    qint32 ReceivedBytes = 0;
    bool TransferFailed = false;
    bool StopRequested = false;
    QString VersionTable[3][2];
    QString ReportText;

Q_SIGNALS:
    // Deconnecte has given the window back (the session is idle).
    void closed();
    // The server stayed silent for the time set by setSilenceTimeout.
    void silenceTimedOut();

private:
    struct Destination;
    struct Package;

    // Protocol.
    void onReadyRead();
    void onSocketError(QAbstractSocket::SocketError error);
    void onDisconnected();
    void send(const QByteArray& message);
    void sendText(const QString& text);
    void handleMessage(const QByteArray& data);
    void announce(const QByteArray& token, const QByteArray& data);
    Destination destinationOf(const QByteArray& token) const;
    void storeVersions(const QByteArray& data);
    void serverError();
    void fileData(const QByteArray& data);
    void countReceived(qsizetype bytes);
    void completeFile();
    QString checkedFile(const QString& request) const;
    void closeTransferFile();
    void setProgress(float percent);
    void showTransfer(bool final);
    void restartSilenceTimer();

    // Waits.
    void waitUntil(const std::function<bool()>& done);
    void wakeWaiters();

    // Plan.
    bool runDownload(const QString& kind);
    void askProgramUpdate();
    void askVersions();
    void fetchIndex();
    bool fetchPackage(const Package& package);
    void fetchLists(int mode);
    bool listSelected(int mode, int row, const DownloadChoice& choice);
    void fetchList();
    void fetchCatalogues(const DownloadChoice& choice);
    bool fetchCatalogue();
    void commonEnding();
    void report(const QString& line);
    void reportItem(const QString& item, bool succeeded);
    void showTitle(const QString& text);

    // Version check.
    QString ownVersion() const;
    bool offerProgramUpdate();
    bool updateProgram();
    void markCompanions();
    void runPlan();

    // Close.
    void stopForClose();
    void closeSocket();
    void closeSession(bool silent);

    SessionView& view_;
    QTcpSocket socket_;
    Clock clock_;
    FileOpener openFile_;
    ProgramUpdater* updater_ = nullptr;
    QString programDir_;
    int silenceTimeout_ = 0;
    QTimer silenceTimer_;

    bool running_ = false;
    bool closingSocket_ = false; // our own close: not the server closing
    bool closing_ = false;       // Deconnecte is running
    bool followUpRunning_ = false;
    float progress_ = 0;
    QString transferTitle_;

    std::unique_ptr<QIODevice> transferFile_;
    bool inTransfer_ = false;     // fewer bytes than announced have arrived
    bool transferBroken_ = false; // the file could not be written: the rest is discarded
    QElapsedTimer transferClock_;
    QElapsedTimer captionClock_;
    QTimer captionTimer_; // the caption held back by the interval, shown when it has passed

    std::vector<QEventLoop*> waiters_;
};
