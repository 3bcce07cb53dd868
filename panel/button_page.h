// The button pages: one dialog procedure for all six, which differ by a table.
#pragma once

#include <windows.h>

// The dialog procedure. Kernel thread.
INT_PTR CALLBACK ButtonPageProc(HWND hPage, UINT message, WPARAM wParam, LPARAM lParam);
