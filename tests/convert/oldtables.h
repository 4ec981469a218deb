#pragma once

// Data directories as the conversion finds them: PRIXLIST in its 45-field form and CATALIST
// with the catalogues' categories, written with the engine's table writer.

#include "app/prompts.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <array>

class Connection;
class ScriptedPrompter;

struct OldList {
    OldList(const char* fichier, const char* codeGro, bool utiliser = true)
        : fichier(QString::fromLatin1(fichier)), codeGro(QString::fromLatin1(codeGro)),
          utiliser(utiliser) {}
    OldList(QString fichier, QString codeGro, bool utiliser, QString desc)
        : fichier(std::move(fichier)), codeGro(std::move(codeGro)), utiliser(utiliser),
          desc(std::move(desc)) {}
    QString fichier;
    QString codeGro;
    bool utiliser = true;
    QString desc; // the file code when empty
};

struct Catalogue {
    explicit Catalogue(QString fichier, bool utiliser = true)
        : fichier(std::move(fichier)), utiliser(utiliser) {}
    QString fichier;
    bool utiliser = true;
    std::array<QString, 9> gr{};  // suggested codes; empty is Null
    std::array<QString, 9> grl{}; // codes in use; empty is Null
    QString desc;                 // the file code when empty
};

// PRIXLIST with its 45 old fields; the fields the conversion only copies hold values of their
// own, so that a lost or shifted field shows.
void WriteOldPrixList(const QString& dataDir, const QList<OldList>& lists);
void WriteCataList(const QString& dataDir, const QList<Catalogue>& catalogues);

// `count` lists over `codes` group codes and `catalogues` catalogues whose categories use them:
// the tables of a dealer with many lists.
QList<OldList> ManyLists(int count, int codes);
QList<Catalogue> ManyCatalogues(int count, int codes);

// Every row of a table as text (fields separated by '|', Null as "<null>"), in file order,
// with the field names first: what a comparison of two tables looks at.
QStringList TableText(Connection& data, const QString& table);

// CATNO of each list, by FICHIER ("A01=C1;C2;").
QStringList CatnoByList(Connection& data);
// GRL1..GRL9 of each catalogue ("C1=AB,,,...").
QStringList UsedCodes(Connection& data);

// The questions of a conversion at start-up: 1080 answered, then 1081 (done) or 1082 (ended).
void ExpectConversion(ScriptedPrompter& prompts, Answer answer);
// The notice of a forced rebuild, 1133.
void ExpectRebuild(ScriptedPrompter& prompts);
