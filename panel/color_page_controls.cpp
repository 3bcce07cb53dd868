// The controls of the colour page, by tables: which belong together, and how they look in each state.
#include "panel/color_page_controls.h"

#include "monitor/selection.h"
#include "panel/resources/controls.h"
#include "panel/resources/resource.h"
#include "panel/resources/strings.h"
#include "profiles/color_presets.h"
#include "profiles/foreground.h"

#include <commctrl.h>

LONG bUiReady = 0;
LONG g_nColorTempMap[MAX_MONITOR][COLOR_TEMP_COUNT];

// In the order in which a slider is looked for. What a row shows is set in ShowColorSetting.
static constexpr COLORCONTROL s_Controls[] = {
    {VCP_BRIGHTNESS, IDC_COLOR_BRIGHTNESS_EDIT, IDC_COLOR_BRIGHTNESS_SLIDER, 0, 0},
    {VCP_CONTRAST, IDC_COLOR_CONTRAST_EDIT, IDC_COLOR_CONTRAST_SLIDER, IDC_COLOR_CONTRAST_LABEL,
     IDC_COLOR_CONTRAST_LABEL_GREY},
    {VCP_RED_GAIN, IDC_COLOR_RED_EDIT, IDC_COLOR_RED_SLIDER, IDC_COLOR_RED_LABEL, IDC_COLOR_RED_LABEL_GREY},
    {VCP_GREEN_GAIN, IDC_COLOR_GREEN_EDIT, IDC_COLOR_GREEN_SLIDER, IDC_COLOR_GREEN_LABEL, IDC_COLOR_GREEN_LABEL_GREY},
    {VCP_BLUE_GAIN, IDC_COLOR_BLUE_EDIT, IDC_COLOR_BLUE_SLIDER, IDC_COLOR_BLUE_LABEL, IDC_COLOR_BLUE_LABEL_GREY},
};

// The first row of a code; null for one that is no feature.
static constexpr const COLORFEATURE *FirstRow(BYTE code)
{
    for (const COLORFEATURE &feature : COLOR_FEATURES)
        if (feature.bCode == code)
            return &feature;
    return nullptr;
}

static constexpr bool IsGain(const COLORCONTROL &control)
{
    return FirstRow(control.bCode)->counts == COLOR_USER_PRESET;
}

static constexpr bool HasControl(const COLORFEATURE &feature)
{
    for (const COLORCONTROL &control : s_Controls)
        if (control.bCode == feature.bCode)
            return true;
    return false;
}

// A slider ends at a maximum: what has one has the other.
static constexpr bool DoTablesAgree()
{
    for (const COLORCONTROL &control : s_Controls)
        if (!FirstRow(control.bCode))
            return false;
    for (const COLORFEATURE &feature : COLOR_FEATURES)
        if (HasControl(feature) != (feature.lpMaxima != nullptr))
            return false;
    return true;
}
static_assert(DoTablesAgree());

// What DirectLink takes out of use, besides the controls of the features.
static const int s_Usable[] = {
    IDC_COLOR_ALL_MONITORS,   IDC_COLOR_APP_LIST,  IDC_COLOR_ALIAS, IDC_COLOR_BROWSE,        IDC_COLOR_APP_UPDATE,
    IDC_COLOR_APP_DELETE,     IDC_COLOR_ECO,       IDC_COLOR_TEMP,  IDC_COLOR_PROFILE_COMBO, IDC_COLOR_PROFILE_ADD,
    IDC_COLOR_PROFILE_DELETE, IDC_COLOR_APP_GROUP, IDC_COLOR_GROUP, IDC_COLOR_PROFILE_GROUP,
};

// ---- The features one by one --------------------------------------------------------------------------------------

const COLORCONTROL *ColorControlOfEdit(int nControl)
{
    for (const COLORCONTROL &control : s_Controls)
        if (control.nEdit == nControl)
            return &control;
    return nullptr;
}

const COLORCONTROL *ColorControlOfSlider(HWND hPage, HWND hSlider)
{
    for (const COLORCONTROL &control : s_Controls)
        if (hSlider && GetDlgItem(hPage, control.nSlider) == hSlider)
            return &control;
    return nullptr;
}

// ---- Values -------------------------------------------------------------------------------------------------------

// The end of a slider's range. A maximum that was never read is 0, as that of the brightness in an ECO state that the
// monitor has not been in: a slider without a range would write 0 with the next click on it.
static WORD SliderEnd(LONG maximum)
{
    constexpr WORD USUAL_MAXIMUM = 100;
    return maximum == 0 ? USUAL_MAXIMUM : static_cast<WORD>(maximum);
}

static void ShowValue(HWND hPage, int edit, int slider, WORD value, LONG maximum, BOOL redrawRange)
{
    SetDlgItemInt(hPage, edit, value, FALSE);
    SendDlgItemMessageA(hPage, slider, TBM_SETRANGE, static_cast<WPARAM>(redrawRange),
                        MAKELPARAM(0, SliderEnd(maximum)));
    SendDlgItemMessageA(hPage, slider, TBM_SETPOS, TRUE, value);
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

static void ShowLabel(HWND hPage, int normal, int grey, bool usable)
{
    ShowWindow(GetDlgItem(hPage, normal), usable ? SW_SHOW : SW_HIDE);
    ShowWindow(GetDlgItem(hPage, grey), usable ? SW_HIDE : SW_SHOW);
}

void ShowRgbControls(HWND hPage, bool bShow)
{
    if (g_bDirectLink)
        return;
    const LONG monitor = g_nCurMonitor;
    const COLORSETTING *setting = &g_CurSetting[monitor];
    for (const COLORCONTROL &control : s_Controls) {
        if (!IsGain(control))
            continue;
        const COLORFEATURE *feature = FindColorFeature(setting, control.bCode);
        ShowLabel(hPage, control.nLabel, control.nLabelGrey, bShow);
        SetGainItem(hPage, bShow, LOWORD(GetColorValue(setting, *feature)), feature->lpMaxima[monitor], control.nEdit,
                    control.nSlider);
    }
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

static void FillColorTemps(HWND hPage, LONG monitor)
{
    ClearCombo(hPage, IDC_COLOR_TEMP);
    for (int value = 0; value < COLOR_TEMP_COUNT; ++value) {
        if (!g_Monitor[monitor].bColorPreset[value])
            continue;
        const int position = AddComboEntry(hPage, IDC_COLOR_TEMP, ColorPresetName(value));
        if (position >= 0 && position < COLOR_TEMP_COUNT)
            g_nColorTempMap[monitor][position] = value;
    }
}

// ---- The page as a whole ------------------------------------------------------------------------------------------

void ShowColorSetting(HWND hPage, const COLORSETTING *lpSetting)
{
    const bool eco = lpSetting->dwEco != 0;
    SelectColorTemp(hPage, lpSetting->wColorTemp);
    ShowRgbControls(hPage, lpSetting->wColorTemp >= COLOR_PRESET_FIRST_USER);
    SetContrastItem(hPage, lpSetting->wContrast);
    SetBrightnessItem(hPage, eco, eco ? lpSetting->wBrightEco : lpSetting->wBright);
}

void FillColorPage(HWND hPage, LONG nMonitor)
{
    if (!IsMonitorIndex(nMonitor))
        return;
    FillColorTemps(hPage, nMonitor);
    ShowColorSetting(hPage, &g_CurSetting[nMonitor]);
    CheckDlgButton(hPage, IDC_COLOR_DIRECT_LINK, g_bDirectLink ? BST_CHECKED : BST_UNCHECKED);
    if (g_nMonitor >= 2)
        EnableWindow(GetDlgItem(hPage, IDC_COLOR_ALL_MONITORS), TRUE);
}

static void EnablePageControls(HWND hPage, bool enable, bool enableGains)
{
    for (const int control : s_Usable)
        EnableWindow(GetDlgItem(hPage, control), enable);
    ShowLabel(hPage, IDC_COLOR_TEMP_LABEL, IDC_COLOR_TEMP_LABEL_GREY, enable);
    for (const COLORCONTROL &control : s_Controls) {
        const bool usable = IsGain(control) ? enableGains : enable;
        EnableWindow(GetDlgItem(hPage, control.nSlider), usable);
        EnableWindow(GetDlgItem(hPage, control.nEdit), usable);
        if (control.nLabel)
            ShowLabel(hPage, control.nLabel, control.nLabelGrey, usable);
    }
}

void DisableColorPage(HWND hPage)
{
    EnablePageControls(hPage, false, false);
}

void EnableColorPage(HWND hPage)
{
    EnablePageControls(hPage, true, g_CurSetting[g_nCurMonitor].wColorTemp >= COLOR_PRESET_FIRST_USER);
}
