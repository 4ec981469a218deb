#pragma once

#include <QStringList>
#include <cstdio>
#include <optional>

// Every command-line tool answers --help (its usage and help text on standard output) and
// --version (its name and the program's version), does nothing else then and exits 0.
// Returns that exit status when either option is among the arguments, nothing otherwise.
std::optional<int> AnswerStandardOptions(const QStringList& arguments, const char* toolName,
                                         const char* helpText);

// Writes one line of text (UTF-8) to a stream and flushes it, so that progress shows at once.
void PrintLine(FILE* stream, const QString& line);
