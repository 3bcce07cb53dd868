// The two kinds of message boxes that pages show.
#include "panel/page_message.h"

#include "kernel/base/texts.h"

void ShowPageError(HWND hPage, UINT uString, LPCSTR lpszCaption)
{
    ShowStringBox(hPage, uString, lpszCaption, MB_OK | MB_ICONERROR);
}

bool AskPageQuestion(HWND hPage, UINT uString)
{
    return ShowStringBox(hPage, uString, PRODUCT_TITLE, MB_YESNO | MB_ICONEXCLAMATION) == IDYES && IsWindow(hPage);
}
