#pragma once

// Ordinals of the PRIXLIST fields, in the table's order. The configuration pane binds its text
// box i to field i, and the conversion copies the fields in this order.
namespace PrixField {
inline constexpr int Utiliser = 0;   // the list is activated
inline constexpr int Desc = 1;       // description; the display order of the lists
inline constexpr int Fichier = 2;    // the list's file code
inline constexpr int DateEff = 3;    // "Date du système"
inline constexpr int DateStk = 4;    // "Date du répertoire"
inline constexpr int CodeGro = 5;    // group code, at most 4 characters
inline constexpr int PasObliger = 6; // the list needs no group code
inline constexpr int CodeNvc = 7;    // the list's four codes, 7 to 10
inline constexpr int CodeUni = 8;
inline constexpr int CodeAck = 9;
inline constexpr int CodeUap = 10;
inline constexpr int CoutDe = 11;  // cost-price level 1, 2 or 3
inline constexpr int CoutPct = 12; // cost percentage
inline constexpr int Pct1 = 13;    // PCT1 to PCT3, 13 to 15
inline constexpr int Pct2 = 14;
inline constexpr int Pct3 = 15;
inline constexpr int Departem = 16;      // a DEPART.CODEP
inline constexpr int ChDesc1 = 17;       // CH_DESC1, CH_DESC2, CH_COUT, 17 to 19
inline constexpr int Fournis = 20;       // supplier, at most 25 characters
inline constexpr int FirstSubGroup = 21; // SGR1, SGR1PCT ... SGR10, SGR10PCT, 21 to 40
inline constexpr int SubGroups = 10;
inline constexpr int DateMise = 41;
inline constexpr int PlusDispo = 42;
inline constexpr int LFamille = 43;
inline constexpr int FicFamille = 44; // the list's matrix file, at most 8 characters
inline constexpr int CatNo = 45;      // the catalogues the list is associated with
inline constexpr int Count = 46;
} // namespace PrixField
