// Finds the plug-in's panel among this program's windows.
#pragma once

#include <windows.h>

// The panel; null while it is closed. Any thread.
HWND FindPanel();
