#pragma once

#include <QString>

// Installations copied from Windows keep their file names in any case (PRIXLIST.DBF may sit on
// disk as prixlist.dbf, NVNV as nvnv). These helpers find the name the disk really holds.

// The path of name inside dir: the exact name when it exists, else the first entry of dir whose
// name matches without regard to case, else the exact name (which does not exist).
QString ResolveInstallPath(const QString& dir, const QString& name);

// The same for a whole path: each component that is missing under its exact name is looked up
// without regard to case in its (already resolved) parent directory. A trailing separator is
// kept.
QString ResolveInstallPath(const QString& path);
