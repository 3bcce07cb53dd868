// The link to the management server: listener threads that receive its commands, the names and addresses that they
// answer with, and the window through which a listener is started.
//
// Each start adds a listener. None ends before the plug-in does: the window through which they could be stopped refuses
// its own creation, so there is never one to stop.
#pragma once

#include "kernel/base/shared_flag.h"
#include "server/server_protocol.h"

#include <windows.h>

#define SERVER_LINK_WINDOW_CLASS "NRV_LVThread_Class"

struct SERVERTHREADCTX {
    HWND hWnd;           // the window of the last start, gone since
    SHAREDFLAG bRunning; // 1 while the listeners shall go on
};

extern HWND g_hServerLinkWnd; // always null: the window refuses its creation
extern SERVERTHREADCTX g_ServerThreadCtx;

// This client. Set by each listener when it begins; the names also by the user. Texts are always terminated.
extern SHAREDDWORD g_dwMyIpAddr; // network byte order; 0 when it could not be looked up
extern char g_szHostName[17];
extern char g_szUserName[SERVER_NAME_SIZE];
extern char g_szGroupName[SERVER_NAME_SIZE];

// Shown and changed by the user, and nothing else: both ends always use SERVER_PORT.
extern WORD g_wUdpPort;
extern WORD g_wTcpPort;

// The server of the last identity request. The text is empty until then.
extern SHAREDDWORD g_dwServerAddr;
extern char g_szServerAddr[16];

extern LONG g_bCommActive; // 1 after the user's start, 0 after the user's stop: steers the controls, not the link

// The window with the communication log (edit control IDC_NETWORK_LOG). Null, and the log unseen: no page offers one.
extern SHAREDWND g_hCommLogWnd;

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
