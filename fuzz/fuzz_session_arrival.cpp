// Feeds a download session arbitrary arrivals, as a misbehaving server would send them: the
// session must neither crash nor hang, and must write only into the files it receives.
//
// Input: a run of pieces, each one length byte (0 stands for 256) followed by that many bytes
// of one arrival.
#include "app/appstate.h"
#include "app/prompts.h"
#include "comms/session.h"
#include "comms/sessionview.h"

#include <QCoreApplication>
#include <QIODevice>
#include <QSet>
#include <QTemporaryDir>
#include <cstdint>
#include <cstdlib>
#include <memory>

namespace {

// Received files are kept in memory, up to a size; past it the device fails as a full disk.
class MemoryFile : public QIODevice {
public:
    MemoryFile() { open(QIODevice::WriteOnly); }

protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char* data, qint64 size) override {
        constexpr qint64 Room = 1 << 20;
        if (pos() + size > Room)
            return -1;
        if (bytes_.size() < pos() + size)
            bytes_.resize(pos() + size);
        std::memcpy(bytes_.data() + pos(), data, size_t(size));
        return size;
    }

private:
    QByteArray bytes_;
};

using SilentView = QuietSessionView;

class SilentPrompter final : public Prompter {
public:
    Answer messageBox(const QString&, Buttons, Icon, const QString&) override { return Answer::No; }
    QString inputBox(const QString&, const QString&, const QString&) override { return {}; }
};

struct Setting {
    QTemporaryDir root;
    QSet<QString> destinations;
};

Setting& setting() {
    static Setting s = [] {
        static int argc = 1;
        static char name[] = "fuzz_session_arrival";
        static char* argv[] = {name, nullptr};
        static QCoreApplication application(argc, argv);
        static SilentPrompter prompts;
        SetPrompter(&prompts);
        Setting made;
        AppState& app = App();
        app.Settings.Nation = 1000;
        app.PrgPath = made.root.path() + QStringLiteral("/PRG/");
        app.DataPath = made.root.path() + QStringLiteral("/NVNV/");
        app.UpdateMode = true; // no tables to re-read
        for (const char* name :
             {"PRG/NVBATI.DAT", "PRG/NVLISTE.ARJ", "PRG/NVCAT.ARJ", "PRG/NVCATA.ARJ",
              "NVNV/NVINFO.ARJ", "NVNV/PARTVERS.ARJ", "NVNV/LEDGVERS.ARJ", "program/UPDATE.EXE"})
            made.destinations.insert(made.root.path() + u'/' + QString::fromLatin1(name));
        return made;
    }();
    return s;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Setting& s = setting();
    SilentView view;
    DownloadSession session(view);
    session.setProgramDir(s.root.path() + QStringLiteral("/program"));
    session.setFileOpener([&s](const QString& path) -> std::unique_ptr<QIODevice> {
        if (!s.destinations.contains(path))
            std::abort(); // a write outside the received files
        return std::make_unique<MemoryFile>();
    });
    size_t at = 0;
    while (at < size) {
        const size_t length = data[at] == 0 ? 256 : data[at];
        ++at;
        const size_t piece = std::min(length, size - at);
        session.DataArrival(QByteArray(reinterpret_cast<const char*>(data + at), qsizetype(piece)));
        at += piece;
    }
    return 0;
}
