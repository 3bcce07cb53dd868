// The button lock page.
#pragma once

#include <windows.h>

// The dialog procedure. Kernel thread.
INT_PTR CALLBACK ButtonLockPageProc(HWND hPage, UINT message, WPARAM wParam, LPARAM lParam);
