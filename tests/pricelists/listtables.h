#pragma once

// Small PRIXLIST, CATALIST and DEPART tables for the price-list tests and benchmarks, written
// with every field of the dealer's tables in their order.

#include <QDate>
#include <QList>
#include <QString>
#include <QVariant>
#include <array>
#include <optional>

// The date the tests take for today.
inline const QDate FixtureToday(2026, 3, 16);
// A date well before it, for lists and catalogues read before today.
inline const QDate Past(2026, 2, 1);

// One PRIXLIST row; fields left out are Null.
struct ListRow {
    QString desc;
    QString fichier;
    bool utiliser = true;
    std::optional<QDate> dateEff;
    std::optional<QDate> dateStk;
    QString codeGro;
    bool pasObliger = false;
    QVariant coutDe = 1.0;
    QString ficFamille;
    QString catNo;
    std::array<QString, 4> codes = {}; // CODENVC, CODEUNI, CODEACK, CODEUAP
    QString departem;
    QString fournis;
};

struct CatalogueRow {
    QString fichier;
    QString desc;
    bool utiliser = true;
    std::optional<QDate> dateEff;
    std::optional<QDate> dateStk;
    // The product categories 1 to 9: suggested code, description, code in use.
    std::array<QString, 9> gr = {};
    std::array<QString, 9> grd = {};
    std::array<QString, 9> grl = {};
};

void WritePrixList(const QString& directory, const QList<ListRow>& rows);
void WriteCataList(const QString& directory, const QList<CatalogueRow>& rows);
// DEPART with departments 01 to `count`, named "Département n".
void WriteDepart(const QString& directory, int count);
