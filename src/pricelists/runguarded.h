#pragma once

// The error handler a procedure of the window runs under: a failure shows the program's error
// box, which starts with the procedure's label ("ErrSetupList: " and the rest), and the
// procedure goes on with its next step.

#include <QString>
#include <functional>

struct ErrorHandler {
    QString label;
    // Between the error number and its description: a line break in most boxes, one blank in
    // the main window's load.
    QString afterNumber = QStringLiteral("\n");
    QString beforeContact = QStringLiteral("\n");
    // The recordset is closed (3704): the data can no longer be trusted and the program ends
    // at once instead.
    bool endOnClosed = false;
};

enum class StepResult { Done, Failed, Ended };

// Runs one step under the handler; no exception leaves it.
StepResult RunGuarded(const ErrorHandler& handler, const std::function<void()>& step);

// The text of the box: label, number, description and the contact line.
QString ErrorBoxText(const ErrorHandler& handler, qint64 number, const QString& description);
// Shows that box.
void ShowErrorBox(const ErrorHandler& handler, qint64 number, const QString& description);
