// What the plug-in knows of the attached monitors: how many, their models and capabilities.
//
// The table is filled once, at start-up on the kernel thread, before anything else reads it.
#pragma once

#include "kernel/base/shared_flag.h"
#include "monitor/capabilities.h"

#include <windows.h>

constexpr LONG MAX_MONITOR = 10;

extern SHAREDFLAG g_nMonitor; // count, 0 to MAX_MONITOR; -1 when the host did not answer
extern MONITORENTRY g_Monitor[MAX_MONITOR];

// True for an index that the tables hold, whether or not a monitor is there.
inline bool IsMonitorIndex(LONG nMonitor)
{
    return nMonitor >= 0 && nMonitor < MAX_MONITOR;
}

// Reads a capability string of cbText bytes into the monitor's entry; the text is changed in place. Result: 1 when its
// vcp list was read up to the closing parenthesis, else 0; 0 for an index out of range.
int ParseCapabilities(LONG nMonitor, char *lpText, DWORD cbText);

// Forms the path of "lvcap.ini" in the Windows system directory; once, at start. Kernel thread.
void BuildCapIniPath();

// Whether the monitor's entry in "lvcap.ini" contains a text. Result: 1 or 0.
int CapabilityHas(LONG nMonitor, LPCSTR lpszText);
