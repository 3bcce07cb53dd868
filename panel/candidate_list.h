// The list boxes with the launcher's candidates.
//
// Kernel thread.
#pragma once

#include <windows.h>

// Adds the name of every candidate to a list box, in the order of the slots. Result: 1, or 0 when one could not be
// added.
int FillCandidateList(HWND hPage, int nList);

// The name in an entry, or in the selected one. lpszName: SETTING_TEXT_SIZE bytes. False with an empty text without
// such an entry.
bool ReadCandidateEntry(HWND hPage, int nList, int nEntry, char *lpszName);
bool ReadSelectedCandidate(HWND hPage, int nList, char *lpszName);
