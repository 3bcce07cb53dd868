// The two profile tables, and the way of their entries to the file and the monitors' records.
#include "profiles/profile_store.h"

#include "kernel/base/texts.h"
#include "monitor/selection.h"
#include "panel/resources/resource.h"
#include "panel/resources/strings.h"
#include "settings/ini.h"

#include <cstring>

// The store.
PROFILEENTRY g_SysProfile[SYS_PROFILE_COUNT];
PROFILEENTRY g_AppProfile[APP_PROFILE_COUNT];
int g_nSysProfile = 0;
int g_nAppProfile = 0;
char g_szProfileIni[MAX_PATH];
COLORSETTING g_DefSetting[MAX_MONITOR];

// What differs between the tables.
struct PROFILETABLE {
    PROFILEENTRY *lpEntries;
    int nSlots;
    int *lpnUsed;
    LPCSTR lpszSection; // format of the section names
};
static const PROFILETABLE s_Sys = {g_SysProfile, SYS_PROFILE_COUNT, &g_nSysProfile, SYS_PROFILE_SECTION};
static const PROFILETABLE s_App = {g_AppProfile, APP_PROFILE_COUNT, &g_nAppProfile, APP_PROFILE_SECTION};

#define NO_NAME "?" // a section without a "name", or with this one, is absent

static bool IsSlot(const PROFILETABLE &table, int slot)
{
    return slot >= 0 && slot < table.nSlots;
}

// ---- File ---------------------------------------------------------------------------------------------------------

static void FormSectionName(const PROFILETABLE &table, int slot, char (&name)[PROFILE_SECTION_NAME_SIZE])
{
    wsprintfA(name, table.lpszSection, slot);
}

static bool IsSectionThere(const PROFILETABLE &table, int slot)
{
    char section[PROFILE_SECTION_NAME_SIZE];
    char name[PROFILE_SECTION_TEXT_SIZE];
    FormSectionName(table, slot, section);
    GetPrivateProfileStringA(section, "name", NO_NAME, name, sizeof name, g_szProfileIni);
    return strcmp(name, NO_NAME) != 0;
}

static int WriteSection(const PROFILETABLE &table, int slot, LPCSTR text)
{
    char section[PROFILE_SECTION_NAME_SIZE];
    FormSectionName(table, slot, section);
    return WriteIniSection(g_szProfileIni, section, text);
}

static int WriteEntry(const PROFILETABLE &table, int slot)
{
    if (!IsSlot(table, slot))
        return 0;
    char text[PROFILE_SECTION_TEXT_SIZE];
    FormSectionName(table, slot, table.lpEntries[slot].szSection);
    FormatProfileText(&table.lpEntries[slot], text);
    return WriteSection(table, slot, text);
}

static void LoadEntry(const PROFILETABLE &table, int slot)
{
    PROFILEENTRY *entry = &table.lpEntries[slot];
    char text[PROFILE_SECTION_TEXT_SIZE] = "";
    FormSectionName(table, slot, entry->szSection);
    GetPrivateProfileSectionA(entry->szSection, text, sizeof text, g_szProfileIni);
    JoinSectionLines(text, sizeof text);
    ParseProfileText(entry, text);
}

static void DeleteEntry(const PROFILETABLE &table, int slot)
{
    if (!IsSlot(table, slot))
        return;
    WriteSection(table, slot, "\0");
    table.lpEntries[slot] = {};
    --*table.lpnUsed;
}

int WriteAppProfile(int nSlot)
{
    return WriteEntry(s_App, nSlot);
}

int WriteSysProfile(int nSlot)
{
    if (!IsSlot(s_Sys, nSlot))
        return 0;
    if (WriteEntry(s_Sys, nSlot))
        return 1;
    ShowStringBox(nullptr, IDS_PROFILE_NOT_SAVED, PRODUCT_TITLE, MB_OK | MB_ICONERROR);
    return 0;
}

void DeleteAppProfile(int nSlot)
{
    DeleteEntry(s_App, nSlot);
}

void DeleteSysProfile(int nSlot)
{
    DeleteEntry(s_Sys, nSlot);
}

bool IsSysProfileInFile(int nSlot)
{
    return IsSlot(s_Sys, nSlot) && IsSectionThere(s_Sys, nSlot);
}

bool IsAppProfileInFile(int nSlot)
{
    return IsSlot(s_App, nSlot) && IsSectionThere(s_App, nSlot);
}

int GetFreeAppSection()
{
    for (int slot = 0; slot < APP_PROFILE_COUNT; ++slot)
        if (!IsSectionThere(s_App, slot))
            return slot;
    return -1;
}

// ---- Values -------------------------------------------------------------------------------------------------------

void SettingFromProfile(COLORSETTING *lpSetting, const PROFILEENTRY *lpEntry)
{
    for (const COLORFEATURE &feature : COLOR_FEATURES)
        SetColorValue(lpSetting, feature, GetProfileValue(lpEntry, feature));
}

// Signed on the way back: a value that could not be read is -1 again.
static void ProfileFromSetting(PROFILEENTRY *entry, const COLORSETTING *setting)
{
    for (const COLORFEATURE &feature : COLOR_FEATURES)
        SetProfileValue(entry, feature, GetColorValue(setting, feature));
}

// The source may be the target itself.
static void CopyText(char (&target)[PROFILE_TEXT_SIZE], LPCSTR source)
{
    if (source != target)
        lstrcpynA(target, source ? source : "", sizeof target);
}

static void SetEntry(const PROFILETABLE &table, int slot, LPCSTR name, LPCSTR alias, const COLORSETTING *settings)
{
    PROFILEENTRY *entry = &table.lpEntries[slot];
    FormSectionName(table, slot, entry->szSection);
    CopyText(entry->szName, name);
    CopyText(entry->szAlias, alias);
    if (IsMonitorIndex(g_nCurMonitor))
        ProfileFromSetting(entry, &settings[g_nCurMonitor]);
}

static void TakeEntry(const PROFILETABLE &table, int slot)
{
    if (IsMonitorIndex(g_nCurMonitor))
        SettingFromProfile(&g_CurSetting[g_nCurMonitor], &table.lpEntries[slot]);
}

void SetProfileData(int nMode, int nSlot, LPCSTR lpszName, LPCSTR lpszAlias)
{
    const PROFILETABLE &table = nMode >= PROFILE_SYS_CLEAR ? s_Sys : s_App;
    if (!IsSlot(table, nSlot))
        return;
    switch (nMode) {
    case PROFILE_APP_CLEAR:
    case PROFILE_SYS_CLEAR:
        table.lpEntries[nSlot] = {};
        break;
    case PROFILE_APP_LOAD:
    case PROFILE_SYS_LOAD:
        LoadEntry(table, nSlot);
        break;
    case PROFILE_APP_SET:
    case PROFILE_SYS_SET:
        SetEntry(table, nSlot, lpszName, lpszAlias, g_CurSetting);
        break;
    case PROFILE_APP_SET_DEFAULTS:
        SetEntry(table, nSlot, lpszName, lpszAlias, g_DefSetting);
        break;
    case PROFILE_APP_TAKE:
    case PROFILE_SYS_TAKE:
        TakeEntry(table, nSlot);
        break;
    }
}
