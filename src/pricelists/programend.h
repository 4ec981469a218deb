#pragma once

#include <functional>

// Ends the process at once, without the window's unload: what the program does when its data
// can no longer be trusted (a closed recordset under the trees) or when the price-list table
// must be converted before anything else runs.
void EndProgram();

// Replaces what EndProgram does (tests record the request instead of ending); an empty
// function restores the real ending. Returns the former one.
using ProgramEnd = std::function<void()>;
ProgramEnd SetProgramEnd(ProgramEnd end);

// A list names, in CATNO, a catalogue the catalogue tree does not hold: the price-list table
// must be converted again. Tells the user (message 1133) and ends the program, which starts
// the conversion at its next run.
void RestartForConversion();
