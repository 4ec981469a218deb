#include "pricelists/configrules.h"

int ConfigTextLimit(int field) {
    if (field == PrixField::CodeGro)
        return 4;
    if (field == PrixField::Fournis)
        return 25;
    if (field >= PrixField::FirstSubGroup && field <= PrixField::LFamille && field % 2 == 1)
        return 9; // the sub-group codes, and the two odd fields after them
    if (field == PrixField::FicFamille)
        return 8;
    return 0;
}

ConfigKey ConfigKeyRule(int field, int textLength, QChar typed) {
    if (typed.unicode() == KeyEnter)
        return {QChar(), true};
    if (typed.unicode() == KeyBackspace)
        return {typed, false};
    const QChar upper = typed.toUpper();
    const int limit = ConfigTextLimit(field);
    if (limit > 0)
        return {textLength >= limit ? QChar() : upper, false};
    const bool numeric = upper.isDigit() && upper.unicode() < 128;
    return {numeric || upper == QLatin1Char('.') ? upper : QChar(), false};
}
