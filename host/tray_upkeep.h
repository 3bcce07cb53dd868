// Keeps the icon in the notification area: also when that comes late or comes anew; and tells the user there what has
// happened. All functions: the window's thread.
#pragma once

#include "host/host_app.h"

// Shows the icon unless the command line forbids it. Where that does not work it is tried again for a while.
void StartTray(HOSTAPP *app);

// A timer of the host window, TIMER_TRAY.
void OnTrayTimer(HOSTAPP *app);

// There is a new notification area, as after a restart of Explorer.
void OnTaskbarCreated(HOSTAPP *app);

// A balloon for what is wrong with the monitors, unless that was told. Returns whether there was something new to tell.
bool TellTrouble(HOSTAPP *app);

// A balloon that says how many monitors there are now. `byHand`: the user has asked, so it is told in any case.
void TellMonitors(HOSTAPP *app, bool byHand);

// A balloon of its own for what went wrong.
void TellFailure(HOSTAPP *app, const std::wstring &text);

void StopTray(HOSTAPP *app);
