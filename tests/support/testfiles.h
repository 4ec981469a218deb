#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

// Files, tables and programs as the tests of every area look at them.

// The whole file, or "<missing>" when it cannot be read.
QByteArray ReadBytes(const QString& path);
// Writes the file whole, making its folder; fails the test when it cannot.
void WriteBytes(const QString& path, const QByteArray& bytes);

struct ProgramRun {
    int status = -1; // -1 when the program crashed or did not end in time
    QByteArray out;
    QByteArray err;
};
ProgramRun RunProgram(const QString& program, const QStringList& arguments, int timeoutMs = 60000);

// The lines a service program logged, without their time stamps ("5 2 12", "! no position").
QStringList LoggedLines(const QString& logPath);

// The rows of a table or a SELECT on a folder's tables, in order: cells joined by '|', Null
// as an empty cell.
QStringList TableRows(const QString& dir, const QString& source);
