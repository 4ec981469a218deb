#pragma once

#include <QString>
#include <QVariant>

struct FieldDef;

// A value as dbfsql prints it: Null as nothing, numbers with the field's decimals, dates as
// yyyy-MM-dd, logicals as True or False. Tabs and line breaks inside a text become blanks so
// that each row stays one line.
QString rowText(const QVariant& value, const FieldDef& field);
