// The panel dialog: monitor list, page tree, help and logo, and the pages beside them.
//
// Kernel thread.
#pragma once

#include <windows.h>

// Opens the panel with a window as its owner, or brings the open one to the front. Result: 1 when it was opened, else
// 0.
int ShowPanel(HWND hOwner);

// The dialog procedure.
INT_PTR CALLBACK PanelDlgProc(HWND hPanel, UINT message, WPARAM wParam, LPARAM lParam);

// Fills the monitor list: number, model and selected input of each monitor. Reads the input of each from the host.
void FillMonitorCombo(HWND hPanel);
