#include "comms/sessiontext.h"

#include "app/messages.h"
#include "partsfile/cp1252.h"

#include <QLocale>
#include <cmath>

namespace SessionText {

QString ReportTime(const QTime& time) {
    // The long format without a time zone: the clock as the dealer reads it.
    QString format = QLocale::system().timeFormat(QLocale::LongFormat);
    format.remove(QLatin1Char('t'));
    return time.toString(format.trimmed());
}

QString RateText(double kilobytesPerSecond) {
    QString text = QString::number(kilobytesPerSecond, 'f', 2);
    if (text.startsWith(QStringLiteral("0.")))
        text.remove(0, 1);
    return text;
}

QString TransferCaption(qint64 receivedBytes, float progress, double kilobytesPerSecond) {
    const auto percent = qint64(std::nearbyint(double(progress)));
    return QString::number(receivedBytes) + u' ' + LoadText(88) + QStringLiteral(" (%") +
           QString::number(percent) + u')' + LineBreak + RateText(kilobytesPerSecond) +
           QStringLiteral(" k/s");
}

std::optional<std::array<QString, 3>> SplitVersions(const QByteArray& message) {
    const QString text = DecodeCp1252(message.constData(), message.size());
    const qsizetype first = text.indexOf(u';', 5);
    if (first < 0)
        return std::nullopt;
    const qsizetype second = text.indexOf(u';', first + 1);
    if (second < 0)
        return std::nullopt;
    return std::array<QString, 3>{text.mid(5, first - 5), text.mid(first + 1, second - first - 1),
                                  text.mid(second + 1)};
}

std::optional<qint64> VersionValue(const QString& version) {
    const qsizetype firstPoint = version.indexOf(u'.');
    const qsizetype secondPoint = firstPoint < 0 ? -1 : version.indexOf(u'.', firstPoint + 1);
    if (secondPoint < 0)
        return std::nullopt;
    const QString parts[] = {version.left(firstPoint),
                             version.mid(firstPoint + 1, secondPoint - firstPoint - 1),
                             version.mid(secondPoint + 1)};
    qint64 numbers[3] = {};
    for (int i = 0; i < 3; ++i) {
        bool ok = false;
        numbers[i] = parts[i].trimmed().toLongLong(&ok);
        if (!ok)
            return std::nullopt;
    }
    return numbers[0] * 365 + numbers[1] * 31 + numbers[2];
}

} // namespace SessionText
