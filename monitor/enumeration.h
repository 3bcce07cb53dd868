// The monitors at start-up: asked of the host, one after the other.
#pragma once

// Enumerates the monitors through the host and reads the settings of monitor 0. Kernel thread. Result: 1 when
// g_nMonitor is not 0, also when it is -1. Ends early once the plug-in stops: with g_bAbort set afterwards, neither the
// result nor the table says what monitors there are.
int InitMonitors();
