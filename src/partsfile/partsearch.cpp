#include "partsfile/partsearch.h"

#include <algorithm>
#include <cmath>

namespace PartSearch {

bool IsLineCountCharacter(QChar c) {
    return (c >= u'0' && c <= u'9') || c == u'.';
}

double LeadingNumber(const QString& typed) {
    qsizetype at = 0;
    while (at < typed.size() && (typed[at] == u' ' || typed[at] == u'\t'))
        ++at;
    QString number;
    bool point = false;
    for (; at < typed.size(); ++at) {
        const QChar c = typed[at];
        if (c == u'.' && !point)
            point = true;
        else if (c < u'0' || c > u'9')
            break;
        number += c;
    }
    bool ok = false;
    const double value = number.toDouble(&ok);
    return ok ? value : 0.0;
}

bool AsksTooMany(const QString& typed) {
    return LeadingNumber(typed) > MaxLines;
}

qint32 LineCount(const QString& typed) {
    // The default rounding mode takes halves to the even neighbour.
    return qint32(std::nearbyint(std::min<double>(LeadingNumber(typed), MaxLines)));
}

modNTX::StockSearchOutcome Run(const QString& prgDir, const QString& key,
                               const QString& typedLineCount, const modNTX::StockLineSink& sink) {
    qint32 lines = LineCount(typedLineCount);
    return modNTX::SearchStockIn(prgDir, key, lines, sink);
}

} // namespace PartSearch
