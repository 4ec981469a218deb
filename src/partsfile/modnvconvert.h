#pragma once

#include <QString>

class Connection;

// The price-list table PRIXLIST in its current form: older data directories hold it with 45
// fields, without CATNO (the catalogues each list is associated with). The conversion adds
// CATNO and fills it from the categories that CATALIST records; the rebuild takes the table back
// to its 45 old fields so that the next start converts it again.
//
// Nothing is lost, whatever stops a run: the new table is built in the work table PRIXTEMP and
// renamed over PRIXLIST in one step, so PRIXLIST is always either the old table or the complete
// new one. The catalogue categories the conversion reads are kept in the work table CATATEMP
// until PRIXLIST is replaced, so that a run started again after an interruption derives the
// same CATNO as a run that was never interrupted.
namespace modNVConvert {

// The steps that change files, in the order a conversion takes them.
enum class FileStep {
    ProgramFileSwapped,  // MERCANTE.NEW became MERCANTE.EXE
    WorkTableDeleted,    // PRIXTEMP.DBF (and its memo file) removed
    CategoriesSaved,     // CATATEMP holds CATALIST's categories as the conversion found them
    CategoriesDiscarded, // CATATEMP removed (a rebuild starts the derivation over)
    WorkTableCreated,    // PRIXTEMP made from PRIXLIST's fields, without rows (or, in a
                         // rebuild, with every row and the 45 old fields)
    CatnoAdded,          // PRIXTEMP has its CATNO field
    RowsCopied,          // every row of PRIXLIST is in PRIXTEMP
    CatalogueUpdated,    // one catalogue's GRLn fields written to CATALIST
    CatnoFilled,         // every list of PRIXTEMP holds its catalogues
    TableReplaced,       // PRIXTEMP.DBF renamed over PRIXLIST.DBF
    CompanionsMoved,     // PRIXTEMP's memo and index files renamed over PRIXLIST's
    CategoriesReleased,  // CATATEMP removed after the replacement
};

QString FileStepName(FileStep step);

// What a conversion tells the outside while it runs. fileStepDone() may throw to stop the
// conversion there (the table stays whole); letEventsRun() keeps a window painted.
class ConversionObserver {
public:
    virtual ~ConversionObserver() = default;
    virtual void progress(int percent) { (void)percent; }
    virtual void letEventsRun() {}
    virtual void fileStepDone(FileStep step) { (void)step; }
};

// PRIXLIST has its CATNO field: 46 fields or more.
inline constexpr int ConvertedFieldCount = 46;

// The number of fields of PRIXLIST in the connection's directory.
int PrixListFieldCount(Connection& data);

// Work tables that an interrupted rebuild, or a conversion interrupted after its replacement of
// PRIXLIST, left behind are removed; PRIXLIST itself is whole and converted by then.
void FinishConversion(Connection& data);

// A new program file left in the data directory replaces MERCANTE.EXE.
void SwapProgramFile(const QString& dataDir, ConversionObserver& observer);

// Rebuilds PRIXLIST with its 45 old fields (every row kept), through PRIXTEMP.
void RebuildOldTable(Connection& data, ConversionObserver& observer);

// Converts PRIXLIST: PRIXTEMP gets PRIXLIST's rows and CATNO, filled from the activated
// catalogues' categories (whose GRLn fields are written on the way), then replaces PRIXLIST.
void ConvertTable(Connection& data, ConversionObserver& observer);

// The status text of the splash window at a percentage of the catalogues handled.
QString ProgressText(int percent);

// The program's procedure, on the shared connection and recordsets: the program-file swap,
// then with forced the rebuild (message 1133, the program ends: false), else the conversion
// when PRIXLIST has fewer than 46 fields (questions 1080, 1082, progress on the splash window,
// 1081). The shared PRIXLIST and CATALIST recordsets are requeried. False: the program must end.
// A failure shows the error window ("errConvert: ", message 1137, number and description).
bool Convert(bool& forced);

} // namespace modNVConvert
