// The state of the plug-in that all of it goes by: its module, the host's window, the flags of its run, and its own
// windows with their timers and messages.
//
// The words are written by slots 0 and 15 and by the kernel thread; any thread reads them, but for the panel's window.
#pragma once

#include "kernel/base/shared_flag.h"

extern HINSTANCE g_hInstance;     // the plug-in's own module, for every resource load
extern SHAREDWND g_hHostWnd;      // the host's window: every packet goes there
extern SHAREDFLAG g_bAbort;       // 1 from the beginning of slot 15: every wait for the host ends within about a second
extern SHAREDFLAG g_bStarted;     // 1 for good once the start-up timer has found monitors
extern SHAREDFLAG g_bNoMonitor;   // 1 when it has found none
extern SHAREDFLAG g_bNotJapanese; // 1 unless the system's default language is Japanese
extern SHAREDWND g_hKernelWnd;    // null while it does not exist
extern HWND g_hPanelDlg;          // null while it is closed; the message loop hands messages to it. Kernel thread.

// Messages of the kernel window. The numbers are those of the packets to the host's window.
constexpr UINT WM_KERNEL_OPEN_PANEL = 42468;     // open the panel dialog; result: 1 = opened or deferred
constexpr UINT WM_KERNEL_PANEL_DEFERRED = 42469; // second parameter: the WAITERBLOCK of a deferral that is over

// Timers of the kernel window.
enum : UINT_PTR {
    TIMER_START_UP = 45678, // 1000 ms, fires once
    TIMER_DISPLAY_CPL = 1,  // 1000 ms, while the Display control panel is being waited for
    TIMER_FOREGROUND = 2,   // 2000 ms
    TIMER_RESERVATION = 3,  // 1000 ms
    TIMER_BUTTON_POLL = 5,  // 2000 ms, while a launcher function is switched on
};
