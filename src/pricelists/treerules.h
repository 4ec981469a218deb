#pragma once

// The rules that decide where a price list or a catalogue is shown in the trees and how its
// node reads: keys, texts, colours, branches and the catalogue codes of CATNO. Plain functions,
// without widgets, so that they can be checked on their own.

#include <QColor>
#include <QDate>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <functional>
#include <optional>

// A node colour as the trees keep it: a 24-bit value &H00BBGGRR (red in the low byte).
using OleColor = quint32;

inline constexpr OleColor ColorUpToDate = 0x800002; // activated, up to date
inline constexpr OleColor ColorToUpdate = 0x4040A0; // activated, to be updated
inline constexpr OleColor ColorUpcoming = 0xC0;     // activated, effective date still to come
inline constexpr OleColor ColorInactive = 0x808080; // not activated
inline constexpr OleColor ColorBlack = 0;           // catalogue with associated lists

QColor ToQColor(OleColor color);

// "Today" as the trees see it: the system date unless a test or a tool sets another clock.
using TodayFunction = std::function<QDate()>;
QDate SystemToday();

// A date read from a table: an empty (null) field gives no date.
std::optional<QDate> DateOf(const QVariant& value);

// Node keys: "L" + row "000", "C" + catalogue code right-aligned in 3, and the key of a list
// hung under a catalogue: its list key followed by the running count of such children.
QString ListKey(int row);
QString CatalogueKey(const QString& code);
QString ListChildKey(int row, int childCount);

// The text of a list node: desc padded to 34, group code padded to 5, then the matrix file.
// A longer desc or group code is shown whole, without padding.
QString ListNodeText(const QString& desc, const QString& groupCode, const QString& matrix);

// Colour of an activated list: to be updated when DATESTK is empty or differs from DATEEFF
// (an empty DATEEFF against a DATESTK does not count as a difference), upcoming when DATEEFF
// lies after today, whatever the dates comparison gave.
OleColor ActivatedListColor(std::optional<QDate> dateStk, std::optional<QDate> dateEff,
                            QDate today);

// Which list trees a list goes to, by its colour: 0 always for an activated list, then 1 for
// one to be updated or 2 for an upcoming one; 3 alone for a list not activated.
struct ListBranches {
    OleColor color = ColorInactive;
    bool activated = false; // tree 0
    bool toUpdate = false;  // tree 1
    bool upcoming = false;  // tree 2
};
ListBranches BranchesOf(bool activated, std::optional<QDate> dateStk, std::optional<QDate> dateEff,
                        QDate today);

// An activated catalogue is to be updated when its DATESTK differs from its DATEEFF; a missing
// DATEEFF never differs, a missing DATESTK differs from any DATEEFF.
bool CatalogueToUpdate(bool activated, std::optional<QDate> dateStk, std::optional<QDate> dateEff);

// The catalogue codes of a CATNO value, read code by code up to each ";". Reading stops at the
// first empty code, so a value without any ";" gives none and "A;;B;" gives only A.
QStringList CatnoCodes(const QString& catno);
