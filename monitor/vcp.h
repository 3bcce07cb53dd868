// Reading and writing VCP features (MCCS) of a monitor: the two calls that all traffic of the features goes through.
//
// Any thread. Each call waits for the host, up to about 10 s.
#pragma once

#include "monitor/vcp_codes.h"

#include <windows.h>

// Reads a feature. lpMaximum may be null. Result: the current value; -1 for monitor -1 (nothing is sent) and when no
// answer came, with *lpMaximum as it was.
LONG GetVCP(LONG nMonitor, BYTE bCode, LONG *lpMaximum);

// Writes a feature. Result: the host's; -1 for monitor -1 (nothing is sent) and when no answer came.
LONG SetVCP(LONG nMonitor, BYTE bCode, WORD wValue);

// Tells the host that the colours follow the foreground program (1) or not (0), on a monitor or on all of them (-1).
LONG SetDirectLink(LONG nMonitor, LONG bOn);
