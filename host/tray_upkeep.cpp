// Keeps the icon in the notification area, and tells the user there what has happened.
#include "host/tray_upkeep.h"

#include "host/base/packet_log.h"
#include "host/base/text.h"

constexpr UINT TRAY_PERIOD = 2000;  // ms between two tries to show the icon
constexpr unsigned TRAY_TRIES = 60; // then TaskbarCreated is waited for

static const wchar_t s_szTitle[] = L"Trayhub";

// ---- The icon -------------------------------------------------------------------------------------------------------

static void TryIcon(TRAY *tray)
{
    tray->tries++;
    tray->isThere = AddTrayIcon(tray->hWnd, tray->hInstance);
    if (tray->isThere) {
        KillTimer(tray->hWnd, TIMER_TRAY);
        FlushNotices(&tray->notices, tray->hWnd);
    } else if (tray->tries < TRAY_TRIES) {
        SetTimer(tray->hWnd, TIMER_TRAY, TRAY_PERIOD, nullptr);
    } else {
        KillTimer(tray->hWnd, TIMER_TRAY);
    }
}

void StartTray(TRAY *tray, HWND hWnd, HINSTANCE hInstance)
{
    tray->hWnd = hWnd;
    tray->hInstance = hInstance;
    tray->isWanted = true;
    TryIcon(tray);
}

void OnTrayTimer(TRAY *tray)
{
    if (!tray->isThere)
        TryIcon(tray);
}

void OnTaskbarCreated(TRAY *tray)
{
    if (!tray->isWanted)
        return;
    LogEvent("there is a new notification area");
    tray->tries = 0;
    TryIcon(tray);
}

void StopTray(TRAY *tray)
{
    if (tray->isThere)
        RemoveTrayIcon(tray->hWnd);
    tray->isWanted = tray->isThere = false;
}

// ---- What is told ---------------------------------------------------------------------------------------------------

static void Tell(TRAY *tray, const std::wstring &text, bool isWarning)
{
    if (!tray->isWanted)
        return;
    LogEvent("balloon: " + Narrow(text));
    TellUser(&tray->notices, tray->hWnd, tray->isThere, {s_szTitle, text, isWarning});
}

bool TellTrouble(TRAY *tray, const std::wstring &trouble)
{
    if (!IsNews(&tray->notices, MATTER_TROUBLE, trouble))
        return false;
    Tell(tray, trouble, true);
    return true;
}

// A balloon takes the place of the one before it, so trouble that the user does not know goes before.
void TellMonitors(TRAY *tray, int count, const std::wstring &trouble, bool byHand)
{
    const std::wstring text =
        count ? std::to_wstring(count) + L" 台のモニタを検出しました。" : std::wstring(L"モニタが見つかりません。");
    const bool isNews = IsNews(&tray->notices, MATTER_CHANGE, text);
    if (!TellTrouble(tray, trouble) && (isNews || byHand))
        Tell(tray, text, count == 0);
}

void TellFailure(TRAY *tray, const std::wstring &text)
{
    Tell(tray, text, true);
}
