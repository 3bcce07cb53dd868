// Ends the host in order when its console says so: at Ctrl+C, when the console's window is closed, and with the
// session. Windows would end the process there and then, and leave the monitors' buttons locked.
#pragma once

#include "host/host_window.h"

// From now on such an event has the window's host end: interrupted by a key with status 1, else with 0. The event is
// not over, and the process lives, until FinishConsoleEnd or CONSOLE_END_PATIENCE ms have passed. One host at a time.
void StartConsoleEnd(HOSTWINDOW *window);

// The host has stopped. Harmless when nothing was started.
void FinishConsoleEnd();

constexpr DWORD CONSOLE_END_PATIENCE = 20000; // Windows itself waits less when a console's window is closed
