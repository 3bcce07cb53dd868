// Registered applications: choosing, registering, updating, deleting.
#include "panel/color_page_apps.h"

#include "kernel/base/texts.h"
#include "panel/color_page_controls.h"
#include "panel/color_page_images.h"
#include "panel/open_file.h"
#include "panel/page_message.h"
#include "panel/profile_lists.h"
#include "panel/resources/controls.h"
#include "panel/resources/resource.h"
#include "panel/resources/strings.h"
#include "profiles/app_path.h"
#include "profiles/foreground.h"
#include "profiles/profile_store.h"
#include "settings/ini.h"

#include <commdlg.h>

constexpr UINT ALL_FILES = 0xFFFFFFFF; // asks DragQueryFile for the number of files

// ---- List ---------------------------------------------------------------------------------------------------------

// The slot of the selected entry; -1 without a selection.
static int SelectedSlot(HWND hPage)
{
    const int entry = SelectedListEntry(hPage, IDC_COLOR_APP_LIST);
    const int slot = entry < 0 ? -1 : ListEntryData(hPage, IDC_COLOR_APP_LIST, entry);
    return slot >= 0 && slot < APP_PROFILE_COUNT ? slot : -1;
}

void EnableDirectLinkBox(HWND hPage)
{
    if (g_nAppProfile != 0)
        EnableWindow(GetDlgItem(hPage, IDC_COLOR_DIRECT_LINK), TRUE);
}

void SelectAppProfile(HWND hPage, int nSlot)
{
    if (nSlot < 0 || nSlot >= APP_PROFILE_COUNT)
        return;
    ApplyAppProfile(nSlot);
    COLORSETTING profile = {};
    SettingFromProfile(&profile, &g_AppProfile[nSlot]);
    ShowColorSetting(hPage, &profile);
    ShowEcoImage(hPage, profile.dwEco == 1);
}

void OnAppList(HWND hPage)
{
    const int slot = SelectedSlot(hPage);
    if (slot < 0)
        return;
    SetDlgItemTextA(hPage, IDC_COLOR_ALIAS, g_AppProfile[slot].szAlias);
    SetProfileData(PROFILE_APP_TAKE, slot, nullptr, nullptr);
    SelectAppProfile(hPage, slot);
}

// ---- Registration -------------------------------------------------------------------------------------------------

// Refuses when there is no room for one more.
static bool HasRoom(HWND hPage)
{
    if (g_nAppProfile < APP_PROFILE_COUNT)
        return true;
    ShowPageError(hPage, IDS_APPS_FULL, ERROR_CAPTION);
    return false;
}

static void AddApp(HWND hPage, LPCSTR path)
{
    if (IsRegisteredApp(path)) {
        ShowPageError(hPage, IDS_APP_REGISTERED, ERROR_CAPTION);
        return;
    }
    const int slot = GetFreeAppSection();
    if (slot < 0) { // the file has more than this page has loaded
        ShowPageError(hPage, IDS_APPS_FULL, ERROR_CAPTION);
        return;
    }
    SetProfileData(PROFILE_APP_SET, slot, path, path);
    WriteAppProfile(slot);
    AddAppListItem(hPage, slot);
    SetDlgItemTextA(hPage, IDC_COLOR_ALIAS, path);
    EnableDirectLinkBox(hPage);
}

int BrowseExeFile(HWND hPage, char *lpBuffer, DWORD cbBuffer)
{
    return cbBuffer >= MAX_PATH && ChooseFile(hPage, FILEKIND::Program, lpBuffer, nullptr);
}

void OnBrowseApp(HWND hPage)
{
    if (!HasRoom(hPage))
        return;
    char path[MAX_PATH] = {};
    const int chosen = BrowseExeFile(hPage, path, sizeof path);
    const DWORD error = chosen ? 0 : CommDlgExtendedError();
    if (!IsWindow(hPage))
        return;
    if (!chosen) {
        if (error)
            ShowPageError(hPage, IDS_FILE_DIALOG_FAILED, ERROR_CAPTION);
        return;
    }
    if (path[sizeof path - 1] != '\0')
        ShowPageError(hPage, IDS_FILE_NAME_TOO_LONG, ERROR_CAPTION);
    else
        AddApp(hPage, path);
}

void OnUpdateApp(HWND hPage)
{
    if (SelectedSlot(hPage) < 0 || !AskPageQuestion(hPage, IDS_ASK_APP_UPDATE))
        return;
    const int slot = SelectedSlot(hPage);
    if (slot < 0)
        return;
    PROFILEENTRY *entry = &g_AppProfile[slot];
    GetDlgItemTextA(hPage, IDC_COLOR_ALIAS, entry->szAlias, sizeof entry->szAlias);
    CutHalfCharacter(entry->szAlias);
    SetProfileData(PROFILE_APP_SET, slot, entry->szName, entry->szAlias);
    WriteAppProfile(slot);
}

void OnDeleteApp(HWND hPage)
{
    if (SelectedSlot(hPage) < 0 || !AskPageQuestion(hPage, IDS_ASK_APP_DELETE))
        return;
    const int slot = SelectedSlot(hPage);
    if (slot < 0)
        return;
    DeleteAppProfile(slot);
    DeleteListEntry(hPage, IDC_COLOR_APP_LIST, SelectedListEntry(hPage, IDC_COLOR_APP_LIST));
    SetDlgItemTextA(hPage, IDC_COLOR_ALIAS, "");
    if (g_nAppProfile == 0)
        EnableWindow(GetDlgItem(hPage, IDC_COLOR_DIRECT_LINK), FALSE);
}

// ---- Dropped files ------------------------------------------------------------------------------------------------

static void ShowNoExe(HWND hPage, LPCSTR path)
{
    ShowBox(hPage, path, ERROR_CAPTION, MB_OK);
    if (IsWindow(hPage))
        ShowPageError(hPage, IDS_NO_EXE_FILE, ERROR_CAPTION);
}

// A refused drop is left as it came, without a DragFinish.
static bool IsDropAccepted(HWND hPage, HDROP drop)
{
    if (!HasRoom(hPage))
        return false;
    UINT refusal = 0;
    if (DragQueryFileA(drop, ALL_FILES, nullptr, 0) > 1)
        refusal = IDS_ONE_FILE_ONLY;
    else if (DragQueryFileA(drop, 0, nullptr, 0) >= MAX_PATH)
        refusal = IDS_FILE_NAME_TOO_LONG;
    if (refusal)
        ShowPageError(hPage, refusal, ERROR_CAPTION);
    return refusal == 0;
}

void OnDropApp(HWND hPage, HDROP hDrop)
{
    if (!IsWindowEnabled(GetDlgItem(hPage, IDC_COLOR_APP_LIST))) { // DirectLink is on
        DragFinish(hDrop);
        return;
    }
    if (!IsDropAccepted(hPage, hDrop))
        return;
    char path[MAX_PATH] = "";
    DragQueryFileA(hDrop, 0, path, sizeof path);
    DragFinish(hDrop);
    ResolveIfShortcut(path);
    if (IsExeFile(path))
        AddApp(hPage, path);
    else
        ShowNoExe(hPage, path);
}
