// The physical monitors behind a list of displays, each with what is known of it without asking it.
#pragma once

#include "host/base/edid.h"
#include "host/windows_monitors/displays.h"
#include "host/windows_monitors/monitor_api.h"

constexpr size_t FOUND_MONITOR_LIMIT = 10; // the plug-in's table holds no more

struct FOUNDMONITOR {
    HANDLE handle;        // of the physical monitor, to be destroyed by whoever holds it; 0 is a good one
    std::string identity; // device and EDID: the same for the same monitor behind whatever display, other than any
                          // other's that is there
    std::vector<std::string> devices; // instances of the devices that it may be: its own, if that is known
    bool isVague;                     // none of them has an EDID: may be what Windows has in a sleeping one's place
    DISPLAY display;                  // without its monitors
    std::string description;          // in words, as Windows has it
    bool hasEdid;                     // the EDID is known for sure, and its header and checksum are right
    EDIDBLOCK edid;                   // the base block
    std::string edidTrouble;          // why the EDID is not known (English)
};

struct FINDING {
    std::vector<FOUNDMONITOR> monitors; // at most FOUND_MONITOR_LIMIT
    DWORD error;                        // of the first display that gave no monitors; 0: none
    std::string trouble;                // all of these, and why (English); empty: none
};

// Opens the physical monitors of all displays, in their order. Any thread; the driver may take its time.
FINDING FindPhysicalMonitors(const MONITORAPI &api, const std::vector<DISPLAY> &displays);

void DestroyFoundMonitors(const MONITORAPI &api, const std::vector<FOUNDMONITOR> &monitors);

// Which of a display's monitor devices is its physical monitor number `index` of those described: an index into
// display.monitors, or -1. Windows does not say; one behind one is sure, and so is a description that only one has on
// either side.
int MatchMonitorDevice(const DISPLAY &display, const std::vector<std::string> &descriptions, size_t index);

// The plug-in's name for a monitor, HOST_NAME_SIZE bytes at most: what its capability string calls it, else its EDID,
// else Windows.
std::string MonitorModel(const std::string &capabilities, const FOUNDMONITOR &found);
