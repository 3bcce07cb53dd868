// The client's end of the link to the management server: listener threads that receive its commands, and the window
// through which a listener is started.
//
// Each start adds a listener. None ends before the plug-in does: the window through which they could be stopped refuses
// its own creation, so there is never one to stop.
#pragma once

#include <windows.h>

#define SERVER_LINK_WINDOW_CLASS "NRV_LVThread_Class"

// Sets ports, server address and g_bCommActive to their defaults. Kernel thread.
void InitServerLink();

// Starts a listener, through a window of its own that never comes to be. A failure to start it is silent. Kernel
// thread. Result: null.
HWND CreateServerLinkWindow(HWND hParent);

// Asks the link's window to close. There is none, so the listeners stay. Kernel thread.
void StopServerLink();

// Ends all listeners and waits for them: at the plug-in's shutdown, since its code may be unloaded next. A message box
// that a listener shows is closed. Waits for as long as a command under way needs to give up, which is seconds at the
// most once g_bAbort is set. Kernel thread; messages sent to its windows are still delivered.
void EndServerListeners();

// Window procedure of SERVER_LINK_WINDOW_CLASS.
LRESULT CALLBACK ServerLinkWndProc(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam);
