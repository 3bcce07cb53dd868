// The host window: gets the plug-in's packets, the icon's and Windows' messages, and what the user chooses in the menu.
#pragma once

#include "host/host_app.h"

constexpr UINT_PTR TIMER_START_UP = 1; // looks whether the plug-in has started
constexpr UINT_PTR TIMER_PRESS = 2;    // makes the presses of the command line

// Makes app->hWnd, which is never shown. Returns false when that fails.
bool CreateHostWindow(HOSTAPP *app);

// Harmless when there is no window.
void DestroyHostWindow(HOSTAPP *app);

// Has the plug-in open its panel, now or as soon as it has found monitors. The window's thread.
void OpenPanel(HOSTAPP *app);
