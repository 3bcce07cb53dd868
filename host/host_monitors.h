// The monitors of a run, whatever kind they are of: opened, looked for, found again, closed.
#pragma once

#include "host/host_app.h"

// Takes up the monitors that the command line names; those of Windows wait for FindMonitors. Returns false with the
// reason in *error when a description cannot be read.
bool OpenMonitors(HOSTAPP *app, std::string *error);

// The functions of monitor_source.h, for the monitors of this run. FindMonitors also says the trouble.
std::vector<std::string> LookForMonitors(HOSTAPP *app);
std::vector<std::string> MonitorsInUse(HOSTAPP *app);
void FindMonitors(HOSTAPP *app);

// What the user should know of the monitors, in Japanese, a line each; empty: nothing. Any thread.
std::wstring MonitorTrouble(HOSTAPP *app);

// Before the plug-in's stop: accesses that wait, now or later, end soon. Any thread.
void EndMonitorAccesses(HOSTAPP *app);

// The simulation, too. Harmless when no monitors are open.
void CloseMonitors(HOSTAPP *app);
