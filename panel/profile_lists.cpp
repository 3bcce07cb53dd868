// Filling of the colour page's two lists.
#include "panel/profile_lists.h"

#include "kernel/base/texts.h"
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
    const HWND hList = GetDlgItem(hPage, IDC_COLOR_APP_LIST);
    if (!hList)
        return;
    char *path = g_AppProfile[nSlot].szName;
    const char *backslash = LastBackslash(path);
    const LRESULT item =
        SendMessageA(hList, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(backslash ? backslash + 1 : path));
    if (item >= 0)
        SendMessageA(hList, LB_SETITEMDATA, static_cast<WPARAM>(item), nSlot);
}

void AddProfileComboItem(HWND hPage, int nPosition, LPCSTR lpszText)
{
    const HWND hCombo = GetDlgItem(hPage, IDC_COLOR_PROFILE_COMBO);
    if (!hCombo)
        return;
    const LRESULT item =
        SendMessageA(hCombo, CB_INSERTSTRING, static_cast<WPARAM>(nPosition), reinterpret_cast<LPARAM>(lpszText));
    if (item >= 0)
        SendMessageA(hCombo, CB_SETITEMDATA, static_cast<WPARAM>(item), nPosition);
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
