#pragma once

#include <QString>

// Numbers stored as text use a point as decimal separator, whatever the machine's locale wrote:
// every "," becomes ".". A null text gives "0".
QString DotDecimal(const QString& text);
