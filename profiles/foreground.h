// The colour profile that follows the program in front ("DirectLink").
#pragma once

#include "kernel/shared_flag.h"

extern SHAREDFLAG g_bDirectLink;  // 1 while the colour profile follows the foreground program
extern SHAREDFLAG g_bAllMonitors; // 1 while colour operations go to every monitor instead of the selected one
extern SHAREDFLAG g_bForeIdle;    // 1 while a check may start: it guards a check that waits for its question

// Sets the state of the checks as at the creation of the kernel window. Kernel thread.
void InitForeground();

// Forgets which program was in front last. The last step of that creation. Kernel thread.
void ResetForegroundState();

// Switches DirectLink on when the settings say so. At start-up, with the monitors known. Kernel thread.
void StartDirectLink();

// Tells the host that DirectLink is on (1) or off (0), for the selected monitor or for all of them. Kernel thread.
void NotifyDirectLink(LONG bOn);

// The check of the program in front, every two seconds while DirectLink is on. Kernel thread.
void ForegroundCheck(HWND hKernelWnd);

// Asks whether the colours shall change for a registered program that has come to the front, unless "NoAskDialog" says
// not to ask. The box has no owner; hWnd is not used. Kernel thread. Result: 1 = change them, 0 = leave them.
int AskColorChange(HWND hWnd);
