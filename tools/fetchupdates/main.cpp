// fetchupdates DRIVE [options]: the download of the main window's Download button, without a
// window, for dealers who fetch their updates at night and for support staff. See --help.
#include "app/appstate.h"
#include "app/cregsettings.h"
#include "app/installpath.h"
#include "app/messages.h"
#include "app/prompts.h"
#include "app/settings.h"
#include "app/startup.h"
#include "app/version.h"
#include "comms/session.h"
#include "data/moddata.h"
#include "dbase/dberror.h"
#include "fetchoptions.h"
#include "pricelists/listmarks.h"
#include "pricelists/treerules.h"
#include "textview.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QSet>

namespace {

// Installs a prompter for its lifetime.
class PrompterScope {
public:
    explicit PrompterScope(Prompter& prompter) : previous_(SetPrompter(&prompter)) {}
    ~PrompterScope() { SetPrompter(previous_); }
    PrompterScope(const PrompterScope&) = delete;
    PrompterScope& operator=(const PrompterScope&) = delete;

private:
    Prompter* previous_;
};

constexpr int Succeeded = 0;
constexpr int Failed = 1;
constexpr int BadArguments = 2;

int refuse(const QString& reason) {
    PrintLine(stderr, QStringLiteral("fetchupdates: ") + reason);
    PrintLine(stderr, QStringLiteral("Try 'fetchupdates --help'."));
    return BadArguments;
}

bool isInstallation(const QString& drive) {
    const QString prg = InstallDir(drive, QStringLiteral("PRG"));
    const QString data = InstallDir(drive, QStringLiteral("NVNV"));
    return QFileInfo::exists(ResolveInstallPath(prg, QStringLiteral("MENU.EXE"))) &&
           QFileInfo::exists(ResolveInstallPath(data, QStringLiteral("PRIXLIST.DBF")));
}

// The settings of the machine, then the installation and server of the command line.
void setUp(const FetchOptions& o) {
    AppState& app = App();
    AssignStoredSettings(app.Settings, CRegSettings().EnumValues(RegistryKeyPathText, 0));
    ApplySettingDefaults(app.Settings);
    app.Settings.Drive = QDir(o.drive).absolutePath();
    app.Settings.Nation = o.english ? 2000 : 1000;
    if (!o.host.isEmpty())
        app.Settings.IP = o.host;
    if (o.port != 0)
        app.Settings.Port = qint16(quint16(o.port));
    app.PrgPath = InstallDir(app.Settings.Drive, QStringLiteral("PRG"));
    app.DataPath = InstallDir(app.Settings.Drive, QStringLiteral("NVNV"));
    app.GLPath = InstallDir(app.Settings.Drive, QStringLiteral("NVGL"));
    app.InfoPath = InstallDir(app.Settings.Drive, QStringLiteral("NVINFO"));
    app.ContactLine = LoadText(34);
}

// The codes of a table's FICHIER column, trimmed.
QSet<QString> codesOf(Recordset& rs) {
    QSet<QString> codes;
    if (rs.recordCount() == 0)
        return codes;
    for (rs.moveFirst(); !rs.eof(); rs.moveNext())
        codes.insert(rs.value(QStringLiteral("FICHIER")).toString().trimmed().toUpper());
    return codes;
}

QString firstUnknown(const QStringList& asked, const QSet<QString>& known) {
    for (const QString& code : asked) {
        if (!known.contains(code))
            return code;
    }
    return {};
}

// The lists' marks as the window's trees leave them: column 0 for the lists named on the
// command line, column 1 for the lists to be updated.
void markLists(const FetchOptions& o, ListMarkTable& marks) {
    Recordset& rs = rsPrixList;
    marks.redim(rs.recordCount());
    if (rs.recordCount() == 0)
        return;
    int row = 0;
    for (rs.moveFirst(); !rs.eof(); rs.moveNext(), ++row) {
        const QString code = rs.value(QStringLiteral("FICHIER")).toString().trimmed();
        if (o.lists.contains(code.toUpper()))
            marks(0, row) = code;
        const bool inUse = rs.value(QStringLiteral("UTILISER")).toBool();
        const ListBranches branches =
            BranchesOf(inUse, DateOf(rs.value(QStringLiteral("DATESTK"))),
                       DateOf(rs.value(QStringLiteral("DATEEFF"))), SystemToday());
        if (inUse && branches.toUpdate)
            marks(1, row) = QStringLiteral("1");
    }
}

DownloadChoice choiceOf(const FetchOptions& o, ListMarkTable& marks) {
    DownloadChoice choice;
    if (o.box >= 0)
        choice.boxes[o.box] = true;
    choice.expListText = o.containing;
    markLists(o, marks);
    choice.listMarks = &marks;
    choice.listCount = marks.upperBound();
    choice.checkedCatCount = int(o.catalogues.size());
    const QStringList catalogues = o.catalogues;
    choice.catalogueChecked = [catalogues](const QString& code) {
        return catalogues.contains(code.toUpper());
    };
    return choice;
}

int fetch(const FetchOptions& o) {
    setUp(o);
    if (!isInstallation(App().Settings.Drive))
        return refuse(o.drive + QStringLiteral(" is not an installation (PRG/MENU.EXE and "
                                               "NVNV/PRIXLIST.DBF expected)"));
    // Every box of the run, from the data store's to the session's, goes to standard error.
    ToolPrompter prompts(!o.catalogues.isEmpty());
    const PrompterScope scope(prompts);
    if (!OpenData())
        return Failed;
    if (const QString code = firstUnknown(o.lists, codesOf(rsPrixList)); !code.isEmpty())
        return refuse(QStringLiteral("no price list ") + code);
    if (const QString code = firstUnknown(o.catalogues, codesOf(rsCataList)); !code.isEmpty())
        return refuse(QStringLiteral("no catalogue ") + code);
    App().Settings.Instal = qint16(MPDetectInstal().toInt());
    ListMarkTable marks;
    TextView view(choiceOf(o, marks));
    DownloadSession session(view);
    prompts.setSession(&session);
    session.setSilenceTimeout(o.timeoutSeconds * 1000);
    QObject::connect(&session, &DownloadSession::silenceTimedOut, [&] {
        PrintLine(
            stderr,
            QStringLiteral("fetchupdates: the server sent nothing for %1 s").arg(o.timeoutSeconds));
        prompts.failed = true;
    });
    QObject::connect(&session, &DownloadSession::closed, [&session] {
        if (!session.running())
            QCoreApplication::quit();
    });
    session.SetupEnv();
    session.start();
    if (session.running())
        QCoreApplication::exec();
    CloseData();
    const bool versionsAnswered = !session.VersionTable[2][0].isEmpty();
    if (!versionsAnswered && !prompts.failed && !view.failed) // a host not found says nothing
        PrintLine(stderr, QStringLiteral("fetchupdates: no session with the server %1 port %2")
                              .arg(App().Settings.IP)
                              .arg(quint16(App().Settings.Port)));
    return view.failed || prompts.failed || !versionsAnswered ? Failed : Succeeded;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const ParsedOptions parsed = ParseFetchOptions(QCoreApplication::arguments().mid(1));
    if (parsed.help) {
        std::fputs(FetchUsage().toLocal8Bit().constData(), stdout);
        return Succeeded;
    }
    if (parsed.version) {
        const ProgramVersion v = CurrentVersion();
        std::printf("fetchupdates %d.%d.%d\n", v.major, v.minor, v.revision);
        return Succeeded;
    }
    if (!parsed.options)
        return refuse(parsed.error);
    try {
        return fetch(*parsed.options);
    } catch (const DbError& error) {
        PrintLine(stderr, QStringLiteral("fetchupdates: ") + QString::number(error.number()) +
                              u' ' + error.description());
        return Failed;
    }
}
