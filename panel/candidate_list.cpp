// Candidates in list boxes.
#include "panel/candidate_list.h"

#include "launcher/candidates.h"
#include "panel/resources/controls.h"
#include "settings/registry.h"

int FillCandidateList(HWND hPage, int nList)
{
    char name[SETTING_TEXT_SIZE];
    for (int slot = 0; slot < CANDIDATE_COUNT; ++slot)
        if (ReadCandidateName(slot, name) && AddListEntry(hPage, nList, name) < 0)
            return 0;
    return 1;
}

bool ReadCandidateEntry(HWND hPage, int nList, int nEntry, char *lpszName)
{
    return ReadListEntry(hPage, nList, nEntry, lpszName, SETTING_TEXT_SIZE);
}

bool ReadSelectedCandidate(HWND hPage, int nList, char *lpszName)
{
    return ReadCandidateEntry(hPage, nList, SelectedListEntry(hPage, nList), lpszName);
}
