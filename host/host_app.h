// The running host: its window, what it owns, and the order in which all of it starts and stops.
#pragma once

#include <windows.h>

#include <functional>

#include "host/base/monitor_source.h"
#include "host/monitor_watch.h"
#include "host/notices.h"
#include "host/options.h"
#include "host/plugin_loader.h"
#include "host/router.h"
#include "host/simulated/press.h"

struct HOSTAPP {
    HINSTANCE hInstance;
    OPTIONS options;
    MONITORSOURCE monitors;
    SIMULATION simulation; // without monitors when those of the run are no simulated ones
    bool isDriverStuck;    // a call into the graphics driver has not come back: end with TerminateProcess
    PLUGIN plugin;
    ROUTER router;
    HWND hWnd;      // the host window: gets the plug-in's packets, never shown
    bool isRunning; // slot 0 was called and slot 15 was not
    bool isEnding;  // nothing new is begun

    bool wantsTray, hasTray; // there is to be an icon, and there is one
    unsigned trayTries;      // to show it
    NOTICES notices;

    bool awaitsStartUp; // of the plug-in
    bool panelWish;     // the panel is to open at the start-up, and
    bool panelDeferred; // the plug-in opens it by itself then
    bool commandsDone;
    bool isTrouble; // a command was not answered or a press not taken
    PRESSRUN presses;
    DWORD commandTick; // when the commands were done

    MONITORWATCH watch;
    HDEVNOTIFY hNotify;
    bool isReloading; // the plug-in is unloaded and the monitors are being found
    bool reloadByHand;
    std::vector<std::string> formerMonitors; // identities of those before the reload

    std::mutex callMutex;                    // guards calls
    std::deque<std::function<void()>> calls; // of RunOnWindow, in order

    int status; // the process's exit status

    // Of a program that has the host in it and uses it in a person's place; set before RunHost, on whose thread both
    // are called. Null in trayhub.exe.
    bool (*prepare)(HOSTAPP *app, std::string *error); // once the plug-in is loaded, before it is started; with false
                                                       // and a reason in *error the host ends
    void (*begin)(HOSTAPP *app); // once the plug-in is started, in the place of what the command line asks for
    bool keepsMonitors;          // those of the start stay, whatever is plugged
};

// ms without any packet after which start-up counts as failed; the plug-in waits up to 10 s for one reply.
constexpr DWORD START_PATIENCE = 15000;

// ms without a packet after which the plug-in counts as done with what it is at.
constexpr DWORD QUIET_TIME = 500;

// Runs the host from start to stop and returns the exit status. The console is open already.
int RunHost(HOSTAPP *app);

// Starts the router and the plug-in that is loaded. Returns false when the plug-in does not start. The window's
// thread.
bool StartPlugin(HOSTAPP *app);

// Runs a function on the window's thread and returns when it is done. Any other thread.
void CallOnWindow(HOSTAPP *app, const std::function<void()> &function);

// The same without waiting, and from any thread; never, when the host ends before.
void RunOnWindow(HOSTAPP *app, std::function<void()> function);

// Slot 15, once; the window's thread. Returns the slot's result, or 0 when the plug-in does not run.
int StopRunningPlugin(HOSTAPP *app);

// Has the message loop end with this status. Any thread.
void EndHost(HOSTAPP *app, int status);
