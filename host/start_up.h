// What comes when the plug-in has started: the panel, commands and presses that the command line asks for.
#pragma once

#include "host/host_app.h"

// Waits, by timers of the host window, until the plug-in has started; then opens the panel if that is wished, and after
// the first start does what the command line asks for, and ends the host if that says so. The window's thread, as all
// functions here.
void AwaitStartUp(HOSTAPP *app);

// The plug-in is to be stopped: its start-up is not waited for any more.
void CancelStartUp(HOSTAPP *app);

// A timer of the host window, TIMER_START_UP or TIMER_PRESS.
void OnStartUpTimer(HOSTAPP *app);
void OnPressTimer(HOSTAPP *app);
