// Opening the panel, at once or, before the start-up is done, as soon as it is. A deferral waits on a thread of its
// own, since the kernel thread may be inside a request to the host for many seconds.
//
// Kernel thread.
#pragma once

#include <windows.h>

// Opens the panel with the kernel window as its owner, or defers that. Result: that of the opening; 1 when deferred, 0
// when it could not be.
LRESULT OpenOrDeferPanel(HWND hKernelWnd);

// Ends a deferral whose thread has posted WM_KERNEL_PANEL_DEFERRED, and asks for the panel again. `block` is the
// message's second parameter; one that is no pending deferral is ignored. Result: 1.
LRESULT EndPanelDeferral(HWND hKernelWnd, LPARAM block);

// Ends all pending deferrals without opening anything; waits for their threads, which end at once.
void CancelDeferredPanels();
