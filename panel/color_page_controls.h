// What the colour page shows: values, and which controls can be used.
//
// Kernel thread. Values are those of the selected monitor, g_nCurMonitor; the functions here write nothing to it.
#pragma once

#include "monitor/color_features.h"

#include <windows.h>

// What belongs to a feature that has a slider and an edit.
struct COLORCONTROL {
    BYTE bCode;
    int nEdit;
    int nSlider;
    int nLabel; // 0: none
    int nLabelGrey;
};

constexpr int COLOR_TEMP_COUNT = 16; // values of VCP 0x14 that have a name
constexpr int COLOR_TEMP_NOT_FOUND = COLOR_TEMP_COUNT;

// 0 while the page itself changes its edits for a profile: such a change leaves the profile choice as it is.
extern LONG bUiReady;

// The preset shown at each position of a monitor's colour temperature list. Positions beyond the list keep what they
// held.
extern LONG g_nColorTempMap[MAX_MONITOR][COLOR_TEMP_COUNT];

// ---- The features one by one ----

// By a control's identifier, or the window of a slider. Result: null for any other.
const COLORCONTROL *ColorControlOfEdit(int nControl);
const COLORCONTROL *ColorControlOfSlider(HWND hPage, HWND hSlider);

// ---- The page as a whole ----

// Shows the current settings of a monitor. An index out of range does nothing.
void FillColorPage(HWND hPage, LONG nMonitor);

// Shows the values of a record, of the gains those of the selected monitor; all but the ECO button's image.
void ShowColorSetting(HWND hPage, const COLORSETTING *lpSetting);

// For DirectLink: greys everything but its own box and the toggle, or makes it usable again, the gains with a user
// preset only.
void DisableColorPage(HWND hPage);
void EnableColorPage(HWND hPage);

// ---- Single controls. While DirectLink is on these do nothing ----

// Sets edit and slider to a value; the slider's range ends at the low 16 bits of the maximum, or at 100 while that was
// never read.
void SetContrastItem(HWND hPage, WORD wValue);
void SetBrightnessItem(HWND hPage, bool bEco, WORD wValue); // and the ECO button's text and check
void SetGainItem(HWND hPage, bool bEnable, WORD wValue, LONG nMaximum, int nEdit, int nSlider);

// Shows the gains as usable (bShow) or greyed, with their current values.
void ShowRgbControls(HWND hPage, bool bShow);

// ---- Lists ----

// The position of a preset in a monitor's colour temperature list. Result: COLOR_TEMP_NOT_FOUND without one.
int GetColorTempPos(LONG nMonitor, LONG nValue);

// Selects a preset in the list; none when the monitor does not offer it.
void SelectColorTemp(HWND hPage, LONG nValue);

// Goes back to "none specified" in the list of profiles.
void ResetProfileChoice(HWND hPage);
