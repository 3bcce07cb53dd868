// Filling of the colour page's two lists.
#include "panel/profile_lists.h"

#include "kernel/base/texts.h"
#include "panel/resources/controls.h"
#include "panel/resources/resource.h"
#include "panel/resources/strings.h"
#include "profiles/profile_load.h"
#include "profiles/profile_store.h"
#include "settings/ini.h"

// ---- Entries ------------------------------------------------------------------------------------------------------

void AddAppListItem(HWND hPage, int nSlot)
{
    if (nSlot < 0 || nSlot >= APP_PROFILE_COUNT)
        return;
    ++g_nAppProfile;
    if (!GetDlgItem(hPage, IDC_COLOR_APP_LIST))
        return;
    char *path = g_AppProfile[nSlot].szName;
    const char *backslash = LastBackslash(path);
    const int entry = AddListEntry(hPage, IDC_COLOR_APP_LIST, backslash ? backslash + 1 : path);
    if (entry >= 0)
        SetListEntryData(hPage, IDC_COLOR_APP_LIST, entry, nSlot);
}

void AddProfileComboItem(HWND hPage, int nPosition, LPCSTR lpszText)
{
    if (!GetDlgItem(hPage, IDC_COLOR_PROFILE_COMBO))
        return;
    const int entry = InsertComboEntry(hPage, IDC_COLOR_PROFILE_COMBO, nPosition, lpszText);
    if (entry >= 0)
        SetComboEntryData(hPage, IDC_COLOR_PROFILE_COMBO, entry, nPosition);
}

static void AddNoProfileItem(HWND hPage)
{
    char text[64];
    LoadText(IDS_PROFILE_NONE, text, sizeof text);
    AddProfileComboItem(hPage, 0, text);
}

// ---- Loading ------------------------------------------------------------------------------------------------------

// Slots without a section keep what they hold.
void LoadProfiles(HWND hWnd, LPCSTR lpszFileName)
{
    g_nSysProfile = 0;
    OpenProfileStore(lpszFileName);

    // A window without the lists, as at the start, is asked for them once instead of for every profile.
    const HWND hPage = GetDlgItem(hWnd, IDC_COLOR_APP_LIST) ? hWnd : nullptr;
    AddNoProfileItem(hPage);
    for (int slot = 0; slot < SYS_PROFILE_COUNT; ++slot) {
        if (!IsSysProfileInFile(slot))
            continue;
        SetProfileData(PROFILE_SYS_LOAD, slot, nullptr, nullptr);
        AddProfileComboItem(hPage, slot + 1, g_SysProfile[slot].szName);
        ++g_nSysProfile;
    }
    g_nAppProfile = 0;
    for (int slot = 0; slot < APP_PROFILE_COUNT; ++slot) {
        if (!IsAppProfileInFile(slot))
            continue;
        SetProfileData(PROFILE_APP_LOAD, slot, nullptr, nullptr);
        AddAppListItem(hPage, slot);
    }
}
