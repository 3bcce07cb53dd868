// The monitor backend that drives the monitors which Windows has, through its Monitor Configuration API.
#pragma once

#include <string>
#include <vector>

#include "host/base/monitor_source.h"
#include "host/windows_monitors/monitor_overrides.h"
#include "host/windows_monitors/monitor_worker.h"
#include "host/windows_monitors/timed_search.h"

struct WINDOWSMONITOROPTIONS {
    std::string overrides;             // path of monitors.ini, which need not exist; empty: none
    std::string storeFolder;           // of the capability store; empty: nothing is kept
    bool fresh;                        // forget what is kept, and read all capability strings anew
    const MONITORAPI *api;             // null: dxva2.dll
    LISTDISPLAYS listDisplays;         // null: Windows' own
    bool keptCapabilitiesOnly = false; // read none from a monitor
};

// monitors.ini beside the program, and the store of this user.
WINDOWSMONITOROPTIONS DefaultWindowsMonitorOptions();

// The found monitors, their threads, store and overrides.
struct WINDOWSMONITORS;

// Loads dxva2.dll and reads monitors.ini; finds nothing yet. Never null.
WINDOWSMONITORS *OpenWindowsMonitors(const WINDOWSMONITOROPTIONS &options);

// Looks for the monitors, and replaces what was found before; reads monitors.ini again. With `keepsPlaces` those that
// are away keep their indexes; accesses to them fail until they are back. Each monitor gets a thread, which begins with
// the capability string. Ends StopWindowsMonitorAccesses. Call while the backend is not in use.
void FindWindowsMonitors(WINDOWSMONITORS *monitors, bool keepsPlaces = false);

// The identities of the monitors that are there now. Those in use that are not are known to be away, until they are
// seen again: the next access then opens them anew. While the driver hangs nothing can be said: then these are those in
// use. Any thread; takes up to SEARCH_PATIENCE.
std::vector<MONITORIDENTITY> LookForWindowsMonitors(WINDOWSMONITORS *monitors);

// The identities of the monitors in use, by their indexes. Any thread.
std::vector<MONITORIDENTITY> FoundWindowsMonitors(WINDOWSMONITORS *monitors);

// Why there is no monitor, which lines of monitors.ini are left out, which string was not read, a line each; empty:
// nothing to say. In Japanese for windows, in English for the console. Any thread.
std::string WindowsMonitorsTrouble(WINDOWSMONITORS *monitors);
std::string WindowsMonitorsTroubleInEnglish(WINDOWSMONITORS *monitors);

// From now on no capability string is read, or again; in the second case each monitor is opened anew at its next
// access. Any thread.
void RestWindowsMonitors(WINDOWSMONITORS *monitors, bool rests);

// Before the plug-in's stop: accesses still go to the monitors, but none takes longer than STOP_PATIENCE. Any thread.
void StopWindowsMonitorAccesses(WINDOWSMONITORS *monitors);

// Ends the threads. Returns false when a call into the driver has not come back: its thread cannot be ended, so the
// process should be, with TerminateProcess (the driver's DLLs might wait for that thread at an ordinary end).
bool CloseWindowsMonitors(WINDOWSMONITORS *monitors);

// The table through which the router reaches these monitors. It may be called on any thread.
MONITORBACKEND WindowsBackend(WINDOWSMONITORS *monitors);

// ---- For whoever describes them -------------------------------------------------------------------------------------

struct WINDOWSMONITOR {
    FOUNDMONITOR found; // its handle belongs to the worker; of one that is away as it was before
    MONITOROVERRIDE override;
    MONITORTITLES titles;
    std::shared_ptr<MONITORWORKER> worker;
    bool knowsModel; // the capability string has been looked at for a name that monitors.ini may use
};

// The monitors in use. Any thread.
std::vector<WINDOWSMONITOR> CopyWindowsMonitors(WINDOWSMONITORS *monitors);

// Why nothing could be asked for monitors at all, or a display gave none (English); empty: nothing to say.
std::string FindingTrouble(WINDOWSMONITORS *monitors);

// The lines of monitors.ini that are left out.
std::vector<INIFAULT> OverrideFaults(WINDOWSMONITORS *monitors);

// The monitor of an index, and its capability string as the backend has it, before it is cut to what the plug-in takes.
// The monitor comes with what monitors.ini says of the name in that string. Returns 0, or the error; without such a
// monitor ERROR_NOT_FOUND. Any thread.
DWORD WindowsMonitorCapabilities(WINDOWSMONITORS *monitors, int index, DWORD patience, WINDOWSMONITOR *monitor,
                                 std::string *text);

// Reads a code as the backend does; the answer's error says why not. Any thread.
ACCESSANSWER ReadWindowsMonitor(const WINDOWSMONITOR &monitor, BYTE code, DWORD patience);
