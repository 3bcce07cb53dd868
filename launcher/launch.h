// Starting what is assigned to a front-panel button.
#pragma once

#include "settings/registry.h"

#include <windows.h>

// What the registry holds for one button of one monitor. Texts that are absent are empty.
struct ASSIGNMENT {
    int bProgram;                        // a program, or another file, is assigned
    char szPath[SETTING_TEXT_SIZE];      // of the program or file
    char szParameter[SETTING_TEXT_SIZE]; // for an assigned document its path once more
};

// Room for a parameter text between two quotes.
constexpr DWORD LAUNCH_PARAMETERS_SIZE = SETTING_TEXT_SIZE + 2;

// Decides what is handed to the shell. lpszParameters: LAUNCH_PARAMETERS_SIZE bytes.
// Result: the file to open, a text of the assignment; null when nothing is assigned.
LPCSTR DecideLaunch(const ASSIGNMENT *lpAssignment, char *lpszParameters);

// Starts what is assigned to button 1 to 6 of a monitor, silently when that fails or nothing is assigned. hWnd: owner
// of any window that the shell shows. Monitor 0 stands for the monitor selected in the panel. Kernel thread. Result: 1.
int LaunchButton(HWND hWnd, LONG nMonitor, int nButton);
