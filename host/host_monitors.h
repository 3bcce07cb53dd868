// The monitors of a run, be they simulated or those that Windows has: opened, looked for, found again, closed.
#pragma once

#include "host/host_app.h"

// Takes up the monitors that the command line names; those of Windows wait for FindMonitors. Returns false with the
// reason in *error when a description cannot be read.
bool OpenMonitors(HOSTAPP *app, std::string *error);

// The table through which the router reaches them.
MONITORBACKEND MonitorBackend(HOSTAPP *app);

// The identities of the monitors that are there now. Does not touch those in use; while nothing can be said, these are
// they. Takes up to some seconds. Any thread.
std::vector<std::string> LookForMonitors(HOSTAPP *app);

// The identities of the monitors in use. Any thread.
std::vector<std::string> MonitorsInUse(HOSTAPP *app);

// Takes up those that are there now in the place of those in use, and ends EndMonitorAccesses. A simulated monitor
// whose description is as before stays as it is. Takes up to some seconds. Any thread, while the router does not run.
void FindMonitors(HOSTAPP *app);

// What the user should know of the monitors, in Japanese, a line each; empty: nothing. Any thread.
std::wstring MonitorTrouble(HOSTAPP *app);

// Before the plug-in's stop: accesses that wait, now or later, end soon. Any thread.
void EndMonitorAccesses(HOSTAPP *app);

void CloseMonitors(HOSTAPP *app);
