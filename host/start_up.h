// What comes when the plug-in has started: the panel, commands and presses that the command line asks for.
#pragma once

#include "host/host_window.h"
#include "host/running_plugin.h"
#include "host/simulated/press.h"
#include "host/tray_upkeep.h"

// Timers of the host window.
constexpr UINT_PTR TIMER_START_UP = 1; // looks whether the plug-in has started
constexpr UINT_PTR TIMER_PRESS = 2;    // makes the presses of the command line

// ms without any packet after which start-up counts as failed; the plug-in waits up to 10 s for one reply.
constexpr DWORD START_PATIENCE = 15000;

// With the parts that it works on.
struct STARTUP {
    const OPTIONS *options;
    HOSTWINDOW *window;
    HOSTMONITORS *monitors;
    RUNNINGPLUGIN *plugin;
    TRAY *tray;

    bool isAwaited = false; // the plug-in was started and has not said that it is done
    bool commandsDone = false;
    DWORD commandTick = 0; // when the commands were done
    PRESSRUN presses = {};
    bool isTrouble = false; // a command was not answered or a press not taken
};

// Waits, by timers of the host window, until the plug-in has started; then opens the panel if that is wished, and after
// the first start does what the command line asks for, and ends the host if that says so. The window's thread, as all
// functions here.
void AwaitStartUp(STARTUP *startUp);

// The plug-in is to be stopped: its start-up is not waited for any more.
void CancelStartUp(STARTUP *startUp);

// Whether commands or presses of the command line are still to come.
bool IsAtCommandLine(const STARTUP *startUp);

// The timers.
void OnStartUpTimer(STARTUP *startUp);
void OnPressTimer(STARTUP *startUp);
