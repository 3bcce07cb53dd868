// The EDID check at stop: the listed models are left with an EDID that begins with the standard header.
//
// The host says what the EDID is. The repair goes around it, straight to the graphics card's driver, and nobody is told
// of its outcome. Kernel thread.
#pragma once

#include <windows.h>

// Writes the standard header into a monitor's EDID memory and reads the EDID back into g_Edid; g_bWin9x must be set and
// g_bI2CError clear. Result: 1 when the monitor now has that header, else 0.
int RepairEdidHeader(LONG nMonitor);

// Checks all monitors and repairs those that need it. Once, at the end of a run.
void CheckEdidAtStop();
