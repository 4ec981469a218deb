#include "pricelists/catnorules.h"

QString RemoveCatnoEntry(const QString& catno, const QString& code) {
    const QString entry = code + QLatin1Char(';');
    for (qsizetype p = catno.indexOf(entry); p >= 0; p = catno.indexOf(entry, p + 1)) {
        if (p == 0 || catno.at(p - 1) == QLatin1Char(';'))
            return catno.left(p) + catno.mid(p + entry.size());
    }
    return catno;
}

bool CatnoMentions(const QString& catno, const QString& code) {
    return catno.contains(code);
}

QString AppendCatnoEntry(const QString& catno, const QString& code) {
    return catno + code + QLatin1Char(';');
}

QString CatalogueCodeOfKey(const QString& key) {
    return key.mid(1).trimmed();
}
