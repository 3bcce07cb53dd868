// The host window: gets the plug-in's packets, the icon's and Windows' messages, and what the user chooses in the menu.
#pragma once

#include "host/host_app.h"

#define HOST_WINDOW_CLASS L"TrayhubHost"
#define HOST_WINDOW_TITLE L"Trayhub"
#define HOST_MUTEX L"Trayhub"

// From a second start to the window of the first: open the panel. Returns 1 unless the host is ending.
constexpr UINT WM_HOST_SHOW = WM_APP + 13;

constexpr UINT_PTR TIMER_START_UP = 1; // looks whether the plug-in has started
constexpr UINT_PTR TIMER_PRESS = 2;    // makes the presses of the command line
constexpr UINT_PTR TIMER_TRAY = 3;     // tries again to show the icon

// Makes app->hWnd, which is never shown. A host that runs beside others has another title, so that a second start does
// not find it. Returns false when that fails.
bool CreateHostWindow(HOSTAPP *app);

// Harmless when there is no window.
void DestroyHostWindow(HOSTAPP *app);

// Has the plug-in open its panel: now, or as soon as it has found monitors, be it after a reload. The window's thread.
void OpenPanel(HOSTAPP *app);
