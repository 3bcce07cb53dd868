// Simulated monitors as the monitors of a run.
#pragma once

#include "host/base/monitor_source.h"
#include "host/simulated/simulated_monitor.h"

// Takes up the monitors that the files and folders describe. The simulation, which is open and empty, stays its
// owner's, who closes it after the source. Returns false with the reason in *error when a description cannot be read.
bool OpenSimulatedSource(SIMULATION *simulation, const std::vector<std::string> &paths, MONITORSOURCE *source,
                         std::string *error);
