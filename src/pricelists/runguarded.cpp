#include "pricelists/runguarded.h"

#include "app/appstate.h"
#include "app/prompts.h"
#include "dbase/dberror.h"
#include "pricelists/programend.h"

QString ErrorBoxText(const ErrorHandler& handler, qint64 number, const QString& description) {
    return handler.label + QString::number(number) + handler.afterNumber + description +
           handler.beforeContact + App().ContactLine;
}

void ShowErrorBox(const ErrorHandler& handler, qint64 number, const QString& description) {
    MsgBox(ErrorBoxText(handler, number, description));
}

StepResult RunGuarded(const ErrorHandler& handler, const std::function<void()>& step) {
    try {
        step();
        return StepResult::Done;
    } catch (const DbError& error) {
        if (handler.endOnClosed && error.number() == DbErrors::Closed) {
            EndProgram();
            return StepResult::Ended;
        }
        ShowErrorBox(handler, error.number(), error.description());
    } catch (const std::exception& error) {
        ShowErrorBox(handler, 0, QString::fromLocal8Bit(error.what()));
    }
    return StepResult::Failed;
}
