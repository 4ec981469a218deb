#include "app/startup.h"

#include "app/appstate.h"
#include "app/events.h"
#include "app/fileop.h"
#include "app/frmsplash.h"
#include "app/hiddenstrings.h"
#include "app/installpath.h"
#include "app/messages.h"
#include "app/prompts.h"
#include "app/serviceprogram.h"
#include "app/settings.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QTime>
#include <cstdlib>
#include <memory>

namespace {

const QString Separator = QString(QDir::separator());

QString inProgramDir(const StartupEnvironment& env, const QString& file) {
    return QDir(env.programDir).filePath(file);
}

// A launcher replacement left by an update: MAIN.NEW becomes MAIN.EXE and is started.
bool finishLauncherSwap(const StartupEnvironment& env) {
    const QString pending = inProgramDir(env, QStringLiteral("MAIN.NEW"));
    const QString launcher = inProgramDir(env, QStringLiteral("MAIN.EXE"));
    if (!FileOp(QString(), pending)) {
        if (FileOp(QString(), launcher))
            FileOp(QStringLiteral("DELETE"), launcher);
        return false;
    }
    FileOp(QStringLiteral("MOVE"), pending, launcher);
    DoEvents();
    WaitWithEvents(1000);
    if (env.startProgram)
        env.startProgram(launcher, env.programDir);
    return true;
}

void readSettings(const StartupEnvironment& env) {
    AppState& app = App();
    app.RegistryKeyPath = RegistryKeyPathText;
    AssignStoredSettings(app.Settings, env.settings.EnumValues(app.RegistryKeyPath, 0));
    ApplySettingDefaults(app.Settings);
}

// Asks for the drive until the dealer's launcher is found, four times at the most.
bool findInstallation() {
    AppState& app = App();
    app.PrgPath = InstallDir(app.Settings.Drive, QStringLiteral("PRG"));
    for (int prompts = 0; !FileOp(QString(), app.PrgPath + QStringLiteral("MENU.EXE")); ++prompts) {
        if (prompts == 4) {
            MsgBox(LoadText(76));
            return false;
        }
        app.Settings.Drive = InputBox(LoadText(75), QString(), DefaultDrive());
        app.PrgPath = InstallDir(app.Settings.Drive, QStringLiteral("PRG"));
    }
    app.DataPath = InstallDir(app.Settings.Drive, QStringLiteral("NVNV"));
    app.GLPath = InstallDir(app.Settings.Drive, QStringLiteral("NVGL"));
    app.InfoPath = InstallDir(app.Settings.Drive, QStringLiteral("NVINFO"));
    return true;
}

bool convertPriceLists(const QString& commandLine, const StartupHooks& hooks) {
    if (!hooks.convert)
        return true;
    if (commandLine == u"Convert")
        return hooks.convert(true);
    return App().UpdateMode || hooks.convert(false);
}

// The service program is copied into the data directory when missing there, then run once.
bool runServiceProgramAtStart(const StartupEnvironment& env) {
    const QString name = HiddenString(0);
    const QString installed = App().DataPath + name;
    if (!FileOp(QString(), installed))
        FileOp(QStringLiteral("COPY"), inProgramDir(env, name), installed);
    if (!FileOp(QString(), installed)) {
        MsgBox(LoadText(77));
        return false;
    }
    if (RunServiceProgram(QStringLiteral("0"), 0) == -1) {
        MsgBox(LoadText(78));
        return false;
    }
    return true;
}

bool openDataStore(const StartupHooks& hooks) {
    AppState& app = App();
    if (!app.UpdateMode && hooks.openData && !hooks.openData())
        return false;
    app.Settings.Instal = app.UpdateMode || !hooks.detectInstal
                              ? 1
                              : static_cast<qint16>(hooks.detectInstal().toInt());
    return true;
}

} // namespace

StartupEnvironment SystemEnvironment() {
    return {QCoreApplication::applicationDirPath(), CRegSettings(),
            [](const QString& program, const QString& dir) {
                return QProcess::startDetached(program, {}, dir);
            }};
}

QString InstallDir(const QString& drive, const QString& name) {
    QString base = drive;
    while (base.size() > 1 && (base.endsWith(u'/') || base.endsWith(u'\\')))
        base.chop(1);
    const QString dir = base + Separator + name;
    if (!QDir::isRelativePath(dir))
        return dir + Separator;
    // A drive typed as a relative path names the same place once the current directory has
    // moved to the launcher's.
    return QDir::toNativeSeparators(QDir::cleanPath(QDir::current().absoluteFilePath(dir))) +
           Separator;
}

StartupOutcome Main(const QString& commandLine, const StartupHooks& hooks,
                    const StartupEnvironment& env) {
    AppState& app = App();
    app.UpdateMode = commandLine.toUpper() == u"UPDATE";
    if (finishLauncherSwap(env))
        return StartupOutcome::Ended;

    readSettings(env);
    LoadQtTranslations();
    auto splash = std::make_unique<frmSplash>();
    splash->show();
    splash->repaint();
    app.ContactLine = LoadText(34);

    if (!findInstallation() || !openDataStore(hooks) || !convertPriceLists(commandLine, hooks))
        return StartupOutcome::Ended;

    std::srand(static_cast<unsigned>(QTime::currentTime().msecsSinceStartOfDay()));
    // The directory as the disk names it: an installation copied from Windows may hold "prg".
    QDir::setCurrent(ResolveInstallPath(app.PrgPath));
    if (!app.UpdateMode && !runServiceProgramAtStart(env))
        return StartupOutcome::Ended;

    WaitWithEvents(500);
    if (hooks.showMainWindow)
        hooks.showMainWindow();
    return StartupOutcome::MainWindowShown;
}
