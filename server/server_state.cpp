// State of the link to the management server.
#include "server/server_state.h"

HWND g_hServerLinkWnd = nullptr;
SERVERTHREADCTX g_ServerThreadCtx = {nullptr, 0};
SHAREDDWORD g_dwMyIpAddr = 0;
char g_szHostName[17] = "";
char g_szUserName[SERVER_NAME_SIZE] = "";
char g_szGroupName[SERVER_NAME_SIZE] = "";
WORD g_wUdpPort = 0;
WORD g_wTcpPort = 0;
SHAREDDWORD g_dwServerAddr = 0;
char g_szServerAddr[16] = "";
LONG g_bCommActive = 0;
SHAREDWND g_hCommLogWnd = nullptr;
