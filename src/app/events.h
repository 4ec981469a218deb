#pragma once

// The program's waits keep the window alive by processing pending events; none of them spins.

// Processes the events already pending, then returns.
void DoEvents();

// Waits the given time inside the event loop (the thread sleeps when nothing happens).
void WaitWithEvents(int milliseconds);
