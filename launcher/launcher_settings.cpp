// Launcher values in the registry, and the book-keeping of locks over a run.
#include "launcher/launcher_settings.h"

#include "kernel/base/plugin_state.h"
#include "monitor/monitor_table.h"
#include "monitor/selection.h"
#include "monitor/vcp.h"
#include "settings/ini.h"

// ---- Values -------------------------------------------------------------------------------------------------------

DWORD ReadLauncherValue(SETTING setting, LONG nFirst, LONG nSecond)
{
    DWORD value = 0;
    TryReadSettingNumber(setting, &value, nFirst, nSecond);
    return value;
}

int WriteLauncherValue(SETTING setting, DWORD dwValue, LONG nFirst, LONG nSecond)
{
    return WriteSettingNumber(setting, dwValue, nFirst, nSecond);
}

bool ReadLauncherText(SETTING setting, char *lpszText, LONG nFirst, LONG nSecond)
{
    lpszText[0] = '\0';
    return ReadSettingString(setting, lpszText, SETTING_TEXT_SIZE, nFirst, nSecond);
}

void WriteLauncherText(SETTING setting, LPCSTR lpszText, LONG nFirst, LONG nSecond)
{
    // The whole buffer is stored, as it is for all texts.
    char text[SETTING_TEXT_SIZE] = "";
    lstrcpynA(text, lpszText, sizeof text);
    CutHalfCharacter(text);
    WriteSettingString(setting, text, sizeof text, nFirst, nSecond);
}

DWORD ReadButtonMode(LONG nMonitor, int nButton)
{
    return ReadLauncherValue(SETTING_BUTTON_MODE, nMonitor, nButton);
}

bool WriteButtonMode(LONG nMonitor, int nButton, DWORD dwMode)
{
    return WriteLauncherValue(SETTING_BUTTON_MODE, dwMode, nMonitor, nButton);
}

DWORD ReadPowerSwitch(LONG nMonitor)
{
    return ReadLauncherValue(SETTING_POWER_SWITCH, nMonitor);
}

bool WritePowerSwitch(LONG nMonitor, DWORD dwSwitch)
{
    return WriteLauncherValue(SETTING_POWER_SWITCH, dwSwitch, nMonitor);
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
    if (!TryReadSettingNumber(SETTING_END_FLAG, &endFlag))
        return;
    DWORD monitors;
    const bool counted = TryReadSettingNumber(SETTING_MAX_MONITOR, &monitors);
    if (endFlag == 1 || (counted && monitors != static_cast<DWORD>(g_nMonitor)))
        ResetLauncherSettings();
}

LONG InitLauncherSettings()
{
    WriteLauncherValue(SETTING_MAX_MONITOR, static_cast<DWORD>(g_nMonitor));
    WriteLauncherValue(SETTING_END_FLAG, 1);
    const DWORD initFlag = ReadLauncherValue(SETTING_INIT_FLAG);
    if (WasReadError()) // the user's button modes are not cleared because the registry fails for a moment
        return 1;
    if (initFlag != 0)
        return static_cast<LONG>(initFlag);
    WriteLauncherValue(SETTING_INIT_FLAG, 1);
    ClearLauncherEnables();
    return 1;
}

LONG RestoreButtonLockStatus()
{
    DWORD mask = 0;
    for (LONG monitor = 0; monitor < g_nMonitor && !g_bAbort; ++monitor) {
        if (!TryReadSettingNumber(SETTING_LOCK_STATUS, &mask, monitor))
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
    WriteLauncherValue(SETTING_END_FLAG, 0);
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
    WriteLauncherValue(SETTING_LAUNCHER_COUNT, 0);
}

void ClearLauncherEnables()
{
    for (LONG monitor = 0; monitor < g_nMonitor; ++monitor)
        for (int button = 1; button <= LAUNCHER_BUTTON_COUNT; ++button)
            if (!WriteButtonMode(monitor, button, BUTTON_NORMAL))
                break;
}

bool WriteLockStatus(LONG nMonitor, DWORD dwMask)
{
    return WriteLauncherValue(SETTING_LOCK_STATUS, dwMask, nMonitor);
}

bool KeepLockStatus(LONG nMonitor)
{
    DWORD stored;
    if (TryReadSettingNumber(SETTING_LOCK_STATUS, &stored, nMonitor) || WasReadError())
        return true;
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
    return ReadLauncherValue(SETTING_LAUNCHER_COUNT);
}

int StepLauncherCount(int bUp)
{
    const DWORD count = GetLauncherCount();
    if (WasReadError()) // a step from a count that is not known would lose it
        return 0;
    return WriteLauncherValue(SETTING_LAUNCHER_COUNT, bUp == 1 ? count + 1 : count - 1);
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
