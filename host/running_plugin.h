// The plug-in of a run: started together with the router that answers it, told to open its panel, stopped.
#pragma once

#include "host/host_monitors.h"
#include "host/plugin_loader.h"
#include "host/router.h"

struct RUNNINGPLUGIN {
    PLUGIN library;
    ROUTER router;
    bool isRunning;     // slot 0 was called and slot 15 was not
    bool panelWish;     // the panel is to open at the start-up, and
    bool panelDeferred; // the plug-in opens it by itself then
};

// ms without a packet after which the plug-in counts as done with what it is at.
constexpr DWORD QUIET_TIME = 500;

// Starts the router, before these monitors, and the plug-in that is loaded, whose packets go to hWnd. Returns false
// when the plug-in does not start. All functions: the window's thread.
bool StartPlugin(RUNNINGPLUGIN *plugin, HWND hWnd, const HOSTMONITORS &monitors);

// Has the plug-in open its panel: now, or as soon as it has found monitors, be it after its next start.
void OpenPanel(RUNNINGPLUGIN *plugin);

// Slot 15, once. The router still answers it, and accesses to the monitors that it waits for end soon. Returns the
// slot's result, or 0 when the plug-in does not run.
int StopRunningPlugin(RUNNINGPLUGIN *plugin, HOSTMONITORS *monitors);

// Stops the router, so that no thread is in the plug-in, and unloads it. After StopRunningPlugin; harmless when nothing
// is loaded.
void UnloadStoppedPlugin(RUNNINGPLUGIN *plugin);
