// The colour profile that follows the program in front ("DirectLink").
#pragma once

#include "kernel/base/shared_flag.h"

extern SHAREDFLAG g_bDirectLink; // 1 while the colour profile follows the foreground program
extern SHAREDFLAG g_bForeIdle;   // 1 while a check may start: it guards a check that waits for its question

// Sets the state of the checks as at the creation of the kernel window. Kernel thread.
void InitForeground();

// Forgets which program was in front last. The last step of that creation. Kernel thread.
void ResetForegroundState();

// Switches DirectLink on when the settings say so. At start-up, with the monitors known. Kernel thread.
void StartDirectLink();

// Tells the host that DirectLink is on (1) or off (0), for the selected monitor or for all of them. Kernel thread.
void NotifyDirectLink(LONG bOn);

// The check of the program in front, every two seconds while DirectLink is on: applies the profile of a registered
// program, after a question once each time one comes to the front; without one in front restores the defaults, each
// time anew. May wait for the user's answer, and deliver messages meanwhile. Kernel thread.
void ForegroundCheck(HWND hKernelWnd);

// Asks whether the colours shall change for a registered program that has come to the front, unless "NoAskDialog" says
// not to ask. The box has no owner; hWnd is not used. Kernel thread. Result: 1 = change them, 0 = leave them.
int AskColorChange(HWND hWnd);

// The registered application that owns the window in front, or that window's owner. Kernel thread. Result: its slot;
// -1.
int FindForegroundApp();

// Writes an application profile to the selected monitor, or to all, unless a video or TV input is on. The slots are
// those of g_AppProfile; one out of range does nothing. Each write waits for the host. Kernel thread.
void ApplyAppProfile(int nSlot);

// The same for one monitor and without the look at the input.
void ApplyProfileToMonitor(int nSlot, LONG nMonitor);

// Writes the defaults to the selected monitor, or to all, and makes them its current settings. Kernel thread.
void RestoreDefaultColor();
void RestoreMonitorColor(LONG nMonitor);
