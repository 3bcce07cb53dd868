// The icon in the notification area, and the menu that it and the monitors' windows open.
#pragma once

#include <windows.h>

#include <string>

// From the icon to its window; the second parameter is the mouse message.
constexpr UINT WM_TRAY = WM_APP + 4;

// Shows the icon; one that is there already stays. Returns false when there is no notification area to show it in, or
// one that does not answer, as may be at log-on.
bool AddTrayIcon(HWND hWnd, HINSTANCE hInstance);
void RemoveTrayIcon(HWND hWnd);

// What a balloon at the icon says.
struct BALLOON {
    std::wstring title, text; // lines of text are separated by line feeds
    bool isWarning;
};

// Shows a balloon at the icon, in the place of one that is there. Does nothing where the shell knows no balloons.
void ShowBalloon(HWND hWnd, const BALLOON &balloon);

// The size of the icon's structure that a shell of this major version takes; balloons came with version 5.
DWORD NotifyIconDataSize(DWORD shellVersion);

// Text cut to fewer than `limit` characters, at the end of a line if one fits, with an ellipsis in the place of the
// rest.
std::wstring CutBalloonText(const std::wstring &text, size_t limit);

// The message that tells that the notification area is a new one, so that the icon must be shown again.
UINT TaskbarCreatedMessage();

// What the menu shows of the host.
struct TRAYMENU {
    bool hasMonitorWindows; // there are monitors' windows to be shown
    bool canDetect;         // monitors may be detected again now
    bool autostart;         // ticked: the program is started at log-on
};

// Opens the menu at the mouse; the choice comes as WM_COMMAND to hWnd.
void OpenTrayMenu(HWND hWnd, HINSTANCE hInstance, const TRAYMENU &state);
