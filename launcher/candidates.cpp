// The slots of the launcher's candidates.
#include "launcher/candidates.h"

#include "launcher/launcher_settings.h"

#include <cstring>

bool ReadCandidateName(int nSlot, char *lpszName)
{
    // An empty name counts as none: it could be neither seen nor chosen.
    return ReadLauncherText(SETTING_CANDIDATE_NAME, lpszName, nSlot) && lpszName[0];
}

bool ReadCandidatePath(int nSlot, char *lpszPath)
{
    return ReadLauncherText(SETTING_CANDIDATE_PATH, lpszPath, nSlot);
}

int FindCandidate(LPCSTR lpszName)
{
    char stored[SETTING_TEXT_SIZE];
    for (int slot = 0; slot < CANDIDATE_COUNT; ++slot)
        if (ReadCandidateName(slot, stored) && strcmp(stored, lpszName) == 0)
            return slot;
    return -1;
}

int FindFreeCandidate()
{
    char stored[SETTING_TEXT_SIZE];
    for (int slot = 0; slot < CANDIDATE_COUNT; ++slot)
        if (!ReadCandidateName(slot, stored))
            return slot;
    return -1;
}

void WriteCandidate(int nSlot, LPCSTR lpszName, LPCSTR lpszPath)
{
    WriteLauncherText(SETTING_CANDIDATE_NAME, lpszName, nSlot);
    WriteLauncherText(SETTING_CANDIDATE_PATH, lpszPath, nSlot);
}

void DeleteCandidate(int nSlot)
{
    DeleteSettingValue(SETTING_CANDIDATE_NAME, nSlot);
    DeleteSettingValue(SETTING_CANDIDATE_PATH, nSlot);
}
