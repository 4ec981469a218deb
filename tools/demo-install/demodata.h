#pragma once

#include <QStringList>

// Group codes of the demo installation's price lists. The demo parts file numbers its parts
// with these prefixes, so that a search from a selected list finds parts of that list.
inline const QStringList DemoGroupCodes = {
    QStringLiteral("ACD"),  QStringLiteral("BOS"), QStringLiteral("CHA"), QStringLiteral("DAY"),
    QStringLiteral("DOR"),  QStringLiteral("FEL"), QStringLiteral("GAT"), QStringLiteral("MON"),
    QStringLiteral("MOOG"), QStringLiteral("NGK"), QStringLiteral("SKF"), QStringLiteral("TIM"),
    QStringLiteral("WIX"),  QStringLiteral("WAG"), QStringLiteral("RAY"), QStringLiteral("DEN"),
    QStringLiteral("CEN"),  QStringLiteral("AIM"), QStringLiteral("STD"), QStringLiteral("FRA"),
};

// The companion programs' versions installed in the demo (NVVERS), and the newer ones its update
// server offers and installs.
inline const QString DemoPartdexInstalled = QStringLiteral("5.2.1");
inline const QString DemoLedgermakerInstalled = QStringLiteral("3.8.0");
inline const QString DemoPartdexOffered = QStringLiteral("5.3.0");
inline const QString DemoLedgermakerOffered = QStringLiteral("3.9.0");
