// The link to the management server.
#pragma once

#include <windows.h>

#define SERVER_LINK_WINDOW_CLASS "NRV_LVThread_Class"

// Sets the link's defaults: ports and server address. Kernel thread.
void InitServerLink();

// Starts the link through a window of its own that never comes to be. Kernel thread. Result: null.
HWND CreateServerLinkWindow(HWND hParent);

// Window procedure of SERVER_LINK_WINDOW_CLASS.
LRESULT CALLBACK ServerLinkWndProc(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam);
