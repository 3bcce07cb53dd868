// The controls of the colour page, by tables: which belong together, and how they look in each state.
#include "panel/color_page_controls.h"

#include "monitor/selection.h"
#include "monitor/vcp.h"
#include "panel/resources/controls.h"
#include "panel/resources/resource.h"
#include "panel/resources/strings.h"
#include "profiles/color_presets.h"
#include "profiles/foreground.h"

#include <commctrl.h>

#include <initializer_list>

LONG bUiReady = 0;
LONG g_nColorTempMap[MAX_MONITOR][COLOR_TEMP_COUNT];

// What a setting consists of. The monitor keeps two values of the brightness, one for each ECO state.
struct COLORITEMENTRY {
    int nEdit;
    int nSlider;
    BYTE bCode;
    WORD COLORSETTING::*value;
    WORD COLORSETTING::*ecoValue;
    LONG *lpMaxima;
    LONG *lpEcoMaxima;
};

// By COLORITEM.
static const COLORITEMENTRY s_Items[COLOR_ITEM_COUNT] = {
    {IDC_COLOR_BRIGHTNESS_EDIT, IDC_COLOR_BRIGHTNESS_SLIDER, VCP_BRIGHTNESS, &COLORSETTING::wBright,
     &COLORSETTING::wBrightEco, g_nMaxBright, g_nMaxBrightEco},
    {IDC_COLOR_CONTRAST_EDIT, IDC_COLOR_CONTRAST_SLIDER, VCP_CONTRAST, &COLORSETTING::wContrast,
     &COLORSETTING::wContrast, g_nMaxContrast, g_nMaxContrast},
    {IDC_COLOR_RED_EDIT, IDC_COLOR_RED_SLIDER, VCP_RED_GAIN, &COLORSETTING::wRed, &COLORSETTING::wRed, g_nMaxRed,
     g_nMaxRed},
    {IDC_COLOR_GREEN_EDIT, IDC_COLOR_GREEN_SLIDER, VCP_GREEN_GAIN, &COLORSETTING::wGreen, &COLORSETTING::wGreen,
     g_nMaxGreen, g_nMaxGreen},
    {IDC_COLOR_BLUE_EDIT, IDC_COLOR_BLUE_SLIDER, VCP_BLUE_GAIN, &COLORSETTING::wBlue, &COLORSETTING::wBlue, g_nMaxBlue,
     g_nMaxBlue},
};

// Labels that exist twice at one place.
struct COLORLABEL {
    int nNormal;
    int nGrey;
};
static const COLORLABEL s_GainLabels[] = {
    {IDC_COLOR_RED_LABEL, IDC_COLOR_RED_LABEL_GREY},
    {IDC_COLOR_GREEN_LABEL, IDC_COLOR_GREEN_LABEL_GREY},
    {IDC_COLOR_BLUE_LABEL, IDC_COLOR_BLUE_LABEL_GREY},
};
static const COLORLABEL s_OtherLabels[] = {
    {IDC_COLOR_CONTRAST_LABEL, IDC_COLOR_CONTRAST_LABEL_GREY},
    {IDC_COLOR_TEMP_LABEL, IDC_COLOR_TEMP_LABEL_GREY},
};

// What DirectLink takes out of use, besides the gains.
static const int s_Usable[] = {
    IDC_COLOR_ALL_MONITORS,    IDC_COLOR_APP_LIST,      IDC_COLOR_ALIAS,
    IDC_COLOR_BROWSE,          IDC_COLOR_APP_UPDATE,    IDC_COLOR_APP_DELETE,
    IDC_COLOR_CONTRAST_SLIDER, IDC_COLOR_CONTRAST_EDIT, IDC_COLOR_BRIGHTNESS_SLIDER,
    IDC_COLOR_BRIGHTNESS_EDIT, IDC_COLOR_ECO,           IDC_COLOR_TEMP,
    IDC_COLOR_PROFILE_COMBO,   IDC_COLOR_PROFILE_ADD,   IDC_COLOR_PROFILE_DELETE,
    IDC_COLOR_APP_GROUP,       IDC_COLOR_GROUP,         IDC_COLOR_PROFILE_GROUP,
};

// ---- The settings one by one --------------------------------------------------------------------------------------

COLORITEM ColorItemOfEdit(int nControl)
{
    for (int item = 0; item < COLOR_ITEM_COUNT; ++item)
        if (s_Items[item].nEdit == nControl)
            return static_cast<COLORITEM>(item);
    return COLOR_ITEM_NONE;
}

COLORITEM ColorItemOfSlider(HWND hPage, HWND hSlider)
{
    for (int item = 0; hSlider && item < COLOR_ITEM_COUNT; ++item)
        if (GetDlgItem(hPage, s_Items[item].nSlider) == hSlider)
            return static_cast<COLORITEM>(item);
    return COLOR_ITEM_NONE;
}

int ColorItemEdit(COLORITEM item)
{
    return s_Items[item].nEdit;
}

int ColorItemSlider(COLORITEM item)
{
    return s_Items[item].nSlider;
}

BYTE ColorItemCode(COLORITEM item)
{
    return s_Items[item].bCode;
}

WORD *ColorItemValue(LONG nMonitor, COLORITEM item)
{
    COLORSETTING *setting = &g_CurSetting[nMonitor];
    return &(setting->*(setting->dwEco != 0 ? s_Items[item].ecoValue : s_Items[item].value));
}

LONG *ColorItemMaximum(LONG nMonitor, COLORITEM item)
{
    return &(g_CurSetting[nMonitor].dwEco != 0 ? s_Items[item].lpEcoMaxima : s_Items[item].lpMaxima)[nMonitor];
}

// ---- Values -------------------------------------------------------------------------------------------------------

// The end of a slider's range. A maximum that was never read is 0, as that of the brightness in an ECO state that the
// monitor has not been in: a slider without a range would write 0 with the next click on it.
static WORD SliderEnd(LONG maximum)
{
    constexpr WORD USUAL_MAXIMUM = 100;
    return maximum == 0 ? USUAL_MAXIMUM : static_cast<WORD>(maximum);
}

static void ShowValue(HWND page, int edit, int slider, WORD value, LONG maximum, BOOL redrawRange)
{
    SetDlgItemInt(page, edit, value, FALSE);
    SendDlgItemMessageA(page, slider, TBM_SETRANGE, static_cast<WPARAM>(redrawRange),
                        MAKELPARAM(0, SliderEnd(maximum)));
    SendDlgItemMessageA(page, slider, TBM_SETPOS, TRUE, value);
}

void SetContrastItem(HWND hPage, WORD wValue)
{
    if (g_bDirectLink)
        return;
    ShowValue(hPage, IDC_COLOR_CONTRAST_EDIT, IDC_COLOR_CONTRAST_SLIDER, wValue, g_nMaxContrast[g_nCurMonitor], FALSE);
}

void SetBrightnessItem(HWND hPage, bool bEco, WORD wValue)
{
    if (g_bDirectLink)
        return;
    SetControlString(hPage, IDC_COLOR_ECO, bEco ? IDS_BRIGHTNESS_ECO : IDS_BRIGHTNESS);
    CheckDlgButton(hPage, IDC_COLOR_ECO, bEco ? BST_CHECKED : BST_UNCHECKED);
    const LONG *maxima = bEco ? g_nMaxBrightEco : g_nMaxBright;
    ShowValue(hPage, IDC_COLOR_BRIGHTNESS_EDIT, IDC_COLOR_BRIGHTNESS_SLIDER, wValue, maxima[g_nCurMonitor], TRUE);
}

void SetGainItem(HWND hPage, bool bEnable, WORD wValue, LONG nMaximum, int nEdit, int nSlider)
{
    if (g_bDirectLink)
        return;
    ShowValue(hPage, nEdit, nSlider, wValue, nMaximum, FALSE);
    EnableWindow(GetDlgItem(hPage, nEdit), bEnable);
    EnableWindow(GetDlgItem(hPage, nSlider), bEnable);
}

// ---- Labels -------------------------------------------------------------------------------------------------------

template <size_t COUNT>
static void ShowLabels(HWND page, const COLORLABEL (&labels)[COUNT], bool normal)
{
    for (const COLORLABEL &label : labels) {
        ShowWindow(GetDlgItem(page, label.nNormal), normal ? SW_SHOW : SW_HIDE);
        ShowWindow(GetDlgItem(page, label.nGrey), normal ? SW_HIDE : SW_SHOW);
    }
}

void ShowRgbControls(HWND hPage, bool bShow)
{
    if (g_bDirectLink)
        return;
    ShowLabels(hPage, s_GainLabels, bShow);
    const LONG monitor = g_nCurMonitor;
    for (const COLORITEM item : {COLOR_RED, COLOR_GREEN, COLOR_BLUE})
        SetGainItem(hPage, bShow, *ColorItemValue(monitor, item), *ColorItemMaximum(monitor, item), ColorItemEdit(item),
                    ColorItemSlider(item));
}

// ---- Lists --------------------------------------------------------------------------------------------------------

int GetColorTempPos(LONG nMonitor, LONG nValue)
{
    for (int position = 0; IsMonitorIndex(nMonitor) && position < COLOR_TEMP_COUNT; ++position)
        if (g_nColorTempMap[nMonitor][position] == nValue)
            return position;
    return COLOR_TEMP_NOT_FOUND;
}

void SelectColorTemp(HWND hPage, LONG nValue)
{
    // What is found beyond the list's end is left from a longer one.
    const int position = GetColorTempPos(g_nCurMonitor, nValue);
    SelectComboEntry(hPage, IDC_COLOR_TEMP, position < ComboEntryCount(hPage, IDC_COLOR_TEMP) ? position : -1);
}

void ResetProfileChoice(HWND hPage)
{
    SelectComboEntry(hPage, IDC_COLOR_PROFILE_COMBO, 0);
}

static void FillColorTemps(HWND page, LONG monitor)
{
    ClearCombo(page, IDC_COLOR_TEMP);
    for (int value = 0; value < COLOR_TEMP_COUNT; ++value) {
        if (!g_Monitor[monitor].bColorPreset[value])
            continue;
        const int position = AddComboEntry(page, IDC_COLOR_TEMP, ColorPresetName(value));
        if (position >= 0 && position < COLOR_TEMP_COUNT)
            g_nColorTempMap[monitor][position] = value;
    }
}

// ---- The page as a whole ------------------------------------------------------------------------------------------

void FillColorPage(HWND hPage, LONG nMonitor)
{
    if (!IsMonitorIndex(nMonitor))
        return;
    const COLORSETTING *setting = &g_CurSetting[nMonitor];
    FillColorTemps(hPage, nMonitor);
    SelectColorTemp(hPage, setting->wColorTemp);
    ShowRgbControls(hPage, setting->wColorTemp >= COLOR_PRESET_FIRST_USER);
    SetContrastItem(hPage, setting->wContrast);
    SetBrightnessItem(hPage, setting->dwEco != 0, setting->dwEco != 0 ? setting->wBrightEco : setting->wBright);
    CheckDlgButton(hPage, IDC_COLOR_DIRECT_LINK, g_bDirectLink ? BST_CHECKED : BST_UNCHECKED);
    if (g_nMonitor >= 2)
        EnableWindow(GetDlgItem(hPage, IDC_COLOR_ALL_MONITORS), TRUE);
}

static void EnablePageControls(HWND page, bool enable, bool enableGains)
{
    for (const int control : s_Usable)
        EnableWindow(GetDlgItem(page, control), enable);
    for (const COLORITEM item : {COLOR_RED, COLOR_GREEN, COLOR_BLUE}) {
        EnableWindow(GetDlgItem(page, ColorItemSlider(item)), enableGains);
        EnableWindow(GetDlgItem(page, ColorItemEdit(item)), enableGains);
    }
    ShowLabels(page, s_GainLabels, enableGains);
    ShowLabels(page, s_OtherLabels, enable);
}

void DisableColorPage(HWND hPage)
{
    EnablePageControls(hPage, false, false);
}

void EnableColorPage(HWND hPage)
{
    EnablePageControls(hPage, true, g_CurSetting[g_nCurMonitor].wColorTemp >= COLOR_PRESET_FIRST_USER);
}
