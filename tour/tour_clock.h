// The clock that the plug-in sees on a tour, which can be set, so that a reservation need not be waited for.
#pragma once

#include <windows.h>

// Has every call of a function in a module's import table come to `replacement`. Only names are found, no ordinals.
// Returns the address that stood there, or null when the module does not import that function.
void *ReplaceImport(HMODULE module, const char *function, void *replacement);

// From now on the plug-in takes the local time from the tour's clock, which goes with the real one until it is set.
// Returns false with nothing changed when the plug-in asks nobody for the local time.
bool InstallTourClock(HMODULE plugin);

// The tour's local time, and sets it; it goes on from there. Any thread.
SYSTEMTIME TourClock();
void SetTourClock(const SYSTEMTIME &time);
