// Takes up the monitors anew while the host runs: stops and unloads the plug-in, finds the monitors, and loads and
// starts the plug-in again. The icon, the log and the host window stay. All functions: the window's thread.
#pragma once

#include "host/host_app.h"

// Begins to watch for other monitors. The host window exists.
void StartDetection(HOSTAPP *app);

// The displays may have changed: monitors are looked for now and a few times more.
void OnDisplayEvent(HOSTAPP *app);

// Whether the monitors may be taken up anew now: not while that is going on, nor while the command line is being worked
// off, nor when those of the start are to stay.
bool CanDetect(const HOSTAPP *app);

// The user wants the monitors taken up anew, changed or not. Does nothing unless CanDetect.
void DetectMonitors(HOSTAPP *app);

// Waits for a look or find that is going on. The host window exists.
void StopDetection(HOSTAPP *app);
