// Launcher values in the registry, and the book-keeping of locks over a run.
#include "launcher/launcher_settings.h"

#include "kernel/base/plugin_state.h"
#include "monitor/monitor_table.h"
#include "monitor/selection.h"
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

int ReadLauncherText(LPCSTR lpszName, char *lpszText)
{
    lpszText[0] = '\0';
    return ReadSettingText(SUBKEY_LAUNCHER, lpszName, lpszText, SETTING_TEXT_SIZE);
}

void WriteLauncherText(LPCSTR lpszName, LPCSTR lpszText)
{
    // The whole buffer is stored, as it is for all texts.
    char text[SETTING_TEXT_SIZE] = "";
    lstrcpynA(text, lpszText, sizeof text);
    CutHalfCharacter(text);
    WriteSettingText(SUBKEY_LAUNCHER, lpszName, text, sizeof text);
}

void DeleteLauncherText(LPCSTR lpszName)
{
    const REGENTRY entry = {SUBKEY_LAUNCHER, lpszName, 0, nullptr, 0};
    DeleteSetting(&entry);
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

DWORD ReadButtonMode(LONG nMonitor, int nButton)
{
    char name[64];
    wsprintfA(name, VALUE_BUTTON_MODE, nMonitor, nButton);
    return ReadLauncherValue(name);
}

int WriteButtonMode(LONG nMonitor, int nButton, DWORD dwMode)
{
    char name[64];
    wsprintfA(name, VALUE_BUTTON_MODE, nMonitor, nButton);
    return WriteLauncherValue(name, dwMode);
}

DWORD ReadPowerSwitch(LONG nMonitor)
{
    DWORD value = 0;
    TryReadMonitorValue(VALUE_POWER_SWITCH, nMonitor, &value);
    return value;
}

int WritePowerSwitch(LONG nMonitor, DWORD dwSwitch)
{
    return WriteMonitorValue(VALUE_POWER_SWITCH, nMonitor, dwSwitch);
}

void SetLockBit(LONG nMonitor, BYTE bBit)
{
    SetVCP(nMonitor, VCP_BUTTON_LOCK, static_cast<WORD>(GetVCP(nMonitor, VCP_BUTTON_LOCK, nullptr) | bBit));
}

void ToggleLockBit(LONG nMonitor, BYTE bBit)
{
    SetVCP(nMonitor, VCP_BUTTON_LOCK, static_cast<WORD>(GetVCP(nMonitor, VCP_BUTTON_LOCK, nullptr) ^ bBit));
}

// ---- Start and end of a run ---------------------------------------------------------------------------------------

int ReadButtonLocks()
{
    for (LONG monitor = 0; monitor < g_nMonitor && !g_bAbort; ++monitor)
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
    if (WasReadError()) // the user's button modes are not cleared because the registry fails for a moment
        return 1;
    if (initFlag != 0)
        return static_cast<LONG>(initFlag);
    WriteLauncherValue("InitFlag", 1);
    ClearLauncherEnables();
    return 1;
}

LONG RestoreButtonLockStatus()
{
    DWORD mask = 0;
    for (LONG monitor = 0; monitor < g_nMonitor && !g_bAbort; ++monitor) {
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
        if (!g_bAbort)
            SetVCP(monitor, VCP_BUTTON_LOCK, 0);
        WriteLockStatus(monitor, 0);
    }
    for (LONG monitor = 0; monitor < g_nMonitor; ++monitor) {
        for (int button = 1; button <= LAUNCHER_BUTTON_COUNT; ++button)
            WriteButtonMode(monitor, button, BUTTON_NORMAL);
        WritePowerSwitch(monitor, 0);
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

int WriteLockStatus(LONG nMonitor, DWORD dwMask)
{
    return WriteMonitorValue(VALUE_LOCK_STATUS, nMonitor, dwMask);
}

int KeepLockStatus(LONG nMonitor)
{
    DWORD stored;
    if (TryReadMonitorValue(VALUE_LOCK_STATUS, nMonitor, &stored) || WasReadError())
        return 1;
    return WriteLockStatus(nMonitor, 0); // without one the masks of the monitors behind would not be restored either
}

void SaveButtonLockStatus()
{
    for (LONG monitor = 0; monitor < g_nMonitor; ++monitor) {
        const LONG mask = GetVCP(monitor, VCP_BUTTON_LOCK, nullptr);
        if (!(mask == -1 ? KeepLockStatus(monitor) : WriteLockStatus(monitor, static_cast<DWORD>(mask))))
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
    if (WasReadError()) // a step from a count that is not known would lose it
        return 0;
    return WriteLauncherValue("dwLTimer", bUp == 1 ? count + 1 : count - 1);
}

void UpdateLauncherPoll(int bUp)
{
    if (!StepLauncherCount(bUp))
        return;
    const DWORD count = GetLauncherCount();
    if (WasReadError()) // taken for 0, it would end the poll for the functions that are on
        return;
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
    // All of it: a label that is cut within a character may come without its zero behind the last whole one.
    ZeroMemory(lpBuffer, cbBuffer);
    if (!IsMonitorIndex(g_nCurMonitor))
        return 0;
    GetPrivateProfileStringA(g_Monitor[g_nCurMonitor].szModel, key, "", lpBuffer, cbBuffer, path);
    CutHalfCharacter(lpBuffer);
    return lpBuffer[0] != '\0';
}
