// The kernel window: never seen, but its creation, timers and destruction carry the start-up, all periodic work and the
// shutdown of the plug-in. This module conducts; what it conducts lives elsewhere.
#pragma once

#include "kernel/shared_flag.h"

extern SHAREDFLAG g_bStarted;   // 1 for good once the start-up timer has found monitors
extern SHAREDFLAG g_bNoMonitor; // 1 when it has found none
extern LONG g_nRetry;           // "nRetry" setting; kept, nothing consults it

// Window procedure of KERNEL_WINDOW_CLASS. Kernel thread.
LRESULT CALLBACK KernelWndProc(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam);
