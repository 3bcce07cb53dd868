// What the plug-in knows of the attached monitors: how many, their models and capabilities, and the colour settings
// last read from each.
//
// The table is filled once, at start-up on the kernel thread, before anything else reads it. Afterwards only
// g_CurSetting and the maxima change.
#pragma once

#include "kernel/base/shared_flag.h"
#include "monitor/capabilities.h"

#include <windows.h>

constexpr LONG MAX_MONITOR = 10;

// Colour settings of a monitor. Brightness has two fields because a monitor keeps one value for each ECO state.
// A value that could not be read is 0xFFFF, or -1 in dwEco.
struct COLORSETTING {
    DWORD dwEco;      // VCP 0xE0: 0 off, else on
    WORD wBrightEco;  // VCP 0x10 while ECO is on
    WORD wBright;     // VCP 0x10 while ECO is off
    WORD wContrast;   // VCP 0x12
    WORD wRed;        // VCP 0x16
    WORD wGreen;      // VCP 0x18
    WORD wBlue;       // VCP 0x1A
    SHORT wColorTemp; // VCP 0x14
    WORD wReserved;
};
static_assert(sizeof(COLORSETTING) == 20);

extern SHAREDFLAG g_nMonitor; // count, 0 to MAX_MONITOR; -1 when the host did not answer
extern MONITORENTRY g_Monitor[MAX_MONITOR];
extern COLORSETTING g_CurSetting[MAX_MONITOR];
extern LONG g_nMaxBrightEco[MAX_MONITOR];
extern LONG g_nMaxBright[MAX_MONITOR];
extern LONG g_nMaxContrast[MAX_MONITOR];
extern LONG g_nMaxRed[MAX_MONITOR];
extern LONG g_nMaxGreen[MAX_MONITOR];
extern LONG g_nMaxBlue[MAX_MONITOR];

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
