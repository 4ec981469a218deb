#pragma once

#include "app/cregsettings.h"

#include <QString>
#include <functional>

class QWidget;

// What start-up needs from the parts of the program built above the application core. An
// empty hook is a step that this build does not have.
struct StartupHooks {
    std::function<bool()> openData;           // opens the connections and shared tables
    std::function<QString()> detectInstal;    // "1" or "2": the installation kind
    std::function<bool(bool forced)> convert; // brings PRIXLIST to its current form
    std::function<void()> showMainWindow;     // shows the frame with the main window
};

// Where start-up runs: the program's own directory (the launcher swap, the service program
// to copy), the settings store, and how another program is started.
struct StartupEnvironment {
    QString programDir;
    CRegSettings settings;
    std::function<bool(const QString& program, const QString& workingDir)> startProgram;
};

// The environment of a real run: the program's directory, the machine's settings store, and
// programs started on their own.
StartupEnvironment SystemEnvironment();

enum class StartupOutcome {
    MainWindowShown, // the program lives on in its windows' events
    Ended,           // nothing (more) to show: the process ends
};

// The directory `name` of the installation on `drive`, absolute and ending with the separator.
QString InstallDir(const QString& drive, const QString& name);

// The program's entry routine: from the command line to the main window.
StartupOutcome Main(const QString& commandLine, const StartupHooks& hooks,
                    const StartupEnvironment& environment);
