#pragma once

#include "app/startup.h"

class MDIfrmMain;

// What start-up calls in the rest of the program: the data store, the installation kind and
// the main window in its frame. `frame` receives the frame window once it is shown.
StartupHooks ProgramStartupHooks(MDIfrmMain*& frame);
