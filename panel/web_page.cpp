// Opening of web pages.
#include "panel/web_page.h"

#include <shellapi.h>

void OpenWebPage(HWND hOwner, LPCSTR lpszAddress)
{
    ShellExecuteA(hOwner, "open", lpszAddress, "", "", SW_SHOW);
}
