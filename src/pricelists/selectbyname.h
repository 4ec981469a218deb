#pragma once

// Selection of lists by name (Sélectionner): the dealer types a word and every list of the
// tree shown whose description contains it is checked; "*" checks them all, nothing clears
// them. It changes ListMarks exactly as ticking the boxes by hand does. Lists that are not
// in the tree shown keep their marks.

struct ListCommandContext;

// Asks for the word; the answer is upper-cased, and a cancelled box answers nothing.
void SelectByName(const ListCommandContext& context);
