// The kernel window: never seen, but its creation, timers and destruction carry the start-up, all periodic work and the
// shutdown of the plug-in. This module conducts; what it conducts lives elsewhere.
#pragma once

#include <windows.h>

#define KERNEL_WINDOW_CLASS "NRV_LVKERNEL_Class"

extern LONG g_nRetry; // "nRetry" setting; kept, nothing consults it

// Window procedure of KERNEL_WINDOW_CLASS. Kernel thread.
LRESULT CALLBACK KernelWndProc(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam);
