// The first profiles, and the file that they go to.
#include "profiles/profile_load.h"

#include "kernel/base/texts.h"
#include "panel/resources/strings.h"
#include "profiles/first_run_apps.h"
#include "profiles/profile_store.h"
#include "settings/ini.h"
#include "settings/ini_copy.h"

void InitSystemProfiles()
{
    static const struct {
        UINT name;
        PROFILEENTRY values;
    } profiles[SYS_PROFILE_FIRST_USER] = {
        // A brightness of 255 is more than any monitor's maximum: these three ask for all that there is.
        {IDS_PROFILE_PHOTO, {"", 0, 65, 255, 0, 1, 0, 0, 0, "", ""}},
        {IDS_PROFILE_FILM, {"", 0, 65, 255, 0, 8, 0, 0, 0, "", ""}},
        {IDS_PROFILE_TELEVISION, {"", 0, 70, 255, 0, 8, 0, 0, 0, "", ""}},
        {IDS_PROFILE_TEXT, {"", 1, 70, 0, 80, 2, 0, 0, 0, "", ""}},
    };
    for (int slot = 0; slot < SYS_PROFILE_FIRST_USER; ++slot) {
        PROFILEENTRY *entry = &g_SysProfile[slot];
        *entry = profiles[slot].values;
        wsprintfA(entry->szSection, SYS_PROFILE_SECTION, slot);
        LoadText(profiles[slot].name, entry->szName, sizeof entry->szName);
        lstrcpynA(entry->szAlias, entry->szName, sizeof entry->szAlias);
    }
}

// Makes the file when there is none. False when it was there, or cannot be opened.
static bool CreateProfileFile()
{
    const HANDLE hFile = CreateFileA(g_szProfileIni, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                     OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    const bool created = GetLastError() == NO_ERROR;
    if (hFile == INVALID_HANDLE_VALUE)
        return false;
    CloseHandle(hFile);
    return created;
}

static void WriteFirstProfiles()
{
    for (int slot = 0; slot < SYS_PROFILE_FIRST_USER; ++slot)
        WriteSysProfile(slot);
    CreateAppProfiles();
}

void OpenProfileStore(LPCSTR lpszFileName)
{
    InitSystemProfiles();
    BuildIniPath(g_szProfileIni, lpszFileName);
    RepairIniFile(g_szProfileIni);
    if (CreateProfileFile())
        WriteFirstProfiles();
}
