// Colour settings between a monitor and a record.
#include "monitor/color_settings.h"

#include "kernel/base/plugin_state.h"
#include "monitor/vcp.h"

#include <cstddef>

// A value of 16 bits with the maximum that is kept beside it.
struct COLORVALUE {
    BYTE bCode;
    WORD *lpValue;
    LONG *lpMaximum;
};

static void ReadValue(LONG nMonitor, const COLORVALUE &value)
{
    *value.lpValue = static_cast<WORD>(GetVCP(nMonitor, value.bCode, value.lpMaximum));
}

void ReadCurrentSettings(LONG nMonitor)
{
    if (!IsMonitorIndex(nMonitor) || g_bAbort)
        return;
    COLORSETTING *setting = &g_CurSetting[nMonitor];

    // A failed read is -1 and counts as on.
    setting->dwEco = static_cast<DWORD>(GetVCP(nMonitor, VCP_ECO_MODE, nullptr));
    if (setting->dwEco != 0)
        ReadValue(nMonitor, {VCP_BRIGHTNESS, &setting->wBrightEco, &g_nMaxBrightEco[nMonitor]});
    else
        ReadValue(nMonitor, {VCP_BRIGHTNESS, &setting->wBright, &g_nMaxBright[nMonitor]});

    if (g_bAbort)
        return;
    ReadValue(nMonitor, {VCP_CONTRAST, &setting->wContrast, &g_nMaxContrast[nMonitor]});
    if (g_bAbort)
        return;
    setting->wColorTemp = static_cast<SHORT>(GetVCP(nMonitor, VCP_COLOR_PRESET, nullptr));

    const COLORVALUE gains[] = {
        {VCP_RED_GAIN, &setting->wRed, &g_nMaxRed[nMonitor]},
        {VCP_GREEN_GAIN, &setting->wGreen, &g_nMaxGreen[nMonitor]},
        {VCP_BLUE_GAIN, &setting->wBlue, &g_nMaxBlue[nMonitor]},
    };
    for (const COLORVALUE &gain : gains) {
        if (g_bAbort)
            return;
        ReadValue(nMonitor, gain);
    }
}

void ApplyColorFields(LONG nMonitor, const COLORSETTING *lpSetting, size_t cbSetting)
{
#define IS_THERE(FIELD) (offsetof(COLORSETTING, FIELD) + sizeof lpSetting->FIELD <= cbSetting)
    // The record begins with the ECO mode; the gains stand in front of the preset, which decides over them.
    if (nMonitor == -1 || !IS_THERE(dwEco))
        return;
    const bool eco = lpSetting->dwEco != 0;
    SetVCP(nMonitor, VCP_ECO_MODE, static_cast<WORD>(lpSetting->dwEco));
    if (eco ? IS_THERE(wBrightEco) : IS_THERE(wBright))
        SetVCP(nMonitor, VCP_BRIGHTNESS, eco ? lpSetting->wBrightEco : lpSetting->wBright);
    if (IS_THERE(wContrast))
        SetVCP(nMonitor, VCP_CONTRAST, lpSetting->wContrast);
    if (!IS_THERE(wColorTemp))
        return;
    SetVCP(nMonitor, VCP_COLOR_PRESET, static_cast<WORD>(lpSetting->wColorTemp));
    if (lpSetting->wColorTemp < COLOR_PRESET_FIRST_USER)
        return;
    SetVCP(nMonitor, VCP_RED_GAIN, lpSetting->wRed);
    SetVCP(nMonitor, VCP_GREEN_GAIN, lpSetting->wGreen);
    SetVCP(nMonitor, VCP_BLUE_GAIN, lpSetting->wBlue);
#undef IS_THERE
}

void ApplyColorSettings(LONG nMonitor, const COLORSETTING *lpSetting)
{
    ApplyColorFields(nMonitor, lpSetting, sizeof *lpSetting);
}
