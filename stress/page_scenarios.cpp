// Clicks on the pages.
#include "stress/page_scenarios.h"

#include "kernel/base/plugin_state.h"
#include "launcher/launcher_settings.h"
#include "monitor/vcp.h"
#include "panel/resources/resource.h"
#include "profiles/profile_store.h"
#include "support/clock.h"
#include "timer/reservation_store.h"

#include <commctrl.h>

static HWND s_hPage; // null when it did not come: an act without it would be none

static void OpenAt(STAGE *stage, TREEITEM item)
{
    {
        const auto lock = stage->run.host.Lock();
        stage->run.host.monitors = FullMonitors();
    }
    g_nReservation = 0;
    for (RESERVATION &slot : g_Reservation)
        slot = {};
    s_hPage = OpenPage(&stage->run.host, item);
    CloseReservationFiles();
}

// ---- The panel ----------------------------------------------------------------------------------------------------

static bool s_Opened;

void OpenAndClosePanel(STAGE *stage)
{
    s_Opened = OpenPanel(&stage->run.host);
    ClosePanel();
}

std::string PanelNotOpened(STAGE *)
{
    return Differs("opened", s_Opened, 1);
}

// Not anew each time: showing a page again is what users do all day.
void OpenPanelAtRoot(STAGE *stage)
{
    if (g_hPanelDlg)
        ChooseItem(TREE_ROOT);
    else
        OpenAt(stage, TREE_ROOT);
    CloseReservationFiles();
}

std::string PageNotShown(STAGE *)
{
    return Differs("shown", IsPageShown(), 1);
}

// ---- Colours ------------------------------------------------------------------------------------------------------

void OpenColorPage(STAGE *stage)
{
    for (PROFILEENTRY &entry : g_AppProfile)
        entry = {};
    for (PROFILEENTRY &entry : g_SysProfile)
        entry = {};
    OpenAt(stage, TREE_COLOR);
}

void ChangeColors(STAGE *)
{
    Pick(s_hPage, IDC_COLOR_PROFILE_COMBO, 2);
    Slide(s_hPage, IDC_COLOR_CONTRAST_SLIDER, 33);
    Click(s_hPage, IDC_COLOR_ECO);
}

std::string ColorsNotChanged(STAGE *stage)
{
    return FeatureDiffers(stage, 0, VCP_CONTRAST, 33) + FeatureDiffers(stage, 0, VCP_COLOR_PRESET, 8) +
           FeatureDiffers(stage, 0, VCP_ECO_MODE, 1);
}

void StoreProfiles(STAGE *)
{
    Click(s_hPage, IDC_COLOR_PROFILE_ADD);
    DropFiles(s_hPage, IDC_COLOR_APP_LIST, {IniFolder::Path("front_program.exe")});
}

std::string ProfilesNotStored(STAGE *)
{
    return Differs("colour profiles", g_nSysProfile, 5) + Differs("programs", g_nAppProfile, 1);
}

// ---- Buttons ------------------------------------------------------------------------------------------------------

void OpenLockPage(STAGE *stage)
{
    OpenAt(stage, TREE_BUTTON_LOCK);
}

void LockButton(STAGE *)
{
    Click(s_hPage, IDC_LOCK_TOGGLE_2);
}

std::string ButtonNotLocked(STAGE *stage)
{
    return FeatureDiffers(stage, 0, VCP_BUTTON_LOCK, ButtonBit(2));
}

void OpenButtonPage(STAGE *stage)
{
    OpenAt(stage, TREE_BUTTON_2);
}

void EnableLauncher(STAGE *)
{
    Click(s_hPage, IDC_BUTTON_2_ENABLE);
}

std::string LauncherNotEnabled(STAGE *)
{
    return Differs("launcher functions", static_cast<LONG>(GetLauncherCount()), 3);
}

// ---- Reservations -------------------------------------------------------------------------------------------------

void OpenReservationPage(STAGE *stage)
{
    nChangeMsg = CHANGE_AT_ONCE;
    OpenAt(stage, TREE_RESERVATION);
    SYSTEMTIME day = {};
    day.wYear = 2006;
    day.wMonth = 6;
    day.wDay = 11;
    for (const int control : {IDC_RESERVATION_START_DATE, IDC_RESERVATION_END_DATE})
        SendDlgItemMessageA(s_hPage, control, DTM_SETSYSTEMTIME, GDT_VALID, reinterpret_cast<LPARAM>(&day));
    Pick(s_hPage, IDC_RESERVATION_START_HOUR, 20);
    Pick(s_hPage, IDC_RESERVATION_END_HOUR, 21);
    Pick(s_hPage, IDC_RESERVATION_CHANNEL, 0);
}

void EnterReservation(STAGE *)
{
    Click(s_hPage, IDC_RESERVATION_ADD);
    Click(s_hPage, IDC_RESERVATION_ASK);
}

std::string ReservationNotEntered(STAGE *)
{
    return Differs("reservations", g_nReservation, 1) + Differs("question", nChangeMsg, CHANGE_ASK_FIRST);
}
