// The plug-in's own thread: it owns the kernel window and the panel dialog, and everything that the plug-in does by
// itself runs on it.
#pragma once

#include <windows.h>

// Whether the thread has been started and has not ended by itself. Host's thread.
bool IsKernelThreadRunning();

// Starts the thread. Host's thread. Result: 1, or 0 when it could not be started or runs already.
int StartKernelThread(HWND hHostWnd);

// Ends the thread in order (its window runs its shutdown) and waits for that without limit; messages sent to windows of
// the calling thread are still delivered. A message box or file dialog that is open on the thread is closed; what it
// then returns is the system's affair and may be OK, which is why boxes go by kernel/base/texts.h and file dialogs by
// panel/open_file.h: their callers get no answer. Host's thread. Result: 1, or 0 when no thread was started.
int StopKernelThread();
