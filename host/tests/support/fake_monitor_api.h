// A Monitor Configuration API that the tests script: displays, the monitors behind them, and how an access goes.
#pragma once

#include <windows.h>

#include <deque>
#include <map>
#include <string>
#include <vector>

#include "host/windows_monitors/windows_monitors.h"

struct DRIVERMONITOR {
    std::string description = "Generic PnP Monitor";
    std::string capabilities = "(vcp(10 12))";
    std::map<BYTE, std::pair<WORD, WORD>> values = {{0x10, {30, 100}}}; // value and maximum
    std::deque<DWORD> errors;                                           // of the next accesses; 0: that one goes well
    DWORD error = 0;                                                    // of all accesses after these
    int disturbances = 0; // so many of the next reads of the capability string have "0F" as "0E"
    int hangs = 0;        // so many of the next accesses do not come back before ReleaseHangs
    bool isGone = false;
};

struct DRIVERACCESS {
    size_t monitor;
    char kind; // 'r', 'w' or 'c'
    BYTE code;
    DWORD startTick, endTick;
};

// The displays of the desktop: the indexes of the monitors behind each.
struct DRIVERDISPLAY {
    std::vector<size_t> monitors;
    std::vector<DISPLAYMONITOR> devices;
    DWORD error = 0; // why it gives no monitors
};

// Sets up a desktop; all handles given out before are invalid from now on.
void SetDesktop(const std::vector<DRIVERMONITOR> &monitors, const std::vector<DRIVERDISPLAY> &displays);

// The handles become invalid, as after a change of the display mode.
void InvalidateHandles();

// Changes a monitor under the driver's lock.
template <typename FUNCTION>
void ChangeMonitor(size_t monitor, const FUNCTION &change);
DRIVERMONITOR *LockMonitor(size_t monitor);
void UnlockMonitor();
template <typename FUNCTION>
void ChangeMonitor(size_t monitor, const FUNCTION &change)
{
    change(*LockMonitor(monitor));
    UnlockMonitor();
}

// Waits until an access hangs, up to five seconds; whether one does.
bool WaitForHang();

// The next search for monitors finds them and then hangs.
void HangSearch();

// Lets everything go on that hangs.
void ReleaseHangs();

std::vector<DRIVERACCESS> DriverAccesses();
size_t OpenHandleCount(); // given out and not destroyed

// Waits until no handle is open any more, up to five seconds; whether that came.
bool WaitForNoHandle();

const MONITORAPI *FakeMonitorApi();
std::vector<DISPLAY> FakeDisplays();
