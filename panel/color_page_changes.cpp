// From a control of the colour page to the monitors.
#include "panel/color_page_changes.h"

#include "kernel/host_monitor_command.h"
#include "monitor/vcp.h"
#include "panel/color_page_images.h"
#include "panel/resources/resource.h"

#include <commctrl.h>

#include <initializer_list>

constexpr DWORD MONITOR_SETTLES_MS = 200; // until the values that depend on a change can be read
constexpr UINT VALUE_END = 0xFFFF;

void ReadColorItem(COLORITEM item)
{
    LONG *maximum = ColorItemMaximum(item);
    *ColorItemValue(item) = static_cast<WORD>(GetVCP(g_nCurMonitor, ColorItemCode(item), maximum));
}

static void ChangeColorItem(COLORITEM item, WORD value)
{
    *ColorItemValue(item) = value;
    SetSelectedOrAll(ColorItemCode(item), value);
}

// ---- Sliders and edits --------------------------------------------------------------------------------------------

void OnColorSlider(HWND hPage, HWND hSlider)
{
    const COLORITEM item = ColorItemOfSlider(hPage, hSlider);
    if (item == COLOR_ITEM_NONE)
        return;
    const WORD position = static_cast<WORD>(SendMessageA(hSlider, TBM_GETPOS, 0, 0));
    if (position == *ColorItemValue(item))
        return;
    ChangeColorItem(item, position);
    SetDlgItemInt(hPage, ColorItemEdit(item), position, FALSE);
}

static void OnEditLeft(HWND page, COLORITEM item)
{
    const UINT typed = GetDlgItemInt(page, ColorItemEdit(item), nullptr, FALSE);
    // The slider takes signed numbers: a very large one would send it to its beginning.
    SendDlgItemMessageA(page, ColorItemSlider(item), TBM_SETPOS, TRUE,
                        static_cast<LPARAM>(typed < VALUE_END ? typed : VALUE_END));
    ChangeColorItem(item, static_cast<WORD>(typed));
}

void OnColorEdit(HWND hPage, COLORITEM item, WORD wNotification)
{
    if (wNotification == EN_KILLFOCUS)
        OnEditLeft(hPage, item);
    if (wNotification == EN_CHANGE && bUiReady)
        ResetProfileChoice(hPage);
}

// ---- ECO mode and colour temperature ------------------------------------------------------------------------------

void OnEcoButton(HWND hPage)
{
    if (!SetEcoButtonImage(hPage))
        return;
    DWORD *eco = &g_CurSetting[g_nCurMonitor].dwEco;
    *eco = *eco == 0 ? 1 : 0;
    SetSelectedOrAll(VCP_ECO_MODE, static_cast<LONG>(*eco));
    Sleep(MONITOR_SETTLES_MS);
    ReadColorItem(COLOR_BRIGHTNESS);
    SetBrightnessItem(hPage, *eco != 0, *ColorItemValue(COLOR_BRIGHTNESS));
    if (bUiReady)
        ResetProfileChoice(hPage);
}

void OnColorTemp(HWND hPage)
{
    const LRESULT position = SendDlgItemMessageA(hPage, IDC_COLOR_TEMP, CB_GETCURSEL, 0, 0);
    if (position < 0 || position >= COLOR_TEMP_COUNT)
        return;
    const LONG preset = g_nColorTempMap[g_nCurMonitor][position];
    COLORSETTING *setting = &g_CurSetting[g_nCurMonitor];
    if (preset == setting->wColorTemp)
        return;
    setting->wColorTemp = static_cast<SHORT>(preset);
    SetSelectedOrAll(VCP_COLOR_PRESET, preset);
    Sleep(MONITOR_SETTLES_MS);
    for (const COLORITEM item : {COLOR_RED, COLOR_GREEN, COLOR_BLUE})
        ReadColorItem(item);
    ShowRgbControls(hPage, preset >= COLOR_PRESET_FIRST_USER);
    ResetProfileChoice(hPage);
}
