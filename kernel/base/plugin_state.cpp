// Module, host, run and windows of the plug-in.
#include "kernel/base/plugin_state.h"

HINSTANCE g_hInstance = nullptr;
SHAREDWND g_hHostWnd = nullptr;
SHAREDFLAG g_bAbort = 0;
SHAREDFLAG g_bStarted = 0;
SHAREDFLAG g_bNoMonitor = 0;
SHAREDFLAG g_bNotJapanese = 1;
SHAREDWND g_hKernelWnd = nullptr;
HWND g_hPanelDlg = nullptr;
