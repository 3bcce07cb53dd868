// The window of a page, in its place in the panel.
//
// Kernel thread.
#pragma once

#include <windows.h>

// Creates a page dialog, puts it in its place beside the tree and shows it. Result: its window, or null.
HWND CreatePageWindow(HWND hPanel, int nTemplate, DLGPROC lpfnProc);
