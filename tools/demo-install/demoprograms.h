#pragma once

#include <QString>

// The directories of an installation and its programs: the dealer's launcher PRG/MENU.EXE,
// and the service program in the data directory.
void writeDemoPrograms(const QString& root, const QString& serviceProgram);
