// When monitors are looked for again after an event, and what of it counts as a change: plain functions of plain
// values.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

// Looks at once and 2, 5 and 10 seconds after an event: a monitor may take its time to wake up, or may be away for a
// moment only. Zeroed: no looks.
struct LOOKSERIES {
    bool isOn;
    DWORD startTick;
    size_t done; // looks that are over or were left out
};

// An event at this tick: the series begins, again if it was on.
void StartLooks(LOOKSERIES *series, DWORD now);

// ms until the next look; 0: it is due; INFINITE: there is none.
DWORD NextLook(const LOOKSERIES &series, DWORD now);

// A look is made now. It stands for all that were due by now, as one that took long may have held up others. Returns
// true for the last one of the series.
bool TakeLook(LOOKSERIES *series, DWORD now);

// Whether the host has to take up the monitors anew, given the identities in use and those seen in any order. New ones
// count at once. When some are only gone, that counts at the last look: a monitor that wakes up soon leaves the plug-in
// undisturbed, and one that does not is not missed meanwhile.
bool IsChange(std::vector<std::string> inUse, std::vector<std::string> seen, bool isLastLook);
