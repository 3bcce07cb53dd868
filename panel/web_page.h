// The maker's pages on the web.
#pragma once

#include <windows.h>

#define WEB_PAGE_SUPPORT "http://www.norvale.example/support/"
#define WEB_PAGE_MONITOR_LIST "http://www.norvale.example/support/lumivane/monitors.html"
#define WEB_PAGE_DOWNLOAD "http://www.norvale.example/support/lumivane/download.html"

// Opens a page in the user's browser; whether there is one is not looked at.
void OpenWebPage(HWND hOwner, LPCSTR lpszAddress);
