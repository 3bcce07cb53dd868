// From a control of the colour page to the monitors.
#include "panel/color_page_changes.h"

#include "monitor/selection.h"
#include "monitor/vcp.h"
#include "panel/color_page_images.h"
#include "panel/resources/controls.h"
#include "panel/resources/resource.h"

#include <commctrl.h>

#include <initializer_list>

constexpr DWORD MONITOR_SETTLES_MS = 200; // until the values that depend on a change can be read
constexpr UINT VALUE_END = 0xFFFF;

void ReadColorItem(LONG nMonitor, COLORITEM item)
{
    LONG *maximum = ColorItemMaximum(nMonitor, item);
    *ColorItemValue(nMonitor, item) = static_cast<WORD>(GetVCP(nMonitor, ColorItemCode(item), maximum));
}

static void ChangeColorItem(LONG monitor, COLORITEM item, WORD value)
{
    *ColorItemValue(monitor, item) = value;
    SetSelectedOrAll(monitor, ColorItemCode(item), value);
}

// ---- Sliders and edits --------------------------------------------------------------------------------------------

void OnColorSlider(HWND hPage, HWND hSlider)
{
    const COLORITEM item = ColorItemOfSlider(hPage, hSlider);
    if (item == COLOR_ITEM_NONE)
        return;
    const LONG monitor = g_nCurMonitor;
    const WORD position = static_cast<WORD>(SendMessageA(hSlider, TBM_GETPOS, 0, 0));
    if (position == *ColorItemValue(monitor, item))
        return;
    ChangeColorItem(monitor, item, position);
    SetDlgItemInt(hPage, ColorItemEdit(item), position, FALSE);
}

static void OnEditLeft(HWND hPage, COLORITEM item)
{
    const UINT typed = GetDlgItemInt(hPage, ColorItemEdit(item), nullptr, FALSE);
    // The slider takes signed numbers: a very large one would send it to its beginning.
    SendDlgItemMessageA(hPage, ColorItemSlider(item), TBM_SETPOS, TRUE,
                        static_cast<LPARAM>(typed < VALUE_END ? typed : VALUE_END));
    ChangeColorItem(g_nCurMonitor, item, static_cast<WORD>(typed));
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
    const LONG monitor = g_nCurMonitor;
    DWORD *eco = &g_CurSetting[monitor].dwEco;
    *eco = *eco == 0 ? 1 : 0;
    SetSelectedOrAll(monitor, VCP_ECO_MODE, static_cast<LONG>(*eco));
    Sleep(MONITOR_SETTLES_MS);
    ReadColorItem(monitor, COLOR_BRIGHTNESS);
    SetBrightnessItem(hPage, *eco != 0, *ColorItemValue(monitor, COLOR_BRIGHTNESS));
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
    for (const COLORITEM item : {COLOR_RED, COLOR_GREEN, COLOR_BLUE})
        ReadColorItem(monitor, item);
    ShowRgbControls(hPage, preset >= COLOR_PRESET_FIRST_USER);
    ResetProfileChoice(hPage);
}
