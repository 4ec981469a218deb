#pragma once

#include <QString>
#include <QtGlobal>

// Runs the installation's service program (hidden entry 0, in the data directory) with an
// operation code, the installation kind (Instal) and, for the codes "5" and "9", the flag. The
// program is started directly, without a shell. The call returns when the program has ended;
// meanwhile the event loop runs, so the windows stay responsive (callers disable what must not
// be used during the wait) and an idle wait uses no processor time.
//
// Codes "0" and "2" to "9" start the program; any other code starts nothing, only waits for a
// run still going, and returns the task id of the previous run (0 when none ran).
//
// Returns the task id (the process id) of the run, or -1 when the program cannot be started,
// after a box with the error number, a space and the description.
qint64 RunServiceProgram(const QString& op, qint16 flag = 0);

// Task id of the last run started (0 when none ran).
qint64 LastServiceTaskId();

// True while a run started by RunServiceProgram has not ended (the waits nest: a handler that
// runs during a wait may start another run).
bool ServiceProgramRunning();

// Forgets the last run (a fresh program has run nothing); for tests.
void ResetServiceProgramState();
