#pragma once

#include <QString>

// Installations copied from Windows keep their file names in any case (PRIXLIST.DBF may sit on
// disk as prixlist.dbf, NVNV as nvnv). These helpers find the name the disk really holds.

// The path of name inside dir: the exact path when it exists; otherwise each component missing
// under its exact name is replaced by the first entry of its (resolved) parent whose name
// matches without regard to case. Components that match nothing stay as asked, so the result of
// a missing file still points into the directory as it is on disk.
QString ResolveInstallPath(const QString& dir, const QString& name);

// The same for a whole path. A trailing separator is kept.
QString ResolveInstallPath(const QString& path);
