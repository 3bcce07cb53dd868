// Which program is in front, and whose colours the monitors get for it; DirectLink at start and stop.
#include "profiles/foreground.h"

#include "kernel/base/texts.h"
#include "monitor/color_settings.h"
#include "monitor/selection.h"
#include "monitor/vcp.h"
#include "panel/resources/strings.h"
#include "profiles/app_path.h"
#include "profiles/profile_store.h"
#include "settings/setting_table.h"

SHAREDFLAG g_bDirectLink = 0;
SHAREDFLAG g_bForeIdle = 1;
static int nLastApp = -1;        // slot of the registered program found in front last
static bool bAppHandled = false; // the program now in front has been asked about, and its profile applied or not

// ---- State --------------------------------------------------------------------------------------------------------

void InitForeground()
{
    g_bForeIdle = 1;
    g_bAllMonitors = 0;
}

void ResetForegroundState()
{
    bAppHandled = false;
    nLastApp = -1;
}

void StartDirectLink()
{
    if (ReadSettingNumber(SETTING_DIRECT_LINK) != 1)
        return;
    // Once more, in case the file was edited since the store was loaded a second ago.
    SetProfileData(PROFILE_APP_LOAD, 0, nullptr, nullptr);
    g_bDirectLink = 1;
    NotifyDirectLink(1);
}

void NotifyDirectLink(LONG bOn)
{
    SetDirectLink(g_bAllMonitors ? -1 : g_nCurMonitor.load(), bOn);
}

// ---- Colours ------------------------------------------------------------------------------------------------------

void ApplyProfileToMonitor(int nSlot, LONG nMonitor)
{
    if (nSlot < 0 || nSlot >= APP_PROFILE_COUNT)
        return;
    COLORSETTING setting = {};
    SettingFromProfile(&setting, &g_AppProfile[nSlot]);
    ApplyColorSettings(nMonitor, &setting);
}

// Whether a monitor shows a picture that is left alone.
static bool ShowsVideo(LONG monitor)
{
    const LONG input = GetVCP(monitor, VCP_INPUT_SOURCE, nullptr);
    return input == INPUT_VIDEO || input == INPUT_S_VIDEO || input == INPUT_TV;
}

// The input looked at is that of the monitor with the slot's number, whichever monitor is written, and it is read anew
// for each. A failed read, as of a monitor that is not there, lets the profile through: with the input of the monitor
// that is written, profiles that users see applied to a video picture today would not come any more.
void ApplyAppProfile(int nSlot)
{
    const LONG first = g_bAllMonitors ? 0 : g_nCurMonitor.load();
    const LONG end = g_bAllMonitors ? g_nMonitor.load() : first + 1;
    for (LONG monitor = first; monitor < end; ++monitor)
        if (!ShowsVideo(nSlot))
            ApplyProfileToMonitor(nSlot, monitor);
}

void RestoreMonitorColor(LONG nMonitor)
{
    if (!IsMonitorIndex(nMonitor))
        return;
    ApplyColorSettings(nMonitor, &g_DefSetting[nMonitor]);
    g_CurSetting[nMonitor] = g_DefSetting[nMonitor];
}

void RestoreDefaultColor()
{
    if (!g_bAllMonitors) {
        RestoreMonitorColor(g_nCurMonitor);
        return;
    }
    for (LONG monitor = 0; monitor < g_nMonitor; ++monitor)
        RestoreMonitorColor(monitor);
}

// ---- The program in front -----------------------------------------------------------------------------------------

int FindForegroundApp()
{
    HWND hWnd = GetForegroundWindow();
    if (!hWnd)
        return -1;
    if (const HWND hOwner = GetWindow(hWnd, GW_OWNER))
        hWnd = hOwner;
    char path[MAX_PATH];
    return GetWindowExePath(hWnd, path, sizeof path) ? FindAppProfile(path) : -1;
}

int AskColorChange(HWND)
{
    DWORD noAsk = 0;
    REGENTRY entry = SettingEntry(SETTING_NO_ASK, &noAsk, sizeof noAsk); // also one of fewer bytes
    if (ReadSetting(&entry) && noAsk != 0)
        return 1;
    return ShowStringBox(nullptr, IDS_ASK_COLOR_CHANGE, PRODUCT_TITLE, MB_YESNO | MB_TASKMODAL | MB_SETFOREGROUND) ==
           IDYES;
}

// Asks once each time a registered program comes to the front: also when it is the one of last time, and only windows
// of no registered program were in front between.
static void OnAppInFront(HWND hKernelWnd, int app)
{
    if (app != nLastApp) {
        nLastApp = app;
        bAppHandled = false;
    }
    if (!bAppHandled && AskColorChange(hKernelWnd))
        ApplyAppProfile(app);
    bAppHandled = true;
}

void ForegroundCheck(HWND hKernelWnd)
{
    if (!g_bForeIdle || !g_bDirectLink)
        return;
    g_bForeIdle = 0; // the question's own message loop goes on delivering ticks
    const int app = FindForegroundApp();
    if (app != -1) {
        OnAppInFront(hKernelWnd, app);
    } else {
        bAppHandled = false;
        RestoreDefaultColor(); // on every tick: a write that failed, or a change from elsewhere, lasts until the next
    }
    g_bForeIdle = 1;
}
