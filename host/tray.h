// The icon in the notification area, and the menu that it and the monitors' windows open.
#pragma once

#include <windows.h>

// From the icon to its window; the second parameter is the mouse message.
constexpr UINT WM_TRAY = WM_APP + 4;

// Shows the icon. Returns false when there is no notification area to show it in.
bool AddTrayIcon(HWND hWnd, HINSTANCE hInstance);
void RemoveTrayIcon(HWND hWnd);

// The message that tells that the notification area is a new one, so that the icon must be shown again.
UINT TaskbarCreatedMessage();

// Opens the menu at the mouse; the choice comes as WM_COMMAND to hWnd.
void OpenTrayMenu(HWND hWnd, HINSTANCE hInstance);
