// From a control of the colour page to the monitors.
#include "panel/color_page_changes.h"

#include "monitor/color_settings.h"
#include "monitor/selection.h"
#include "panel/color_page_images.h"
#include "panel/resources/controls.h"
#include "panel/resources/resource.h"

#include <commctrl.h>

constexpr DWORD MONITOR_SETTLES_MS = 200; // until the values that depend on a change can be read
constexpr UINT VALUE_END = 0xFFFF;

static void ChangeColor(LONG monitor, const COLORFEATURE &feature, WORD value)
{
    SetColorValue(&g_CurSetting[monitor], feature, value);
    SetSelectedOrAll(monitor, feature.bCode, value);
}

// ---- Sliders and edits --------------------------------------------------------------------------------------------

void OnColorSlider(HWND hPage, HWND hSlider)
{
    const COLORCONTROL *control = ColorControlOfSlider(hPage, hSlider);
    if (!control)
        return;
    const LONG monitor = g_nCurMonitor;
    const COLORSETTING *setting = &g_CurSetting[monitor];
    const COLORFEATURE &feature = *FindColorFeature(setting, control->bCode);
    const WORD position = static_cast<WORD>(SendMessageA(hSlider, TBM_GETPOS, 0, 0));
    if (position == LOWORD(GetColorValue(setting, feature)))
        return;
    ChangeColor(monitor, feature, position);
    SetDlgItemInt(hPage, control->nEdit, position, FALSE);
}

static void OnEditLeft(HWND hPage, const COLORCONTROL *control)
{
    const LONG monitor = g_nCurMonitor;
    const UINT typed = GetDlgItemInt(hPage, control->nEdit, nullptr, FALSE);
    // The slider takes signed numbers: a very large one would send it to its beginning.
    SendDlgItemMessageA(hPage, control->nSlider, TBM_SETPOS, TRUE,
                        static_cast<LPARAM>(typed < VALUE_END ? typed : VALUE_END));
    ChangeColor(monitor, *FindColorFeature(&g_CurSetting[monitor], control->bCode), static_cast<WORD>(typed));
}

void OnColorEdit(HWND hPage, const COLORCONTROL *lpControl, WORD wNotification)
{
    if (wNotification == EN_KILLFOCUS)
        OnEditLeft(hPage, lpControl);
    if (wNotification == EN_CHANGE && bUiReady)
        ResetProfileChoice(hPage);
}

// ---- ECO mode and colour temperature ------------------------------------------------------------------------------

void OnEcoButton(HWND hPage)
{
    if (!SetEcoButtonImage(hPage))
        return;
    const LONG monitor = g_nCurMonitor;
    COLORSETTING *setting = &g_CurSetting[monitor];
    setting->dwEco = setting->dwEco == 0 ? 1 : 0;
    SetSelectedOrAll(monitor, VCP_ECO_MODE, static_cast<LONG>(setting->dwEco));
    Sleep(MONITOR_SETTLES_MS);
    const COLORFEATURE &brightness = *FindColorFeature(setting, VCP_BRIGHTNESS);
    ReadColorFeature(monitor, brightness);
    SetBrightnessItem(hPage, setting->dwEco != 0, LOWORD(GetColorValue(setting, brightness)));
    if (bUiReady)
        ResetProfileChoice(hPage);
}

void OnColorTemp(HWND hPage)
{
    const int position = SelectedComboEntry(hPage, IDC_COLOR_TEMP);
    if (position < 0 || position >= COLOR_TEMP_COUNT)
        return;
    const LONG monitor = g_nCurMonitor;
    const LONG preset = g_nColorTempMap[monitor][position];
    COLORSETTING *setting = &g_CurSetting[monitor];
    if (preset == setting->wColorTemp)
        return;
    setting->wColorTemp = static_cast<SHORT>(preset);
    SetSelectedOrAll(monitor, VCP_COLOR_PRESET, preset);
    Sleep(MONITOR_SETTLES_MS);
    for (const COLORFEATURE &feature : COLOR_FEATURES)
        if (feature.counts == COLOR_USER_PRESET)
            ReadColorFeature(monitor, feature);
    ShowRgbControls(hPage, preset >= COLOR_PRESET_FIRST_USER);
    ResetProfileChoice(hPage);
}
