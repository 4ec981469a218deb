#include "textview.h"

#include "app/messages.h"
#include "comms/session.h"

#include <algorithm>
#include <cmath>
#include <unistd.h>

namespace {

constexpr int BarWidth = 30;

} // namespace

void PrintLine(FILE* stream, const QString& text) {
    const QByteArray bytes = text.toLocal8Bit();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
    std::fputc('\n', stream);
    std::fflush(stream);
}

TextView::TextView(DownloadChoice choice)
    : choice_(std::move(choice)), terminal_(isatty(fileno(stderr)) != 0) {}

void TextView::showTransferTitle(const QString& text) {
    title_ = text;
}

void TextView::showProgress(float percent) {
    if (!terminal_ || title_.isEmpty())
        return;
    const int filled =
        std::clamp(int(std::lround(double(percent) * BarWidth / 100.0)), 0, BarWidth);
    const QString bar = u'\r' + title_.left(30).leftJustified(30) + QStringLiteral(" [") +
                        QString(filled, u'#') + QString(BarWidth - filled, u' ') +
                        QStringLiteral("] ") + QString::number(std::clamp(int(percent), 0, 100)) +
                        u'%';
    const QByteArray bytes = bar.toLocal8Bit();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stderr);
    std::fflush(stderr);
    barShown_ = true;
}

void TextView::clearBar() {
    if (!barShown_)
        return;
    std::fputs("\r\033[K", stderr);
    barShown_ = false;
}

void TextView::itemDone(const QString& item, bool succeeded) {
    clearBar();
    PrintLine(stderr, item + u' ' + LoadText(succeeded ? 52 : 51));
    if (!succeeded)
        failed = true;
}

void TextView::showReport(const QString& report) {
    clearBar();
    const QByteArray bytes = report.toUtf8();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout);
    std::fflush(stdout);
    reportShown = true;
}

Answer ToolPrompter::messageBox(const QString& text, Buttons buttons, Icon, const QString&) {
    if (text.startsWith(LoadText(130)))
        return catalogues_ ? Answer::Yes : Answer::No;
    if (session_ && text.startsWith(LoadText(65))) {
        PrintLine(stderr, QStringLiteral("offered version ") + session_->VersionTable[2][0]);
        return Answer::No;
    }
    PrintLine(stderr, text);
    failed = true;
    return buttons == Buttons::YesNo || buttons == Buttons::YesNoCancel ? Answer::No : Answer::Ok;
}

QString ToolPrompter::inputBox(const QString& prompt, const QString&, const QString&) {
    PrintLine(stderr, prompt);
    failed = true;
    return {};
}
