#pragma once

// Selection of lists by name (Sélectionner): the dealer types a word and every list of the
// tree shown whose description contains it is checked; "*" checks them all, nothing clears
// them. It changes ListMarks exactly as ticking the boxes by hand does. Lists that are not
// in the tree shown keep their marks.

#include <QString>

struct ListCommandContext;

// The answer of the input box, upper-cased; a cancelled box answers nothing.
void SelectByName(const ListCommandContext& context);

// What a word does to one list: Check, Uncheck, or Keep its mark. The word is upper case;
// the description must contain it exactly (WIRE finds WIRE HARNESS, not Wire harness).
enum class NameSelection { Check, Uncheck, Keep };
NameSelection SelectionFor(const QString& answer, const QString& desc);
