// The two kinds of message boxes that pages show.
#include "panel/page_message.h"

#include "kernel/plugin.h"

static int ShowMessage(HWND page, UINT string, LPCSTR caption, UINT flags)
{
    char text[512] = "";
    LoadStringA(g_hInstance, string, text, sizeof text);
    return MessageBoxA(page, text, caption, flags);
}

void ShowPageError(HWND hPage, UINT uString, LPCSTR lpszCaption)
{
    ShowMessage(hPage, uString, lpszCaption, MB_OK | MB_ICONERROR);
}

bool AskPageQuestion(HWND hPage, UINT uString)
{
    return ShowMessage(hPage, uString, PRODUCT_TITLE, MB_YESNO | MB_ICONEXCLAMATION) == IDYES && IsWindow(hPage);
}
