// Creation sequence, timers and shutdown sequence of the kernel window.
#include "kernel/kernel_window.h"

#include "kernel/base/platform.h"
#include "kernel/base/plugin_state.h"
#include "kernel/base/texts.h"
#include "kernel/display_cpl.h"
#include "kernel/link/host_protocol.h"
#include "kernel/link/host_request.h"
#include "kernel/panel_opening.h"
#include "launcher/button_poll.h"
#include "launcher/launcher_settings.h"
#include "monitor/edid_check.h"
#include "monitor/enumeration.h"
#include "monitor/monitor_table.h"
#include "panel/profile_lists.h"
#include "panel/resources/strings.h"
#include "profiles/foreground.h"
#include "profiles/profile_store.h"
#include "server/identity_setup.h"
#include "server/server_link.h"
#include "settings/setting_table.h"
#include "timer/reservation_store.h"
#include "timer/reserve_prompt.h"
#include "timer/scheduler.h"

#include <commctrl.h>

LONG g_nRetry = 0;
static bool g_bFirstPass = false; // the first-pass step is still to come

constexpr UINT START_UP_DELAY_MS = 1000;
constexpr UINT FOREGROUND_PERIOD_MS = 2000;
constexpr UINT RESERVATION_PERIOD_MS = 1000;
constexpr UINT CLOSE_OLDER_TIMEOUT_MS = 10000;

#define OLDER_VERSION_CLASS "LumVanClass" // main window of an older version of the program

// ---- Creation -----------------------------------------------------------------------------------------------------

static LONG ReadRetryCount()
{
    const LONG retry = ReadSettingNumber(SETTING_RETRY);
    return retry == 0 ? RETRY_DEFAULT : retry;
}

static void InitCommonControlClasses()
{
    const INITCOMMONCONTROLSEX classes = {sizeof classes, ICC_DATE_CLASSES | ICC_INTERNET_CLASSES};
    InitCommonControlsEx(&classes);
}

// Arms a timer that the plug-in cannot do without. On failure says so and destroys the window, but lets its creation go
// on: creation and shutdown both run to their ends, and nothing is left half made.
static void ArmNeededTimer(HWND hWnd, UINT_PTR id, UINT period, LPCSTR failure)
{
    if (SetTimer(hWnd, id, period, nullptr))
        return;
    ShowBox(nullptr, failure, PRODUCT_TITLE, MB_OK | MB_ICONSTOP);
    DestroyWindow(hWnd);
}

// The text is that of a missing monitor: to the user it comes to the same.
static void ReportMissingPsapi(HWND hWnd)
{
    ShowStringBox(nullptr, IDS_NO_MONITOR, PRODUCT_TITLE, MB_OK | MB_ICONSTOP);
    DestroyWindow(hWnd);
}

static LRESULT OnCreate(HWND hWnd)
{
    g_hPanelDlg = nullptr;
    g_bStarted = 0;
    g_nRetry = ReadRetryCount();
    SetTimer(hWnd, TIMER_START_UP, START_UP_DELAY_MS, nullptr);
    SetupIdentity();
    BuildCapIniPath();
    LoadProfiles(hWnd, "profile.ini");
    InitServerLink();
    InitForeground();
    InitCommonControlClasses();
    ArmNeededTimer(hWnd, TIMER_FOREGROUND, FOREGROUND_PERIOD_MS, "Fore Ground Window can't check");
    ArmNeededTimer(hWnd, TIMER_RESERVATION, RESERVATION_PERIOD_MS, "On Timer can't set");
    g_nReservation = 0;
    g_bFirstPass = true;
    if (!LoadPsapi()) {
        ReportMissingPsapi(hWnd);
        return -1;
    }
    ResetForegroundState();
    return 0;
}

// ---- Timers -------------------------------------------------------------------------------------------------------

static void StartButtonPoll(HWND hWnd)
{
    if (GetLauncherCount() == 0)
        return;
    ClearButtonRegisters();
    SetTimer(hWnd, TIMER_BUTTON_POLL, BUTTON_POLL_PERIOD_MS, nullptr);
}

// Finds the monitors and brings them and the settings together. False when there is no monitor: then nothing more is
// done now, and the plug-in stays as it is until it is stopped. False also once it is being stopped: a count that the
// stop has cut off is no other number of monitors, for which the user's launcher functions and locks would be reset.
static bool StartUp(HWND hWnd)
{
    KillTimer(hWnd, TIMER_START_UP);
    SendNotice(HOST_NOTICE_STARTING);
    const int found = InitMonitors();
    if (g_bAbort)
        return false;
    if (!found && g_nMonitor == 0) {
        g_bNoMonitor = 1;
        return false;
    }
    SendNotice(HOST_NOTICE_STARTED);
    g_bStarted = 1;
    ReadButtonLocks();
    CheckLauncherReset();
    InitLauncherSettings();
    RestoreButtonLockStatus();
    if (g_bAbort)
        return false;
    StartDirectLink();
    StartButtonPoll(hWnd);
    return true;
}

// The user is told first, so a stop that takes the word away leaves the older version alone. A window that does not
// answer does not hold us up.
static void CloseOlderVersion()
{
    const HWND hOlder = FindWindowA(OLDER_VERSION_CLASS, nullptr);
    if (!hOlder)
        return;
    ShowStringBox(nullptr, IDS_OLDER_VERSION, PRODUCT_TITLE, MB_OK | MB_ICONINFORMATION | MB_SETFOREGROUND);
    if (g_bAbort)
        return;
    DWORD_PTR result;
    SendMessageTimeoutA(hOlder, WM_CLOSE, 0, 0, SMTO_ABORTIFHUNG, CLOSE_OLDER_TIMEOUT_MS, &result);
}

// Once a window, at the end of its first timer message that gets there.
static void FirstPass(HWND hWnd)
{
    if (!g_bFirstPass)
        return;
    g_bFirstPass = false;
    CreateServerLinkWindow(hWnd);
    CloseOlderVersion();
}

// Ends come before starts, so that one reservation can follow another in the same minute. The prompt is looked at also
// when there is no reservation: the last one may have been deleted under it.
static void CheckReservations()
{
    CheckReservePrompt();
    if (g_nReservation == 0)
        return;
    CheckReservationEnd();
    CheckReservationStart();
}

static void OnTimer(HWND hWnd, WPARAM id)
{
    switch (id) {
    case TIMER_START_UP:
        if (!StartUp(hWnd))
            return;
        break;
    case TIMER_DISPLAY_CPL:
        SearchDisplayCpl(hWnd);
        break;
    case TIMER_FOREGROUND:
        if (g_bForeIdle && g_bDirectLink)
            ForegroundCheck(hWnd);
        break;
    case TIMER_RESERVATION:
        CheckReservations();
        break;
    case TIMER_BUTTON_POLL:
        PollMonitorButtons(hWnd);
        return;
    }
    FirstPass(hWnd);
}

// ---- Shutdown -----------------------------------------------------------------------------------------------------

static void KillPeriodicTimers(HWND hWnd)
{
    KillTimer(hWnd, TIMER_RESERVATION);
    // With a larger count the poll ends with the window.
    if (GetLauncherCount() <= 1)
        KillTimer(hWnd, TIMER_BUTTON_POLL);
}

static void OnDestroy(HWND hWnd)
{
    CancelDeferredPanels();
    if (g_hPanelDlg)
        DestroyWindow(g_hPanelDlg);
    CloseReservePrompt();
    NotifyDirectLink(0);
    ReleaseButtonLocks();
    WriteEndFlag();
    KillPeriodicTimers(hWnd);
    UnloadPsapi();
    CheckEdidAtStop();
    EndServerListeners();
    g_hPanelDlg = nullptr;
    g_hKernelWnd = nullptr;
}

static void OnClose(HWND hWnd)
{
    KillTimer(hWnd, TIMER_FOREGROUND);
    DestroyWindow(hWnd);
}

// ---- Window procedure ---------------------------------------------------------------------------------------------

LRESULT CALLBACK KernelWndProc(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_CREATE:
        return OnCreate(hWnd);
    case WM_DESTROY:
        OnDestroy(hWnd);
        return 0;
    case WM_CLOSE:
        OnClose(hWnd);
        return 1;
    case WM_COMMAND:
        if (LOWORD(wParam) == COMMAND_DISPLAY_CPL)
            OpenDisplayCpl(hWnd);
        return 1;
    case WM_TIMER:
        OnTimer(hWnd, wParam);
        return 1;
    case WM_KERNEL_OPEN_PANEL:
        return OpenOrDeferPanel(hWnd);
    case WM_KERNEL_PANEL_DEFERRED:
        return EndPanelDeferral(hWnd, lParam);
    }
    return DefWindowProcA(hWnd, message, wParam, lParam);
}
