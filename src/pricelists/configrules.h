#pragma once

// What the configuration pane does with a typed character, by the PRIXLIST field it edits.

#include "app/keycodes.h"
#include "data/prixfields.h"

#include <QChar>

// The longest text a field takes from the keyboard, or 0 for the numeric fields that accept
// only digits and the point.
int ConfigTextLimit(int field);

// The answer to one typed character.
struct ConfigKey {
    QChar typed;           // the character to put in the field (upper case); null: nothing
    bool moveNext = false; // Enter: go on to the next field
};

// textLength is the length the field keeps once a selection the character would replace is
// removed. Backspace is always accepted; Enter types nothing and moves on.
ConfigKey ConfigKeyRule(int field, int textLength, QChar typed);
