// The network page: the link to the management server, its ports, the names of this PC, and the communication log.
#pragma once

#include <windows.h>

extern HWND g_hNetworkPage; // null while it does not exist. Kernel thread.
