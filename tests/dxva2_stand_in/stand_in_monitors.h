// The monitors behind the stand-in's functions: simulated ones, what is wrong with them, and the handles to them.
#pragma once

#include <memory>
#include <vector>

#include "host/simulated/simulated_monitor.h"
#include "tests/dxva2_stand_in/stand_in.h"

struct STANDINMONITOR {
    DWORD faults[STANDIN_FAULT_COUNT];
    DWORD accesses;
    DWORD accessesBefore; // the accesses when STANDIN_ANSWERS_EVERY was set
    unsigned plugs;       // how often it was unplugged: what handles of earlier times are told by
    HANDLE hGoOn;         // signalled unless it hangs
};

struct STANDINMONITORS {
    SIMULATION simulation;
    std::mutex mutex; // guards what follows
    std::vector<STANDINMONITOR> monitors;
    bool closed; // others have come in their place
    struct OPENED {
        int monitor;
        unsigned plugs;
        bool open;
    };
    std::vector<OPENED> handles; // a handle is the index here; Windows, too, begins with 0

    ~STANDINMONITORS();
};

// The present monitors; at the first call those of the control file. Never null; without any description it holds none.
// Whoever has it may go on using it when others come in its place.
std::shared_ptr<STANDINMONITORS> PresentMonitors();

// The monitors that are there and stand behind a display, by number from 1 on.
std::vector<int> MonitorsBehind(STANDINMONITORS *all, DWORD display);

HANDLE OpenMonitorHandle(STANDINMONITORS *all, int monitor);

// Returns false for a handle that is none, or no longer.
bool CloseMonitorHandle(STANDINMONITORS *all, HANDLE handle);

// What is wrong with a monitor at the moment.
DWORD FaultOf(STANDINMONITORS *all, int monitor, STANDINFAULT fault);

// Begins an access and gives the monitor's number. Waits while the monitor hangs. Returns 0, or the error code that
// Windows gives: for a handle that is none, a monitor that is gone, or `lineError` when the line fails.
DWORD BeginMonitorAccess(STANDINMONITORS *all, HANDLE handle, DWORD lineError, int *monitor);
