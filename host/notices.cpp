// What the host tells the user at the tray icon: each matter once, until it changes.
#include "host/notices.h"

bool IsNews(NOTICES *notices, NOTICEMATTER matter, const std::wstring &text)
{
    const bool isNews = !text.empty() && text != notices->told[matter];
    notices->told[matter] = text;
    return isNews;
}

void TellUser(NOTICES *notices, HWND hWnd, bool hasIcon, const BALLOON &balloon)
{
    notices->hasWaiting = !hasIcon;
    if (hasIcon)
        ShowBalloon(hWnd, balloon);
    else
        notices->waiting = balloon;
}

void FlushNotices(NOTICES *notices, HWND hWnd)
{
    if (notices->hasWaiting)
        ShowBalloon(hWnd, notices->waiting);
    notices->hasWaiting = false;
}
