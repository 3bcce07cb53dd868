// Colour settings between a monitor and a record.
#include "monitor/color_settings.h"

#include "kernel/base/plugin_state.h"
#include "monitor/vcp.h"

void ReadColorFeature(LONG nMonitor, const COLORFEATURE &feature)
{
    LONG *maximum = feature.lpMaxima ? &feature.lpMaxima[nMonitor] : nullptr;
    SetColorValue(&g_CurSetting[nMonitor], feature, GetVCP(nMonitor, feature.bCode, maximum));
}

void ReadCurrentSettings(LONG nMonitor)
{
    if (!IsMonitorIndex(nMonitor))
        return;
    const COLORSETTING *setting = &g_CurSetting[nMonitor];
    for (const COLORFEATURE &feature : COLOR_FEATURES) {
        if (!IsOfEcoState(feature, setting->dwEco)) // a failed read of the ECO mode is -1 and counts as on
            continue;
        // An ECO mode is not left without its brightness: the one that is kept may be older.
        if (g_bAbort && !HasEcoState(feature))
            return;
        ReadColorFeature(nMonitor, feature);
    }
}

void ApplyColorFields(LONG nMonitor, const COLORSETTING *lpSetting, size_t cbSetting)
{
    for (const COLORFEATURE &feature : COLOR_FEATURES)
        if (IsToBeWritten(feature, lpSetting, cbSetting))
            SetVCP(nMonitor, feature.bCode, LOWORD(GetColorValue(lpSetting, feature)));
}

void ApplyColorSettings(LONG nMonitor, const COLORSETTING *lpSetting)
{
    ApplyColorFields(nMonitor, lpSetting, sizeof *lpSetting);
}
