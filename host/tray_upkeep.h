// Keeps the icon in the notification area: also when that comes late or comes anew; and tells the user there what has
// happened. All functions: the window's thread.
#pragma once

#include "host/notices.h"

constexpr UINT_PTR TIMER_TRAY = 3; // of the icon's window: tries again to show the icon

struct TRAY {
    HWND hWnd; // the icon's window
    HINSTANCE hInstance;
    bool isWanted, isThere; // there is to be an icon, and there is one
    unsigned tries;         // to show it
    NOTICES notices;
};

// Shows the icon, whose messages go to hWnd. Where that does not work it is tried again for a while. Without this call
// there is none, and the functions below do nothing.
void StartTray(TRAY *tray, HWND hWnd, HINSTANCE hInstance);

// The window's timer TIMER_TRAY.
void OnTrayTimer(TRAY *tray);

// There is a new notification area, as after a restart of Explorer.
void OnTaskbarCreated(TRAY *tray);

// A balloon for what is wrong with the monitors, unless that was told; empty: nothing is. Returns whether there was
// something new to tell.
bool TellTrouble(TRAY *tray, const std::wstring &trouble);

// A balloon that says how many monitors there are now, or the trouble with them if that is new. `byHand`: the user has
// asked, so it is told in any case.
void TellMonitors(TRAY *tray, int count, const std::wstring &trouble, bool byHand);

// A balloon of its own for what went wrong.
void TellFailure(TRAY *tray, const std::wstring &text);

void StopTray(TRAY *tray);
