// Colour profiles from the list to the monitor, and into the list.
#include "panel/color_page_profiles.h"

#include "kernel/base/texts.h"
#include "monitor/selection.h"
#include "monitor/vcp.h"
#include "panel/color_page_changes.h"
#include "panel/color_page_images.h"
#include "panel/page_message.h"
#include "panel/profile_lists.h"
#include "panel/resources/controls.h"
#include "panel/resources/resource.h"
#include "panel/resources/strings.h"
#include "profiles/profile_store.h"

#include <initializer_list>

// ---- Apply --------------------------------------------------------------------------------------------------------

static void WriteItem(LONG monitor, COLORITEM item, WORD value)
{
    *ColorItemValue(monitor, item) = value;
    SetVCP(monitor, ColorItemCode(item), value);
}

static void ApplyBrightness(HWND hPage, LONG monitor, const COLORSETTING *profile)
{
    const bool eco = profile->dwEco != 0;
    g_CurSetting[monitor].dwEco = profile->dwEco;
    SetVCP(monitor, VCP_ECO_MODE, static_cast<WORD>(profile->dwEco));
    // The maximum of this ECO state may never have been read.
    GetVCP(monitor, VCP_BRIGHTNESS, ColorItemMaximum(monitor, COLOR_BRIGHTNESS));
    WriteItem(monitor, COLOR_BRIGHTNESS, eco ? profile->wBrightEco : profile->wBright);
    SetBrightnessItem(hPage, eco, *ColorItemValue(monitor, COLOR_BRIGHTNESS));
    ShowEcoImage(hPage, eco);
}

static void ApplyContrast(HWND hPage, LONG monitor, const COLORSETTING *profile)
{
    WriteItem(monitor, COLOR_CONTRAST, profile->wContrast);
    SetContrastItem(hPage, profile->wContrast);
}

static void ApplyGains(LONG monitor, const COLORSETTING *profile)
{
    WriteItem(monitor, COLOR_RED, profile->wRed);
    WriteItem(monitor, COLOR_GREEN, profile->wGreen);
    WriteItem(monitor, COLOR_BLUE, profile->wBlue);
}

static void ApplyColorTemp(HWND hPage, LONG monitor, const COLORSETTING *profile)
{
    g_CurSetting[monitor].wColorTemp = profile->wColorTemp;
    SetVCP(monitor, VCP_COLOR_PRESET, static_cast<WORD>(profile->wColorTemp));
    SelectColorTemp(hPage, profile->wColorTemp);
    const bool user = profile->wColorTemp >= COLOR_PRESET_FIRST_USER;
    if (user)
        ApplyGains(monitor, profile);
    else
        for (const COLORITEM item : {COLOR_RED, COLOR_GREEN, COLOR_BLUE})
            ReadColorItem(monitor, item);
    ShowRgbControls(hPage, user);
}

void ApplySysProfile(HWND hPage, int nItemData)
{
    if (nItemData < 1 || nItemData > SYS_PROFILE_COUNT)
        return;
    COLORSETTING profile = {};
    SettingFromProfile(&profile, &g_SysProfile[nItemData - 1]);
    const LONG monitor = g_nCurMonitor;
    bUiReady = 0; // the edits change now, and the choice stays
    ApplyBrightness(hPage, monitor, &profile);
    ApplyContrast(hPage, monitor, &profile);
    ApplyColorTemp(hPage, monitor, &profile);
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
