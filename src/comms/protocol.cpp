#include "comms/protocol.h"

#include <cmath>
#include <limits>

namespace Protocol {

qint64 AnnouncedSize(const QByteArray& message) {
    qsizetype i = TokenLength;
    while (i < message.size() && (message[i] == ' ' || message[i] == '\t'))
        ++i;
    const qsizetype start = i;
    if (i < message.size() && (message[i] == '+' || message[i] == '-'))
        ++i;
    while (i < message.size() && message[i] >= '0' && message[i] <= '9')
        ++i;
    if (i < message.size() && message[i] == '.') {
        ++i;
        while (i < message.size() && message[i] >= '0' && message[i] <= '9')
            ++i;
    }
    bool ok = false;
    const double value = message.mid(start, i - start).toDouble(&ok);
    if (!ok)
        return 0;
    // Beyond any whole number the caller can hold: the largest, with its sign.
    constexpr double Limit = 9.0e18;
    if (value >= Limit || value <= -Limit)
        return value > 0 ? std::numeric_limits<qint64>::max() : std::numeric_limits<qint64>::min();
    // Halves go to the even neighbour, as the conversion to a whole number always did.
    return qint64(std::nearbyint(value));
}

} // namespace Protocol
