// What an operation on colours and features is meant for: the monitor that the user has selected, or all monitors.
//
// Any thread.
#pragma once

#include "kernel/base/shared_flag.h"

extern SHAREDFLAG g_nCurMonitor;  // the monitor chosen in the panel; 0 until then
extern SHAREDFLAG g_bAllMonitors; // 1 while colour operations go to every monitor instead of the selected one

// SetVCP on every monitor in turn, with the low 16 bits of the value. Waits for the host each time.
void SetVCPAll(BYTE bCode, LONG nValue);

// SetVCP on the selected monitor or, in the all-monitors mode, on every one. A command of several accesses takes
// g_nCurMonitor once and hands it to each as nSelected: another may be chosen meanwhile.
void SetSelectedOrAll(LONG nSelected, BYTE bCode, LONG nValue);
