// Which index each monitor gets when those that are there are taken up: a plain function of plain values.
#pragma once

#include "host/windows_monitors/found_monitor.h"

struct MONITORPLACE {
    bool isThere;
    size_t index; // in the list of those that are there, else of the former ones
};

// The places in the order of the plug-in's indexes, FOUND_MONITOR_LIMIT at most. A former monitor keeps its place
// before the others, whether it is there or away. It loses it when it was vague, when another stands at its device now,
// or when the others need the place.
std::vector<MONITORPLACE> ArrangeMonitors(const std::vector<FOUNDMONITOR> &former,
                                          const std::vector<FOUNDMONITOR> &present);
