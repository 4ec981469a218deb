#pragma once

// The texts a download session builds: the transfer caption, the report lines, the versions
// the server announces and their comparison value.

#include <QByteArray>
#include <QString>
#include <QTime>
#include <array>
#include <optional>

namespace SessionText {

inline const QString LineBreak = QStringLiteral("\r\n");

// A time in the system's time format, as the report writes it.
QString ReportTime(const QTime& time);

// The transfer caption: bytes, the word "Octets" of the current language, the percentage
// rounded, then on a second line the rate in kilobytes (of 1000 bytes) per second:
// "48120 Octets (%37)" CR LF "12.03 k/s".
QString TransferCaption(qint64 receivedBytes, float progress, double kilobytesPerSecond);

// The rate as the program prints it: two decimals, no leading zero before the point.
QString RateText(double kilobytesPerSecond);

// The three versions of a "VERSI" answer (Partdex, Ledgermaker, this program), or nothing
// when the answer holds fewer than two ";" (the last version may hold further ";").
std::optional<std::array<QString, 3>> SplitVersions(const QByteArray& message);

// The value a version a.b.c is compared by: a x 365 + b x 31 + c (c is everything after the
// second point); nothing when the text is not of that form.
std::optional<qint64> VersionValue(const QString& version);

} // namespace SessionText
