// What the link to the management server goes by: whether it runs, the names and addresses of this client and of the
// server, and what the user sees of it.
//
// Set by the listener threads and the kernel thread.
#pragma once

#include "kernel/base/shared_flag.h"
#include "server/server_protocol.h"

#include <windows.h>

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
