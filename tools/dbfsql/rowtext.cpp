#include "rowtext.h"

#include "dbase/fielddef.h"

#include <QDate>

QString rowText(const QVariant& value, const FieldDef& field) {
    if (value.isNull())
        return {};
    switch (value.typeId()) {
    case QMetaType::Double:
        return QString::number(value.toDouble(), 'f', field.decimals);
    case QMetaType::QDate:
        return value.toDate().toString(Qt::ISODate);
    case QMetaType::Bool:
        return value.toBool() ? QStringLiteral("True") : QStringLiteral("False");
    default: {
        QString text = value.toString();
        for (QChar& c : text)
            if (c == QLatin1Char('\t') || c == QLatin1Char('\n') || c == QLatin1Char('\r'))
                c = QLatin1Char(' ');
        return text;
    }
    }
}
