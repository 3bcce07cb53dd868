// When monitors are looked for again after an event, and what of it counts as a change: plain functions of plain
// values.
#pragma once

#include <windows.h>

#include <vector>

#include "host/base/monitor_source.h"

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

// Whether the plug-in has to be started anew, given the identities in use, which keep their places while they are away,
// and those seen, in any order: only for a monitor that is not in use. A vague one counts at the last look, and only
// when none is missing: else it stands in for one that sleeps.
bool IsAnyNew(const std::vector<MONITORIDENTITY> &inUse, const std::vector<MONITORIDENTITY> &seen, bool isLastLook);
