#include "pricelists/treerules.h"

QColor ToQColor(OleColor color) {
    return QColor(int(color & 0xFF), int((color >> 8) & 0xFF), int((color >> 16) & 0xFF));
}

QDate SystemToday() {
    return QDate::currentDate();
}

std::optional<QDate> DateOf(const QVariant& value) {
    if (value.isNull() || !value.isValid())
        return std::nullopt;
    const QDate date = value.toDate();
    if (!date.isValid())
        return std::nullopt;
    return date;
}

QString ListKey(int row) {
    return QStringLiteral("L") + QStringLiteral("%1").arg(row, 3, 10, QLatin1Char('0'));
}

QString CatalogueKey(const QString& code) {
    return QStringLiteral("C") + code.rightJustified(3, QLatin1Char(' '));
}

QString ListChildKey(int row, int childCount) {
    return ListKey(row) + QString::number(childCount);
}

namespace {

QString trimmedRight(QString text) {
    while (text.endsWith(QLatin1Char(' ')))
        text.chop(1);
    return text;
}

} // namespace

QString ListNodeText(const QString& desc, const QString& groupCode, const QString& matrix) {
    return trimmedRight(desc).leftJustified(34, QLatin1Char(' ')) +
           trimmedRight(groupCode).leftJustified(5, QLatin1Char(' ')) + trimmedRight(matrix);
}

OleColor ActivatedListColor(std::optional<QDate> dateStk, std::optional<QDate> dateEff,
                            QDate today) {
    OleColor color = ColorUpToDate;
    if (!dateStk || (dateEff && *dateStk != *dateEff))
        color = ColorToUpdate;
    if (dateEff && today.daysTo(*dateEff) > 0)
        color = ColorUpcoming;
    return color;
}

ListBranches BranchesOf(bool activated, std::optional<QDate> dateStk, std::optional<QDate> dateEff,
                        QDate today) {
    ListBranches branches;
    if (!activated)
        return branches;
    branches.activated = true;
    branches.color = ActivatedListColor(dateStk, dateEff, today);
    branches.toUpdate = branches.color == ColorToUpdate;
    branches.upcoming = branches.color == ColorUpcoming;
    return branches;
}

bool CatalogueToUpdate(bool activated, std::optional<QDate> dateStk, std::optional<QDate> dateEff) {
    return activated && dateEff && (!dateStk || *dateStk != *dateEff);
}

QStringList CatnoCodes(const QString& catno) {
    QStringList codes;
    qsizetype start = 0;
    for (;;) {
        const qsizetype end = catno.indexOf(QLatin1Char(';'), start);
        if (end <= start) // no ";" left, or an empty code
            break;
        codes << catno.mid(start, end - start);
        start = end + 1;
    }
    return codes;
}
