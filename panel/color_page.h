// The colour page: the settings of the selected monitor, named colour profiles, and the programs that have one of their
// own. Every change goes to the monitor at once.
//
// Kernel thread, like all files of this page. Reads and writes wait for the host.
#pragma once

#include <windows.h>

// The dialog procedure.
INT_PTR CALLBACK ColorDlgProc(HWND hPage, UINT message, WPARAM wParam, LPARAM lParam);
