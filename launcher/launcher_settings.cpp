// Launcher values in the registry, and the book-keeping of locks over a run.
#include "launcher/launcher_settings.h"

#include "kernel/kernel_thread.h"
#include "monitor/monitor_table.h"
#include "monitor/vcp.h"
#include "settings/ini.h"
#include "settings/registry.h"

BYTE ButtonBit(int nButton)
{
    static const BYTE bits[LAUNCHER_BUTTON_COUNT] = {1, 2, 4, 8, 16, 128};
    return nButton >= 1 && nButton <= LAUNCHER_BUTTON_COUNT ? bits[nButton - 1] : 0;
}

// ---- Values -------------------------------------------------------------------------------------------------------

// False when the value cannot be read.
static bool TryReadValue(LPCSTR name, DWORD *value)
{
    DWORD stored = 0;
    REGENTRY entry = {SUBKEY_LAUNCHER, name, REG_DWORD, &stored, sizeof stored};
    if (!ReadSetting(&entry) || entry.cbData != sizeof stored)
        return false;
    *value = stored;
    return true;
}

DWORD ReadLauncherValue(LPCSTR lpszName)
{
    DWORD value = 0;
    TryReadValue(lpszName, &value);
    return value;
}

int WriteLauncherValue(LPCSTR lpszName, DWORD dwValue)
{
    return WriteSettingDword(SUBKEY_LAUNCHER, REG_DWORD, lpszName, dwValue);
}

static bool TryReadMonitorValue(LPCSTR format, LONG monitor, DWORD *value)
{
    char name[64];
    wsprintfA(name, format, monitor);
    return TryReadValue(name, value);
}

static int WriteMonitorValue(LPCSTR format, LONG monitor, DWORD value)
{
    char name[64];
    wsprintfA(name, format, monitor);
    return WriteLauncherValue(name, value);
}

static int WriteButtonMode(LONG monitor, int button, DWORD mode)
{
    char name[64];
    wsprintfA(name, VALUE_BUTTON_MODE, monitor, button);
    return WriteLauncherValue(name, mode);
}

// ---- Start and end of a run ---------------------------------------------------------------------------------------

int ReadButtonLocks()
{
    for (LONG monitor = 0; monitor < g_nMonitor; ++monitor)
        GetVCP(monitor, VCP_BUTTON_LOCK, nullptr);
    return 1;
}

void CheckLauncherReset()
{
    DWORD endFlag;
    if (!TryReadValue("EndFlag", &endFlag))
        return;
    DWORD monitors;
    const bool counted = TryReadValue("MaxMonitor", &monitors);
    if (endFlag == 1 || (counted && monitors != static_cast<DWORD>(g_nMonitor)))
        ResetLauncherSettings();
}

LONG InitLauncherSettings()
{
    WriteLauncherValue("MaxMonitor", static_cast<DWORD>(g_nMonitor));
    WriteLauncherValue("EndFlag", 1);
    const DWORD initFlag = ReadLauncherValue("InitFlag");
    if (initFlag != 0)
        return static_cast<LONG>(initFlag);
    WriteLauncherValue("InitFlag", 1);
    ClearLauncherEnables();
    return 1;
}

LONG RestoreButtonLockStatus()
{
    DWORD mask = 0;
    for (LONG monitor = 0; monitor < g_nMonitor; ++monitor) {
        if (!TryReadMonitorValue(VALUE_LOCK_STATUS, monitor, &mask))
            break;
        SetVCP(monitor, VCP_BUTTON_LOCK, static_cast<WORD>(mask));
    }
    return static_cast<LONG>(mask);
}

void ReleaseButtonLocks()
{
    for (LONG monitor = 0; monitor < g_nMonitor; ++monitor)
        if (g_Monitor[monitor].bVcpCode[VCP_BUTTON_LOCK])
            SetVCP(monitor, VCP_BUTTON_LOCK, 0);
}

void WriteEndFlag()
{
    WriteLauncherValue("EndFlag", 0);
}

void ResetLauncherSettings()
{
    for (LONG monitor = 0; monitor < g_nMonitor; ++monitor) {
        SetVCP(monitor, VCP_BUTTON_LOCK, 0);
        WriteMonitorValue(VALUE_LOCK_STATUS, monitor, 0);
    }
    for (LONG monitor = 0; monitor < g_nMonitor; ++monitor) {
        for (int button = 1; button <= LAUNCHER_BUTTON_COUNT; ++button)
            WriteButtonMode(monitor, button, BUTTON_NORMAL);
        WriteMonitorValue(VALUE_POWER_SWITCH, monitor, 0);
    }
    WriteLauncherValue("dwLTimer", 0);
}

void ClearLauncherEnables()
{
    for (LONG monitor = 0; monitor < g_nMonitor; ++monitor)
        for (int button = 1; button <= LAUNCHER_BUTTON_COUNT; ++button)
            if (!WriteButtonMode(monitor, button, BUTTON_NORMAL))
                break;
}

void SaveButtonLockStatus()
{
    for (LONG monitor = 0; monitor < g_nMonitor; ++monitor) {
        const LONG mask = GetVCP(monitor, VCP_BUTTON_LOCK, nullptr);
        if (!WriteMonitorValue(VALUE_LOCK_STATUS, monitor, static_cast<DWORD>(mask)))
            return;
    }
}

// ---- Active count -------------------------------------------------------------------------------------------------

DWORD GetLauncherCount()
{
    return ReadLauncherValue("dwLTimer");
}

int StepLauncherCount(int bUp)
{
    const DWORD count = GetLauncherCount();
    return WriteLauncherValue("dwLTimer", bUp == 1 ? count + 1 : count - 1);
}

void UpdateLauncherPoll(int bUp)
{
    StepLauncherCount(bUp);
    const DWORD count = GetLauncherCount();
    if (count == 1)
        SetTimer(g_hKernelWnd, TIMER_BUTTON_POLL, BUTTON_POLL_PERIOD_MS, nullptr);
    else if (count == 0)
        KillTimer(g_hKernelWnd, TIMER_BUTTON_POLL);
}

// ---- Labels -------------------------------------------------------------------------------------------------------

int ReadButtonLabel(HWND, int nButton, char *lpBuffer, DWORD cbBuffer)
{
    char path[MAX_PATH];
    char key[16];
    BuildIniPath(path, "Launcher.ini");
    wsprintfA(key, "button%d", nButton);
    lpBuffer[0] = '\0';
    if (!IsMonitorIndex(g_nCurMonitor))
        return 0;
    return GetPrivateProfileStringA(g_Monitor[g_nCurMonitor].szModel, key, "", lpBuffer, cbBuffer, path) != 0;
}
