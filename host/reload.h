// Takes up the monitors anew while the host runs: stops and unloads the plug-in, finds the monitors, and loads and
// starts the plug-in again. The icon, the log and the host window stay. All functions: the window's thread.
#pragma once

#include "host/monitor_watch.h"
#include "host/start_up.h"

// With the parts that it works on.
struct RELOAD {
    const OPTIONS *options;
    HOSTWINDOW *window;
    HOSTMONITORS *monitors;
    RUNNINGPLUGIN *plugin;
    TRAY *tray;
    STARTUP *startUp;

    bool keepsMonitors = false; // those of the start stay, whatever is plugged
    MONITORWATCH watch = {};
    HDEVNOTIFY hNotify = nullptr;
    bool isUnderWay = false; // the plug-in is unloaded and the monitors are being found
    bool isByHand = false;
    std::vector<MONITORIDENTITY> formerMonitors = {}; // those before
};

// Begins to watch for other monitors. The host window exists.
void StartDetection(RELOAD *reload);

// The displays may have changed: monitors are looked for now and a few times more.
void OnDisplayEvent(RELOAD *reload);

// Monitors are not looked for until the next OnDisplayEvent.
void PauseDetection(RELOAD *reload);

// Whether the monitors may be taken up anew now: not while that is going on, nor while the command line is being worked
// off, nor when those of the start are to stay.
bool CanDetect(const RELOAD *reload);

// The user wants the monitors taken up anew, changed or not. Does nothing unless CanDetect.
void DetectMonitors(RELOAD *reload);

// Waits for a look or find that is going on. Harmless when none was begun.
void StopDetection(RELOAD *reload);
