// The colour page's dialog procedure, its opening, and its three switches: DirectLink, all monitors, second half.
#include "panel/page_table.h"

#include "monitor/color_settings.h"
#include "monitor/selection.h"
#include "panel/color_page_apps.h"
#include "panel/color_page_changes.h"
#include "panel/color_page_controls.h"
#include "panel/color_page_images.h"
#include "panel/color_page_profiles.h"
#include "panel/file_drop.h"
#include "panel/pages.h"
#include "panel/profile_lists.h"
#include "panel/resources/controls.h"
#include "panel/resources/resource.h"
#include "profiles/foreground.h"
#include "profiles/profile_store.h"
#include "settings/setting_table.h"

// ---- Opening ------------------------------------------------------------------------------------------------------

static INT_PTR OnInit(HWND hPage)
{
    const LONG monitor = g_nCurMonitor;
    bUiReady = 1;
    LoadProfiles(hPage, "profile.ini");
    ResetProfileChoice(hPage);
    ReadCurrentSettings(monitor);
    g_DefSetting[monitor] = g_CurSetting[monitor]; // what the monitor shows now is what it gets back
    FillColorPage(hPage, monitor);
    if (g_bDirectLink)
        DisableColorPage(hPage);
    else
        EnableColorPage(hPage);
    EnableDirectLinkBox(hPage);
    PassDropsToDialog(hPage, IDC_COLOR_APP_LIST);
    // The images come last: the page works without them.
    if (SetColorPageImages(hPage) && SetMonitorButtonImage(hPage))
        SetEcoButtonImage(hPage);
    return TRUE;
}

// ---- Switches -----------------------------------------------------------------------------------------------------

static void SwitchDirectLinkOn(HWND hPage)
{
    WriteSettingNumber(SETTING_DIRECT_LINK, 1);
    g_bDirectLink = 1;
    DisableColorPage(hPage);
    NotifyDirectLink(1);
    SelectListEntry(hPage, IDC_COLOR_APP_LIST, -1);
}

static void SwitchDirectLinkOff(HWND hPage)
{
    WriteSettingNumber(SETTING_DIRECT_LINK, 0);
    g_bDirectLink = 0;
    RestoreDefaultColor();
    // While it was on nothing was shown: an edit left empty would be taken for a 0 as soon as it loses the focus.
    FillColorPage(hPage, g_nCurMonitor);
    SetEcoButtonImage(hPage);
    EnableColorPage(hPage);
    NotifyDirectLink(0);
}

static void OnDirectLink(HWND hPage)
{
    if (IsDlgButtonChecked(hPage, IDC_COLOR_DIRECT_LINK) == BST_CHECKED)
        SwitchDirectLinkOn(hPage);
    else
        SwitchDirectLinkOff(hPage);
}

static void OnAllMonitors(HWND hPage)
{
    g_bAllMonitors = IsDlgButtonChecked(hPage, IDC_COLOR_ALL_MONITORS) == BST_CHECKED;
    SetMonitorButtonImage(hPage);
}

static void OnToggle(HWND hPage)
{
    TogglePageHalf(hPage, TREE_COLOR);
}

// ---- Dialog procedure ---------------------------------------------------------------------------------------------

static INT_PTR OnCommand(HWND hPage, WORD control, WORD notification)
{
    static const struct {
        WORD wControl;
        WORD wNotification;
        void (*lpfnHandle)(HWND hPage);
    } commands[] = {
        {IDC_COLOR_ALL_MONITORS, BN_CLICKED, OnAllMonitors},
        {IDC_COLOR_TOGGLE, BN_CLICKED, OnToggle},
        {IDC_COLOR_DIRECT_LINK, BN_CLICKED, OnDirectLink},
        {IDC_COLOR_BROWSE, BN_CLICKED, OnBrowseApp},
        {IDC_COLOR_APP_UPDATE, BN_CLICKED, OnUpdateApp},
        {IDC_COLOR_APP_DELETE, BN_CLICKED, OnDeleteApp},
        {IDC_COLOR_PROFILE_COMBO, CBN_SELCHANGE, OnProfileChosen},
        {IDC_COLOR_PROFILE_ADD, BN_CLICKED, OnRegisterProfile},
        {IDC_COLOR_PROFILE_DELETE, BN_CLICKED, OnDeleteProfile},
        {IDC_COLOR_ECO, BN_CLICKED, OnEcoButton},
        {IDC_COLOR_TEMP, CBN_SELCHANGE, OnColorTemp},
    };
    for (const auto &command : commands)
        if (command.wControl == control && command.wNotification == notification)
            command.lpfnHandle(hPage);
    if (control == IDC_COLOR_APP_LIST)
        OnAppList(hPage); // whatever it notifies of
    if (const COLORCONTROL *edited = ColorControlOfEdit(control))
        OnColorEdit(hPage, edited, notification);
    return FALSE;
}

INT_PTR CALLBACK ColorDlgProc(HWND hPage, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_INITDIALOG:
        return OnInit(hPage);
    case WM_COMMAND:
        return OnCommand(hPage, LOWORD(wParam), HIWORD(wParam));
    case WM_HSCROLL:
        OnColorSlider(hPage, reinterpret_cast<HWND>(lParam));
        return FALSE;
    case WM_DROPFILES:
        OnDropApp(hPage, reinterpret_cast<HDROP>(wParam));
        return FALSE;
    case WM_CLOSE:
        DestroyWindow(hPage);
        return TRUE;
    }
    return FALSE;
}
