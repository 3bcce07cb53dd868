// The slots of the launcher's candidates.
#include "launcher/candidates.h"

#include "launcher/launcher_settings.h"
#include "settings/registry.h"

#include <cstring>

#define VALUE_CANDIDATE_NAME "Reservation_%d"
#define VALUE_CANDIDATE_PATH "Reservation_%d_Path"

static LPCSTR FormName(char (&name)[64], LPCSTR format, int slot)
{
    wsprintfA(name, format, slot);
    return name;
}

int ReadCandidateName(int nSlot, char *lpszName)
{
    char name[64];
    // An empty name counts as none: it could be neither seen nor chosen.
    return ReadLauncherText(FormName(name, VALUE_CANDIDATE_NAME, nSlot), lpszName) && lpszName[0];
}

int ReadCandidatePath(int nSlot, char *lpszPath)
{
    char name[64];
    return ReadLauncherText(FormName(name, VALUE_CANDIDATE_PATH, nSlot), lpszPath);
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
    char name[64];
    WriteLauncherText(FormName(name, VALUE_CANDIDATE_NAME, nSlot), lpszName);
    WriteLauncherText(FormName(name, VALUE_CANDIDATE_PATH, nSlot), lpszPath);
}

void DeleteCandidate(int nSlot)
{
    char name[64];
    DeleteLauncherText(FormName(name, VALUE_CANDIDATE_NAME, nSlot));
    DeleteLauncherText(FormName(name, VALUE_CANDIDATE_PATH, nSlot));
}
