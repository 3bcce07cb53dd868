// Keeps the icon in the notification area, and tells the user there what has happened.
#include "host/tray_upkeep.h"

#include "host/base/packet_log.h"
#include "host/base/text.h"
#include "host/host_monitors.h"
#include "host/host_window.h"

constexpr UINT TRAY_PERIOD = 2000;  // ms between two tries to show the icon
constexpr unsigned TRAY_TRIES = 60; // then TaskbarCreated is waited for

static const wchar_t s_szTitle[] = L"Trayhub";

// ---- The icon -------------------------------------------------------------------------------------------------------

static void TryIcon(HOSTAPP *app)
{
    app->trayTries++;
    app->hasTray = AddTrayIcon(app->hWnd, app->hInstance);
    if (app->hasTray) {
        KillTimer(app->hWnd, TIMER_TRAY);
        FlushNotices(&app->notices, app->hWnd);
    } else if (app->trayTries < TRAY_TRIES) {
        SetTimer(app->hWnd, TIMER_TRAY, TRAY_PERIOD, nullptr);
    } else {
        KillTimer(app->hWnd, TIMER_TRAY);
    }
}

void StartTray(HOSTAPP *app)
{
    app->wantsTray = !app->options.noTray;
    if (app->wantsTray)
        TryIcon(app);
}

void OnTrayTimer(HOSTAPP *app)
{
    if (!app->hasTray)
        TryIcon(app);
}

void OnTaskbarCreated(HOSTAPP *app)
{
    if (!app->wantsTray)
        return;
    LogEvent("there is a new notification area");
    app->trayTries = 0;
    TryIcon(app);
}

void StopTray(HOSTAPP *app)
{
    if (app->hasTray)
        RemoveTrayIcon(app->hWnd);
    app->wantsTray = app->hasTray = false;
}

// ---- What is told ---------------------------------------------------------------------------------------------------

static void Tell(HOSTAPP *app, const std::wstring &text, bool isWarning)
{
    if (!app->wantsTray)
        return;
    LogEvent("balloon: " + Narrow(text));
    TellUser(&app->notices, app->hWnd, app->hasTray, {s_szTitle, text, isWarning});
}

bool TellTrouble(HOSTAPP *app)
{
    const std::wstring trouble = MonitorTrouble(app);
    if (!IsNews(&app->notices, MATTER_TROUBLE, trouble))
        return false;
    Tell(app, trouble, true);
    return true;
}

// A balloon takes the place of the one before it, so trouble that the user does not know goes before.
void TellMonitors(HOSTAPP *app, bool byHand)
{
    const MONITORBACKEND &backend = app->monitors.backend;
    const int count = backend.count(backend.context);
    const std::wstring text =
        count ? std::to_wstring(count) + L" 台のモニタを検出しました。" : std::wstring(L"モニタが見つかりません。");
    const bool isNews = IsNews(&app->notices, MATTER_CHANGE, text);
    if (!TellTrouble(app) && (isNews || byHand))
        Tell(app, text, count == 0);
}

void TellFailure(HOSTAPP *app, const std::wstring &text)
{
    Tell(app, text, true);
}
