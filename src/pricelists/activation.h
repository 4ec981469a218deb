#pragma once

// Activation and deactivation of price lists, run from the command strip.
//
// MPActivate activates every checked list that is not activated yet, asking for each one
// through the question dialog: its matrix, its supplier, its group code and department. The
// answers are kept in a batch that the dealer saves or drops at the end (message 1061).
//
// MPDesactivate deactivates every checked list when a list tree had the focus last (undoing
// its catalogue associations when it was the last activated list of its group code), or the
// selected catalogue when the catalogue tree had it, once no list is associated with it.

struct ListCommandContext;

void MPActivate(const ListCommandContext& context);
void MPDesactivate(const ListCommandContext& context);
