#pragma once

#include <functional>

// Ends the process at once, without the window's unload: what the program does when its data
// can no longer be trusted (a closed recordset under the trees).
void EndProgram();

// Replaces what EndProgram does (tests record the request instead of ending); an empty
// function restores the real ending. Returns the former one.
using ProgramEnd = std::function<void()>;
ProgramEnd SetProgramEnd(ProgramEnd end);

// A list names, in CATNO, a catalogue the catalogue tree does not hold: the price-list table
// is converted again from the start (the conversion's restart mode), which ends the program;
// the next start converts it afresh.
void RestartForConversion();
// What RestartForConversion runs: the conversion in its restart mode once the program has it.
// Until then, and when set back to an empty function, the user is told (message 1133) and the
// program ends. Returns the former one.
using ConversionRestart = std::function<void()>;
ConversionRestart SetConversionRestart(ConversionRestart restart);
