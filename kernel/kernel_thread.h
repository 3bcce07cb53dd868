// The plug-in's own thread: it owns the kernel window and the panel dialog, and everything that the plug-in does by
// itself runs on it.
#pragma once

#include "kernel/shared_flag.h"

#define KERNEL_WINDOW_CLASS "NRV_LVKERNEL_Class"

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

extern SHAREDWND g_hKernelWnd;    // null while it does not exist
extern HWND g_hPanelDlg;          // null while it is closed; the message loop hands messages to it. Kernel thread.
extern SHAREDFLAG g_bNotJapanese; // 1 unless the system's default language is Japanese

// Whether the thread has been started and has not ended by itself. Host's thread.
bool IsKernelThreadRunning();

// Starts the thread. Host's thread. Result: 1, or 0 when it could not be started or runs already.
int StartKernelThread(HWND hHostWnd);

// Ends the thread in order (its window runs its shutdown) and waits for that without limit; messages sent to windows of
// the calling thread are still delivered. A message box or file dialog that is open on the thread is closed; what it
// then returns is the system's affair and may be OK, which is why boxes go by kernel/base/texts.h and file dialogs by
// panel/open_file.h: their callers get no answer. Host's thread. Result: 1, or 0 when no thread was started.
int StopKernelThread();
