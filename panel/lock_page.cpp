// The button lock page: switches the selected monitor's front-panel buttons between usable and locked.
#include "panel/page_table.h"

#include "launcher/launcher_settings.h"
#include "monitor/selection.h"
#include "monitor/vcp_codes.h"
#include "panel/resources/resource.h"
#include "panel/resources/strings.h"
#include "panel/tooltips.h"

// What the page knows of each button between two clicks, by button number - 1: 1 = usable, 0 = locked.
static int abButtonUsable[LAUNCHER_BUTTON_COUNT];

// By button number - 1.
static const struct {
    int toggle;
    int label;
} s_Controls[LAUNCHER_BUTTON_COUNT] = {
    {IDC_LOCK_TOGGLE_1, IDC_LOCK_LABEL_1}, {IDC_LOCK_TOGGLE_2, IDC_LOCK_LABEL_2},
    {IDC_LOCK_TOGGLE_3, IDC_LOCK_LABEL_3}, {IDC_LOCK_TOGGLE_4, IDC_LOCK_LABEL_4},
    {IDC_LOCK_TOGGLE_5, IDC_LOCK_LABEL_5}, {IDC_LOCK_TOGGLE_POWER, IDC_LOCK_LABEL_POWER},
};

// ---- Opening ------------------------------------------------------------------------------------------------------

static void ShowLabel(HWND hPage, int button)
{
    char label[BUTTON_LABEL_SIZE];
    if (!ReadButtonLabel(hPage, button, label, sizeof label))
        EnableWindow(GetDlgItem(hPage, s_Controls[button - 1].toggle), FALSE);
    SetDlgItemTextA(hPage, s_Controls[button - 1].label, label);
}

// Takes the state over and shows it; the toggle of a button that the model has not stays without a text.
static void SetUsable(HWND hPage, int button, int usable)
{
    char label[BUTTON_LABEL_SIZE] = "";
    GetDlgItemTextA(hPage, s_Controls[button - 1].label, label, sizeof label);
    if (label[0])
        SetDlgItemTextA(hPage, s_Controls[button - 1].toggle, usable ? "有効" : "無効");
    abButtonUsable[button - 1] = usable;
}

static void InitButtonLockPage(HWND hPage)
{
    for (int button = 1; button <= LAUNCHER_BUTTON_COUNT; ++button) {
        ShowLabel(hPage, button);
        // A launcher button counts as locked: the monitor does not act on it.
        SetUsable(hPage, button, ReadButtonMode(g_nCurMonitor, button) == BUTTON_NORMAL);
    }
}

static void AddPageToolTips(HWND hPage)
{
    AddToolTip(hPage, IDC_LOCK_PICTURE, STM_SETIMAGE, IDB_LOCK_PICTURE, nullptr);
    for (int button = 1; button <= LAUNCHER_BUTTON_COUNT; ++button)
        AddLabelToolTip(hPage, s_Controls[button - 1].toggle, button, IDS_TIP_LOCK_TOGGLE);
}

// ---- Clicks -------------------------------------------------------------------------------------------------------

static void ToggleButtonLock(HWND hPage, int button)
{
    const LONG monitor = g_nCurMonitor;
    const int usable = !abButtonUsable[button - 1];
    SetUsable(hPage, button, usable);
    if (usable)
        ToggleLockBit(monitor, ButtonBit(button)); // does not clear: a monitor that lost the bit gets it back
    else
        SetLockBit(monitor, ButtonBit(button));
    // Ends a launcher function too; the count of these and the POWER switch are left to the button's own page.
    WriteButtonMode(monitor, button, usable ? BUTTON_NORMAL : BUTTON_LOCKED);
}

static INT_PTR OnCommand(HWND hPage, WORD control)
{
    for (int button = 1; button <= LAUNCHER_BUTTON_COUNT; ++button)
        if (s_Controls[button - 1].toggle == control) {
            ToggleButtonLock(hPage, button);
            return TRUE;
        }
    return FALSE;
}

INT_PTR CALLBACK ButtonLockPageProc(HWND hPage, UINT message, WPARAM wParam, LPARAM)
{
    switch (message) {
    case WM_INITDIALOG:
        InitButtonLockPage(hPage);
        AddPageToolTips(hPage);
        return TRUE;
    case WM_COMMAND:
        return OnCommand(hPage, LOWORD(wParam));
    case WM_DESTROY:
        SaveButtonLockStatus();
        return TRUE;
    }
    return FALSE;
}
