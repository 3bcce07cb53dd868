// Colour profiles from the list to the monitor, and into the list.
#include "panel/color_page_profiles.h"

#include "kernel/base/texts.h"
#include "monitor/color_settings.h"
#include "monitor/selection.h"
#include "monitor/vcp.h"
#include "panel/color_page_controls.h"
#include "panel/color_page_images.h"
#include "panel/page_message.h"
#include "panel/profile_lists.h"
#include "panel/resources/controls.h"
#include "panel/resources/resource.h"
#include "panel/resources/strings.h"
#include "profiles/profile_store.h"

// ---- Apply --------------------------------------------------------------------------------------------------------

// Writes one value of a profile and keeps it; of gains that the preset leaves to the monitor, reads those instead.
static void ApplyFeature(LONG monitor, const COLORFEATURE &feature, const COLORSETTING *profile)
{
    if (!IsToBeWritten(feature, profile, sizeof *profile)) {
        ReadColorFeature(monitor, feature);
        return;
    }
    // The maximum of this ECO state may never have been read.
    if (HasEcoState(feature))
        GetVCP(monitor, feature.bCode, &feature.lpMaxima[monitor]);
    const LONG value = GetColorValue(profile, feature);
    SetColorValue(&g_CurSetting[monitor], feature, value);
    SetVCP(monitor, feature.bCode, LOWORD(value));
}

void ApplySysProfile(HWND hPage, int nItemData)
{
    if (nItemData < 1 || nItemData > SYS_PROFILE_COUNT)
        return;
    COLORSETTING profile = {};
    SettingFromProfile(&profile, &g_SysProfile[nItemData - 1]);
    const LONG monitor = g_nCurMonitor;
    bUiReady = 0; // the edits change now, and the choice stays
    for (const COLORFEATURE &feature : COLOR_FEATURES)
        if (IsOfEcoState(feature, profile.dwEco))
            ApplyFeature(monitor, feature, &profile);
    ShowColorSetting(hPage, &profile);
    ShowEcoImage(hPage, profile.dwEco != 0);
    bUiReady = 1;
}

void OnProfileChosen(HWND hPage)
{
    const int position = SelectedComboEntry(hPage, IDC_COLOR_PROFILE_COMBO);
    if (position > 0)
        ApplySysProfile(hPage, ComboEntryData(hPage, IDC_COLOR_PROFILE_COMBO, position));
}

// ---- Register and delete ------------------------------------------------------------------------------------------

static int FreeProfileSlot()
{
    int slot = SYS_PROFILE_FIRST_USER;
    while (slot < SYS_PROFILE_COUNT && g_SysProfile[slot].szName[0] != '\0')
        ++slot;
    return slot;
}

void OnRegisterProfile(HWND hPage)
{
    const int slot = FreeProfileSlot();
    if (slot == SYS_PROFILE_COUNT || g_nSysProfile >= SYS_PROFILE_COUNT) {
        ShowPageError(hPage, IDS_PROFILES_FULL, ERROR_CAPTION);
        return;
    }
    char word[64] = "";
    char name[96];
    LoadText(IDS_PROFILE_NEW, word, sizeof word);
    wsprintfA(name, "%s%d", word, slot);
    AddProfileComboItem(hPage, slot + 1, name);
    SetProfileData(PROFILE_SYS_SET, slot, name, name);
    ++g_nSysProfile; // before the write: its message box lets the user open this page anew, which counts afresh
    WriteSysProfile(slot);
    // The entry before the new one, which nothing has been applied from.
    SelectComboEntry(hPage, IDC_COLOR_PROFILE_COMBO, slot);
}

void OnDeleteProfile(HWND hPage)
{
    const int position = SelectedComboEntry(hPage, IDC_COLOR_PROFILE_COMBO);
    if (position <= SYS_PROFILE_FIRST_USER) {
        ShowPageError(hPage, IDS_SYSTEM_PROFILE_STAYS, PRODUCT_TITLE);
        return;
    }
    DeleteSysProfile(ComboEntryData(hPage, IDC_COLOR_PROFILE_COMBO, position) - 1);
    DeleteComboEntry(hPage, IDC_COLOR_PROFILE_COMBO, position);
    SelectComboEntry(hPage, IDC_COLOR_PROFILE_COMBO, position - 1);
}
