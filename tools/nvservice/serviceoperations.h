#pragma once

#include <QString>
#include <stdexcept>

// The directories of the installation the service program serves. The program lives in the
// data directory (NVNV); the programs (PRG) and newsletters (NVINFO) directories are its
// siblings, found without regard to case.
struct ServiceInstallation {
    QString dataPath; // each ends with '/'
    QString prgPath;
    QString infoPath;

    static ServiceInstallation around(const QString& dataDirectory);
};

// A job that cannot be done: the reason goes to the log and the caller sees a failure.
class ServiceFailure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// What the downloads hand to the service program, one function per operation code. Each one
// unpacks the archive that the download left and records it in the tables; it throws
// ServiceFailure (or ArchiveError, DbError) and changes no table when the archive is missing,
// damaged or does not fit.
//
// Archives (made with arj; other members are unpacked beside the table they belong to):
//   price list, PRG/NVLISTE.ARJ: LISTE.INF with the lines "FICHIER=code" and optionally
//       "DATEEFF=yyyymmdd"; its other members go to NVNV.
//   catalogue, PRG/NVCAT.ARJ: CATALOG.INF, the same lines for the catalogue; PRG/NVCATA.ARJ:
//       the catalogue's files, unpacked into NVNV.
//   index, NVNV/NVINFO.ARJ: NVINDEX.DBF, whose rows not yet in NVINFO/NVINDEX (by NUMERO) are
//       added to it; its other members (the newsletters' files) go to NVINFO.
//   Partdex package, NVNV/PARTVERS.ARJ, and Ledgermaker package, NVNV/LEDGVERS.ARJ: VERSION,
//       whose first line becomes the installed version (first and second row of NVVERS); their
//       other members go to PRG.
namespace ServiceOperations {

// "5": the list at 1-based position `position` of PRIXLIST (the order of "SELECT FICHIER,
// CODEGRO FROM PRIXLIST") becomes up to date: DATESTK = DATEEFF.
void installList(const ServiceInstallation& install, int position);
// "9": the same for the catalogue at that position of CATALIST.
void installCatalogue(const ServiceInstallation& install, int position);
// "8": the index archive.
void installIndex(const ServiceInstallation& install);
// "6" and "7": the Partdex and Ledgermaker packages.
void installPartdex(const ServiceInstallation& install);
void installLedgermaker(const ServiceInstallation& install);

} // namespace ServiceOperations
