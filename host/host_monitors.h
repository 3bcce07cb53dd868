// The monitors of a run, whatever kind they are of: opened, looked for, found again, closed.
#pragma once

#include "host/monitor_care.h"
#include "host/options.h"
#include "host/simulated/simulated_monitor.h"

struct HOSTMONITORS {
    MONITORSOURCE source;  // its backend is that of care
    MONITORCARE *care;     // outlives this when a call into a driver has not come back
    SIMULATION simulation; // without monitors when those of the run are no simulated ones
};

// Takes up the monitors that the command line names; those of Windows wait for FindMonitors. Returns false with the
// reason in *error when a description cannot be read.
bool OpenMonitors(HOSTMONITORS *monitors, const OPTIONS &options, std::string *error);

// The functions of monitor_source.h, for the monitors of this run. A look also has those that have come back set as
// they were; FindMonitors says the trouble.
std::vector<MONITORIDENTITY> LookForMonitors(HOSTMONITORS *monitors);
std::vector<MONITORIDENTITY> MonitorsInUse(const HOSTMONITORS *monitors);
void FindMonitors(HOSTMONITORS *monitors, bool keepsPlaces);

// From now on no monitor is accessed: what is written is held back. Or again. Any thread.
void LeaveMonitorsAlone(HOSTMONITORS *monitors, bool areLeftAlone);

// How many are in use. Any thread.
int CountMonitors(const HOSTMONITORS *monitors);

// What the user should know of the monitors, in Japanese, a line each; empty: nothing. Any thread.
std::wstring MonitorTrouble(const HOSTMONITORS *monitors);

// Before the plug-in's stop: accesses that wait, now or later, end soon. Nothing is held back any more, or a monitor
// would be left with its buttons locked. Any thread.
void EndMonitorAccesses(HOSTMONITORS *monitors);

// The simulation, too. Harmless when OpenMonitors has failed. Returns false when a call into a driver has not come
// back, and only the process's end can end it.
bool CloseMonitors(HOSTMONITORS *monitors);
