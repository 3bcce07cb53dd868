// The launcher settings page.
#pragma once

#include <windows.h>

// The dialog procedure. Kernel thread.
INT_PTR CALLBACK LauncherPageProc(HWND hPage, UINT message, WPARAM wParam, LPARAM lParam);
