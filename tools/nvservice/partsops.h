#pragma once

#include <QString>

// The parts-file operations of the service program: "2" renumbers the parts listed in the work
// table MEREMPLA (ORI becomes NEW), "3" marks deleted the parts listed in MEEFFACE. Both then
// rebuild the index STOCK.NTX, which no longer lists the deleted parts, so that a part search
// right after the operation shows the change. The new STOCK.DBF and STOCK.NTX are written beside
// the old ones and renamed into place: a search that has both files open goes on reading the
// old pair.

// True when the operation code is one of these.
bool IsPartsOperation(const QString& operationCode);

// Applies the operation to the parts file of prgDir; a missing work table changes nothing.
// Returns false, with the reason on standard error, when the files could not be written.
bool RunPartsOperation(const QString& operationCode, const QString& prgDir);
