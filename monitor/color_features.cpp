// The colour settings of all monitors, and the way to a value of them by its row of the table.
#include "monitor/color_features.h"

#include <cstring>

COLORSETTING g_CurSetting[MAX_MONITOR];
LONG g_nMaxBrightEco[MAX_MONITOR];
LONG g_nMaxBright[MAX_MONITOR];
LONG g_nMaxContrast[MAX_MONITOR];
LONG g_nMaxRed[MAX_MONITOR];
LONG g_nMaxGreen[MAX_MONITOR];
LONG g_nMaxBlue[MAX_MONITOR];

bool IsToBeWritten(const COLORFEATURE &feature, const COLORSETTING *lpSetting, size_t cbSetting)
{
    constexpr size_t PRESET_END = offsetof(COLORSETTING, wColorTemp) + sizeof COLORSETTING::wColorTemp;
    if (feature.cbOffset + feature.cbSize > cbSetting)
        return false; // where a value is there, so is the ECO mode, which the record begins with
    if (feature.counts == COLOR_USER_PRESET)
        return PRESET_END <= cbSetting && lpSetting->wColorTemp >= COLOR_PRESET_FIRST_USER;
    return IsOfEcoState(feature, lpSetting->dwEco);
}

LONG GetColorValue(const COLORSETTING *lpSetting, const COLORFEATURE &feature)
{
    const BYTE *field = reinterpret_cast<const BYTE *>(lpSetting) + feature.cbOffset;
    LONG value;
    if (feature.cbSize == sizeof value) {
        memcpy(&value, field, sizeof value);
        return value;
    }
    SHORT narrow;
    memcpy(&narrow, field, sizeof narrow);
    return narrow;
}

void SetColorValue(COLORSETTING *lpSetting, const COLORFEATURE &feature, LONG lValue)
{
    // Little-endian: a narrow field takes the low bytes.
    memcpy(reinterpret_cast<BYTE *>(lpSetting) + feature.cbOffset, &lValue, feature.cbSize);
}

const COLORFEATURE *FindColorFeature(const COLORSETTING *lpSetting, BYTE bCode)
{
    for (const COLORFEATURE &feature : COLOR_FEATURES)
        if (feature.bCode == bCode && IsOfEcoState(feature, lpSetting->dwEco))
            return &feature;
    return nullptr;
}
