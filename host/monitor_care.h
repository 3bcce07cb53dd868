// Stands between the router and the monitors: keeps accesses away from monitors that are to be left alone, and sets
// again what one has forgotten while it slept.
#pragma once

#include <map>
#include <mutex>
#include <string>

#include "host/base/monitor_source.h"
#include "host/kept_values.h"

constexpr DWORD LOCK_PATIENCE = 400; // ms: less than an access may take at the stop

struct CAREDMONITOR {
    KEPTVALUES kept;
    bool isAway; // a look has not found it
    int doubts;  // so many more times it is looked at what it has forgotten; 0: nothing, as far as is known
};

struct MONITORCARE {
    MONITORBACKEND inner; // the monitors' own table

    std::mutex mutex;                             // guards all that follows
    bool rests;                                   // no monitor is accessed
    bool isEnding;                                // the plug-in is being stopped
    unsigned finds;                               // how often the places were set
    std::vector<std::string> places;              // the identity at each index
    std::map<std::string, CAREDMONITOR> monitors; // by identity, also those that are not in use any more
};

// The table for the router, in the place of `inner`. While the monitors rest they are not asked: what is known of them
// counts, and what is to be written is held back.
MONITORBACKEND StartMonitorCare(MONITORCARE *care, const MONITORBACKEND &inner);

// Other monitors are in use now. While the backend is not in use.
void SetCaredMonitors(MONITORCARE *care, const std::vector<MONITORIDENTITY> &inUse);

// From now on monitors are left alone, or no longer.
void RestMonitors(MONITORCARE *care, bool rests);

// Before the plug-in's stop, until SetCaredMonitors: nothing is held back, and a write to the button locks that fails
// or does not stay is made again for LOCK_PATIENCE ms, for nobody else will release them.
void EndMonitorCare(MONITORCARE *care);

// The monitors may have forgotten what was set.
void DoubtMonitors(MONITORCARE *care);

// After a look: has the monitors that have come back, or of which it is in doubt, set to what they had, each once; only
// what reads otherwise is written. On their own threads if they have any, else before it returns. The thread of looks.
void SettleMonitors(MONITORCARE *care, const std::vector<MONITORIDENTITY> &seen);
