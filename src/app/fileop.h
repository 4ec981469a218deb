#pragma once

#include <QString>

// The one routine through which the program moves, copies, deletes and tests files outside the
// tables. op is "MOVE" (a to b; refused when b exists), "COPY" (a to b, overwriting b),
// "CFOLDER" (create directory a), "DELETE" (delete file a); any other word tests whether a file
// or a directory named a exists.
//
// The four operations answer false whatever happened: callers check the effect with a second,
// existence-testing call. Only the existence test answers true. Nothing is ever thrown or shown.
// Names are matched without regard to case when the exact name is missing (see installpath.h).
bool FileOp(const QString& op, const QString& a, const QString& b = {});
