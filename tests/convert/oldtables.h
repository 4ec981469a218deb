#pragma once

// Data directories as the conversion finds them: PRIXLIST in its 45-field form and CATALIST
// with the catalogues' categories, written with the engine's table writer.

#include "testfiles.h"

#include <array>
#include <string>

struct OldList {
    QString fichier;
    QString codeGro;
    bool utiliser = true;
    QString desc = {}; // the file code when empty
};

struct Catalogue {
    QString fichier;
    bool utiliser = true;
    std::array<QString, 9> gr{};  // GR1..GR9, the suggested codes; empty is Null
    std::array<QString, 9> grl{}; // GRL1..GRL9, the codes in use; empty is Null
    QString desc = {};            // the file code when empty
};

// PRIXLIST with its 45 old fields; the fields the conversion only copies hold values of their
// own, so that a lost or shifted field shows.
void WriteOldPrixList(const QString& dataDir, const QList<OldList>& lists);
void WriteCataList(const QString& dataDir, const QList<Catalogue>& catalogues);

// `count` lists over `codes` group codes and `catalogues` catalogues whose categories use them:
// the tables of a dealer with many lists.
QList<OldList> ManyLists(int count, int codes);
QList<Catalogue> ManyCatalogues(int count, int codes);

// CATNO of each list, by FICHIER ("A01|C1;C2;").
inline QStringList CatnoByList(const QString& dataDir) {
    return TableRows(dataDir, QStringLiteral("SELECT FICHIER, CATNO FROM PRIXLIST"));
}
// GRL1..GRL9 of each catalogue ("C1|AB||...").
inline QStringList UsedCodes(const QString& dataDir) {
    return TableRows(dataDir, QStringLiteral("SELECT FICHIER, GRL1, GRL2, GRL3, GRL4, GRL5, GRL6, "
                                             "GRL7, GRL8, GRL9 FROM CATALIST"));
}

// The first line where two tables differ, or an empty text when they are the same.
std::string FirstDifference(const QStringList& a, const QStringList& b);
