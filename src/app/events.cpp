#include "app/events.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

void DoEvents() {
    QCoreApplication::processEvents(QEventLoop::AllEvents);
}

void WaitWithEvents(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}
