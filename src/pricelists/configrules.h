#pragma once

// What the configuration pane does with a typed character, by the PRIXLIST field it edits.

#include <QChar>

inline constexpr int KeyBackspace = 8;
inline constexpr int KeyEnter = 13;

// PRIXLIST field ordinals used by the pane and the trees.
namespace PrixField {
inline constexpr int Utiliser = 0;
inline constexpr int Desc = 1;
inline constexpr int Fichier = 2;
inline constexpr int DateEff = 3;
inline constexpr int DateStk = 4;
inline constexpr int CodeGro = 5;
inline constexpr int PasObliger = 6;
inline constexpr int CoutDe = 11;
inline constexpr int CoutPct = 12;
inline constexpr int Pct1 = 13;
inline constexpr int Departem = 16;
inline constexpr int ChDesc1 = 17;
inline constexpr int Fournis = 20;
inline constexpr int FirstSubGroup = 21;
inline constexpr int FicFamille = 44;
inline constexpr int CatNo = 45;
} // namespace PrixField

// The longest text a field takes from the keyboard, or 0 for the numeric fields that accept
// only digits and the point.
int ConfigTextLimit(int field);

// The answer to one typed character.
struct ConfigKey {
    QChar typed;           // the character to put in the field (upper case); null: nothing
    bool moveNext = false; // Enter: go on to the next field
};

// textLength is the length the field keeps once a selection the character would replace is
// removed. Backspace is always accepted; Enter types nothing and moves on.
ConfigKey ConfigKeyRule(int field, int textLength, QChar typed);
