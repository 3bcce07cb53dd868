// The button pages: the launcher function of each front-panel button, and POWER as a shutdown button.
#include "panel/page_table.h"

#include "launcher/launcher_settings.h"
#include "monitor/selection.h"
#include "panel/button_assignment.h"
#include "panel/resources/resource.h"
#include "panel/resources/strings.h"
#include "panel/text_fit.h"
#include "panel/tooltips.h"

#include <initializer_list>

// clang-format off: its releases break such a list in ways of their own
// A page by the name that its control identifiers have in common.
#define BUTTON_PAGE(BUTTON, NAME, LOCK_BIT)                                                                            \
    {                                                                                                                  \
        BUTTON, IDC_##NAME##_ENABLE, IDC_##NAME##_PROGRAM, IDC_##NAME##_BROWSE_PROGRAM, IDC_##NAME##_DELETE_PROGRAM,   \
            IDC_##NAME##_PARAMETER, IDC_##NAME##_BROWSE_PARAMETER, IDC_##NAME##_DELETE_PARAMETER, LOCK_BIT             \
    }
// clang-format on

static const BUTTONPAGE s_Pages[LAUNCHER_BUTTON_COUNT] = {
    BUTTON_PAGE(1, BUTTON_1, 1),
    BUTTON_PAGE(2, BUTTON_2, 2),
    BUTTON_PAGE(3, BUTTON_3, 4),
    BUTTON_PAGE(4, BUTTON_4, 8),
    // POWER's bit and not its own 16: users' masks were stored with it, and a function that is switched off by another
    // bit would leave this one locked.
    BUTTON_PAGE(5, BUTTON_5, 128),
    BUTTON_PAGE(LAUNCHER_BUTTON_POWER, POWER, 128),
};

// ---- Opening and end -----------------------------------------------------------------------------------------------

// The page whose launcher check box the dialog has: no other page has a control of that number.
static const BUTTONPAGE *FindPage(HWND hPage)
{
    for (const BUTTONPAGE &page : s_Pages)
        if (GetDlgItem(hPage, page.enable))
            return &page;
    return nullptr;
}

static void AddPageToolTips(HWND hPage, const BUTTONPAGE *page)
{
    const TOOLTIPENTRY entries[] = {
        {IDC_BUTTON_CANDIDATES, 0, 0, IDS_TIP_BUTTON_CANDIDATES},
        {page->browseProgram, 0, 0, IDS_TIP_BUTTON_BROWSE_PROGRAM},
        {page->deleteProgram, 0, 0, IDS_TIP_BUTTON_DELETE_PROGRAM},
        {page->program, 0, 0, IDS_TIP_BUTTON_PROGRAM},
        {page->browseParameter, 0, 0, IDS_TIP_BUTTON_BROWSE_PARAMETER},
        {page->deleteParameter, 0, 0, IDS_TIP_BUTTON_DELETE_PARAMETER},
        {page->parameter, 0, 0, IDS_TIP_BUTTON_PARAMETER},
    };
    AddLabelToolTip(hPage, page->enable, page->button, IDS_TIP_BUTTON_ENABLE);
    AddToolTips(hPage, entries, ARRAYSIZE(entries));
}

static INT_PTR FillPage(HWND hPage, const BUTTONPAGE *page)
{
    char label[BUTTON_LABEL_SIZE];
    char text[128];
    ReadButtonLabel(hPage, page->button, label, sizeof label);
    wsprintfA(text, "%sボタンをランチャーボタンとして使用する", label);
    SetDlgItemTextA(hPage, page->enable, text);
    for (const int control : {page->enable, IDC_POWER_SHUTDOWN, IDC_BUTTON_PROGRAM_LABEL})
        FitText(hPage, control);

    // A locked button shows as a launcher button, too; it was not counted as one.
    const DWORD mode = ReadButtonMode(g_nCurMonitor, page->button);
    CheckDlgButton(hPage, page->enable, mode == BUTTON_LOCKED || mode == BUTTON_LAUNCHER ? BST_CHECKED : BST_UNCHECKED);
    EnableDetails(hPage, page, mode != BUTTON_NORMAL);
    if (page->button == LAUNCHER_BUTTON_POWER && ReadPowerSwitch(g_nCurMonitor) == 1)
        CheckDlgButton(hPage, IDC_POWER_SHUTDOWN, BST_CHECKED);

    if (!FillDetails(hPage, page))
        return FALSE;
    AddPageToolTips(hPage, page);
    return TRUE;
}

static INT_PTR OnInit(HWND hPage)
{
    const BUTTONPAGE *page = FindPage(hPage);
    if (!page)
        return FALSE;
    const INT_PTR result = FillPage(hPage, page);
    // Last: what the controls notified of up to now was no user's doing.
    SetWindowLongPtrA(hPage, DWLP_USER, reinterpret_cast<LONG_PTR>(page));
    return result;
}

static void OnDestroy(HWND hPage)
{
    SaveButtonLockStatus();
    if (const BUTTONPAGE *page = FindPage(hPage))
        for (const int control : {page->enable, IDC_POWER_SHUTDOWN, IDC_BUTTON_PROGRAM_LABEL})
            ReleaseFittedText(hPage, control);
}

// ---- Check boxes --------------------------------------------------------------------------------------------------

// Result: whether it is checked now.
static bool Toggle(HWND hPage, int checkBox)
{
    const bool checked = IsDlgButtonChecked(hPage, checkBox) != BST_CHECKED;
    CheckDlgButton(hPage, checkBox, checked ? BST_CHECKED : BST_UNCHECKED);
    return checked;
}

// POWER either launches or shuts down, and each counts once.
static void EndPowerSwitch(HWND hPage, LONG monitor)
{
    if (ReadPowerSwitch(monitor) != 1)
        return;
    WritePowerSwitch(monitor, 0);
    CheckDlgButton(hPage, IDC_POWER_SHUTDOWN, BST_UNCHECKED);
    UpdateLauncherPoll(0);
}

static void EndPowerLauncher(HWND hPage, const BUTTONPAGE *page, LONG monitor)
{
    if (ReadButtonMode(monitor, page->button) != BUTTON_LAUNCHER)
        return;
    WriteButtonMode(monitor, page->button, BUTTON_NORMAL);
    CheckDlgButton(hPage, page->enable, BST_UNCHECKED);
    UpdateLauncherPoll(0);
    EnableDetails(hPage, page, FALSE);
}

static void OnEnable(HWND hPage, const BUTTONPAGE *page)
{
    const LONG monitor = g_nCurMonitor;
    const bool on = Toggle(hPage, page->enable);
    WriteButtonMode(monitor, page->button, on ? BUTTON_LAUNCHER : BUTTON_NORMAL);
    if (on && page->button == LAUNCHER_BUTTON_POWER)
        EndPowerSwitch(hPage, monitor);
    UpdateLauncherPoll(on);
    EnableDetails(hPage, page, on);
    if (on)
        SetLockBit(monitor, page->lockBit);
    else
        ToggleLockBit(monitor, page->lockBit); // does not clear: a monitor that lost the bit gets it back
}

static void OnShutdown(HWND hPage, const BUTTONPAGE *page)
{
    const LONG monitor = g_nCurMonitor;
    const bool on = Toggle(hPage, IDC_POWER_SHUTDOWN);
    if (on) {
        SetLockBit(monitor, page->lockBit);
        EndPowerLauncher(hPage, page, monitor);
        UpdateLauncherPoll(1);
    } else {
        UpdateLauncherPoll(0);
        ToggleLockBit(monitor, page->lockBit);
    }
    WritePowerSwitch(monitor, on);
}

// ---- Messages -----------------------------------------------------------------------------------------------------

static INT_PTR OnClick(HWND hPage, const BUTTONPAGE *page, WORD control)
{
    const struct {
        int control;
        void (*clicked)(HWND hPage, const BUTTONPAGE *page);
    } buttons[] = {
        {page->enable, OnEnable},
        {IDC_POWER_SHUTDOWN, OnShutdown},
        {page->browseProgram, BrowseApplication},
        {page->deleteProgram, DeleteApplication},
        {page->browseParameter, BrowseParameter},
        {page->deleteParameter, DeleteParameter},
    };
    for (const auto &button : buttons)
        if (button.control == control) {
            button.clicked(hPage, page);
            return TRUE;
        }
    return FALSE;
}

static INT_PTR OnCommand(HWND hPage, WORD control, WORD notification)
{
    const BUTTONPAGE *page = reinterpret_cast<const BUTTONPAGE *>(GetWindowLongPtrA(hPage, DWLP_USER));
    if (!page)
        return FALSE;
    if (control == IDC_BUTTON_CANDIDATES) {
        OnCandidates(hPage, page); // whatever the notification
        return TRUE;
    }
    if (control == page->parameter) {
        SaveParameterText(hPage, page);
        return TRUE;
    }
    return notification == BN_CLICKED ? OnClick(hPage, page, control) : FALSE;
}

INT_PTR CALLBACK ButtonPageProc(HWND hPage, UINT message, WPARAM wParam, LPARAM)
{
    switch (message) {
    case WM_INITDIALOG:
        return OnInit(hPage);
    case WM_COMMAND:
        return OnCommand(hPage, LOWORD(wParam), HIWORD(wParam));
    case WM_DESTROY:
        OnDestroy(hPage);
        return TRUE;
    }
    return FALSE;
}
