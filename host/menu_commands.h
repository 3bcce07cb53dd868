// What the user asks for at the icon and at the monitors' windows. All functions: the window's thread.
#pragma once

#include "host/reload.h"

// Opens the menu at the mouse; the choice comes as WM_COMMAND to the host window.
void OpenHostMenu(const HOSTWINDOW *window, const RELOAD *reload);

// Carries out a choice of the menu, one of IDM_... .
void RunMenuCommand(HOSTWINDOW *window, RUNNINGPLUGIN *plugin, RELOAD *reload, WORD command);
