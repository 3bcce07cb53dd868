// Switching the power of the monitors, through the system: not through the host, and all of them at once.
#pragma once

#include <windows.h>

// Last parameter of SC_MONITORPOWER.
constexpr LPARAM MONITOR_POWER_OFF = 2;
constexpr LPARAM MONITOR_POWER_ON = -1;

// Tells every top-level window to switch the power (MONITOR_POWER_...); one that does so is enough. A window that hangs
// holds the caller up for two seconds at most and goes without. Any thread; messages sent to the caller's own windows
// are served meanwhile. Result: what the system says of the broadcast, 0 when it failed.
LRESULT BroadcastMonitorPower(LPARAM lState);
