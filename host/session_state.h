// Whether the monitors may be accessed, as far as Windows tells: not while the PC goes to sleep, the display is off, or
// somebody else sits at it.
#pragma once

#include <windows.h>

struct SESSIONSTATE {
    bool sleeps;       // the PC is going to sleep, or has not woken up yet
    bool isDisplayOff; // Windows has switched it off
    bool isAway;       // the session is not the one at the console
    bool isLocked;
};

enum SESSIONCHANGE {
    SESSION_SAME,
    SESSION_RESTS, // from now on the monitors are to be left alone
    SESSION_WAKES, // they may be accessed; they, or the PC, may have slept
};

// What Windows was asked to tell a window.
struct SESSIONEVENTS {
    HWND hWnd;        // null: nothing
    HANDLE hDisplay;  // of the display's state; null: not told
    HMODULE hLibrary; // that tells of the session; null: not told
};

// Has Windows tell the window when the display goes on or off and when the session is locked, left or taken up; as much
// of that as this Windows can.
void RegisterSessionEvents(SESSIONEVENTS *events, HWND hWnd);

// Harmless when nothing is registered.
void UnregisterSessionEvents(SESSIONEVENTS *events);

// Takes what a message to the window says into the state.
SESSIONCHANGE TakeSessionEvent(SESSIONSTATE *state, UINT message, WPARAM wParam, LPARAM lParam);

bool MayAccessMonitors(const SESSIONSTATE &state);
