// Which messages of Windows say that there may be other monitors than before.
#pragma once

#include <windows.h>

// Has Windows tell the window when a monitor is plugged or unplugged. Returns null where that cannot be had.
HDEVNOTIFY RegisterDisplayEvents(HWND hWnd);

// Harmless for null.
void UnregisterDisplayEvents(HDEVNOTIFY hNotify);

// Whether a message to a window says that: the displays have changed, a monitor was plugged or unplugged.
bool IsDisplayEvent(UINT message, WPARAM wParam, LPARAM lParam);
