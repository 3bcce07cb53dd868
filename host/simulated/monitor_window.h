// A window per simulated monitor: its picture, and a front panel whose buttons the mouse presses.
#pragma once

#include <windows.h>

#include "host/simulated/simulated_monitor.h"

// Messages to the host's window, with the monitor's index as first parameter.
constexpr UINT WM_MONITOR_CLOSED = WM_APP + 1; // the user closed this monitor's window (it is only hidden)
constexpr UINT WM_MONITOR_MENU = WM_APP + 2;   // the user asks for the menu at the mouse

// Makes a hidden window for each monitor, placed side by side on the screen, and repaints them when a value changes.
// `owner` gets the messages above. Returns false when a window cannot be made. All functions: one and the same thread.
bool CreateMonitorWindows(SIMULATION *simulation, HINSTANCE hInstance, HWND owner);

void ShowMonitorWindows();
bool HasMonitorWindows();
bool IsAnyMonitorWindowVisible();

// The window of a monitor; null for a monitor that has none.
HWND MonitorWindow(int monitor);

// No value may change any more.
void DestroyMonitorWindows();
