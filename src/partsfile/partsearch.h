#pragma once

#include "partsfile/modntx.h"

#include <QString>

// The part search as the dealer asks for it: a search key and a number of lines typed as text.
// The main window's pane and the command-line search both go through here, so that they give
// the same lines for the same request.
namespace PartSearch {

// The most lines a search lists; a larger count is brought down to it.
inline constexpr qint32 MaxLines = 2000;

// Whether the line count field takes this character (Enter and backspace aside).
bool IsLineCountCharacter(QChar c);

// The numeric value of a typed line count: its leading number (blanks, then digits with an
// optional decimal point), 0 when there is none.
double LeadingNumber(const QString& typed);

// Whether a typed line count asks for more than MaxLines (the pane then shows MaxLines).
bool AsksTooMany(const QString& typed);

// The number of lines a typed count gives: at most MaxLines, halves rounded to the even
// neighbour (12.5 gives 12, 13.5 gives 14).
qint32 LineCount(const QString& typed);

// Searches prgDir's parts file for the parts whose number starts with key, up to the lines the
// typed count gives. Shows nothing: a failure is in the outcome.
modNTX::StockSearchOutcome Run(const QString& prgDir, const QString& key,
                               const QString& typedLineCount, const modNTX::StockLineSink& sink);

} // namespace PartSearch
