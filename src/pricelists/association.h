#pragma once

// The association command of the command strip (Associer / Dissocier): with a list selected
// under a catalogue it dissociates that list's group code from the catalogue; otherwise it
// opens the association dialog for the list shown and the catalogue selected. Then the trees
// are rebuilt with the same nodes selected.

struct ListCommandContext;

void AssociationCommand(const ListCommandContext& context);
// Takes the group code of the list selected under a catalogue out of that catalogue: the
// catalogue's categories no longer use it and the activated lists of the code (the list alone
// when it has none) no longer name the catalogue. Offers to withdraw the catalogue when it
// loses its last list.
void Dissociate(const ListCommandContext& context);
