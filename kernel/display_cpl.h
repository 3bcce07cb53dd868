// The Display control panel: started by a command to the kernel window, then searched for every second until its
// property sheet can be turned to the page that belongs to us.
//
// Kernel thread.
#pragma once

#include <windows.h>

// WM_COMMAND of the kernel window that opens it; any sender may use it.
constexpr WORD COMMAND_DISPLAY_CPL = 1135;

// Starts the Display control panel and the search for it.
void OpenDisplayCpl(HWND hKernelWnd);

// One round of the search. A visible property sheet of the common controls library is taken for the one looked for: its
// page is selected, the panel dialog is closed, and the search ends.
void SearchDisplayCpl(HWND hKernelWnd);
