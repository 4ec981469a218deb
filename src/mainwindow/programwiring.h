#pragma once

#include "app/startup.h"

#include <QStringList>

class MDIfrmMain;

// The program's start as main() runs it: start-up calls the data store, the installation kind
// and the main window in its frame, which writes the settings back to the environment's store
// at shut-down. `frame` receives the frame window once it is shown.
StartupOutcome StartProgram(const QStringList& arguments, const StartupEnvironment& environment,
                            MDIfrmMain*& frame);
