#include "app/utilities.h"

QString DotDecimal(const QString& text) {
    if (text.isNull())
        return QStringLiteral("0");
    QString dotted = text;
    return dotted.replace(u',', u'.');
}
