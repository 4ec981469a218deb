#pragma once

// The rules of a list's CATNO: the catalogues it is associated with, as catalogue codes each
// followed by ";" (ABC;XYZ;), without a leading separator. Plain functions on the text.

#include <QString>

// CATNO without the entry of one catalogue. An entry matches only where an entry starts: at
// the first character or right after a ";" (B is not found inside AB;). Only the first such
// entry goes; a CATNO without it comes back unchanged.
QString RemoveCatnoEntry(const QString& catno, const QString& code);

// True when the code occurs anywhere in CATNO, as plain text: a CATNO of AB; counts as
// already holding B. Association tests presence this way, and so never adds B after AB.
bool CatnoMentions(const QString& catno, const QString& code);

// CATNO with the catalogue's entry added at the end.
QString AppendCatnoEntry(const QString& catno, const QString& code);

// The catalogue code of a catalogue node's key: the key less its "C", without the blanks that
// right-align a short code (C  A, C AB and CABC give A, AB and ABC).
QString CatalogueCodeOfKey(const QString& key);
