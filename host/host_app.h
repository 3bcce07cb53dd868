// The running host: the parts that it is made of, and the order in which they start and stop.
#pragma once

#include "host/reload.h"
#include "host/session_state.h"

struct HOSTAPP {
    HINSTANCE hInstance = nullptr;
    OPTIONS options = {};

    // The parts, each with a state of its own; a part knows those above it alone.
    HOSTWINDOW window = {};
    HOSTMONITORS monitors = {};
    RUNNINGPLUGIN plugin = {};
    TRAY tray = {};
    STARTUP startUp = {&options, &window, &monitors, &plugin, &tray};
    RELOAD reload = {&options, &window, &monitors, &plugin, &tray, &startUp};
    SESSIONSTATE session = {};
    SESSIONEVENTS sessionEvents = {};

    bool leavesConsole = false; // once all has started: it is not needed any more, nor is its end this program's

    int status = 0;             // the process's exit status
    bool isDriverStuck = false; // a call into the graphics driver has not come back: end with TerminateProcess

    // Of a program that has the host in it and uses it in a person's place; set before RunHost, on whose thread both
    // are called. Null in trayhub.exe. Such a program may set reload.keepsMonitors, too.
    bool (*prepare)(HOSTAPP *app, std::string *error) = nullptr; // once the plug-in is loaded, before it is started;
                                                                 // with false and a reason in *error the host ends
    void (*begin)(HOSTAPP *app) = nullptr; // once the plug-in is started, in the place of what the command line asks
};

// Runs the host from start to stop and returns the exit status. The console is open already.
int RunHost(HOSTAPP *app);
