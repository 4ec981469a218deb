#pragma once

#include "data/fieldbinding.h"
#include "dbase/connection.h"
#include "dbase/recordset.h"

#include <QString>

// The data store: one connection on the data directory and one on the launcher directory, and
// the five recordsets shared by the whole program, open from start-up to shut-down.
extern Connection connData; // DataPath: PRIXLIST, CATALIST, PARAPROG, PRIXTEMP
extern Connection connPrg;  // PrgPath: DEPART, MEEFFACE, MEREMPLA, NVVERS, NVAPPEL

extern Recordset rsPrixList;  // "SELECT * FROM PRIXLIST ORDER BY [DESC]"
extern Recordset rsPrixCodes; // "SELECT FICHIER, CODEGRO FROM PRIXLIST"
extern Recordset rsCataList;  // "SELECT * FROM CATALIST ORDER BY [DESC]"
extern Recordset rsCataFiles; // "SELECT FICHIER FROM CATALIST"
extern Recordset rsDepart;    // "SELECT TOP 13 * FROM DEPART"

// The connection string for a directory (ending with its separator), as the program passes it.
QString ConnectionString(const QString& directory);

// Opens both connections and the five recordsets in their order (closing first whatever an
// earlier call left open). On failure shows message 1079 when a table is held by another
// workstation (0x80004005), else "errOpenData: " and the description (which names a missing
// directory), and returns false: start-up then ends the program.
bool OpenData();

// The installation kind, "2" when the second row of PARAPROG names the English product,
// else "1" ("1" in update mode without reading anything). A failure shows "errMPDetectInstal: "
// with the number, the description and the contact line, and the answer is "1".
QString MPDetectInstal();

// Closes the recordsets and connections in their order (those still open); errors go to the
// caller.
void CloseData();

// The configuration pane's controls, registered by the pane: text box i edits PRIXLIST field
// i, the department list field 16, the three check boxes fields 17 to 19.
FieldBinding& ConfigBinding();

// True ties the registered controls to the current row of rsPrixList; false unties them, so
// that moving in rsPrixList no longer shows or writes through them.
void BindConfig(bool bind);

// Field ordinals of PRIXLIST the pane binds besides its text boxes.
constexpr int DepartementField = 16;
constexpr int FirstOptionField = 17; // CH_DESC1, CH_DESC2, CH_COUT follow
