// The list boxes with the launcher's candidates.
//
// Kernel thread.
#pragma once

#include <windows.h>

// Adds the name of every candidate to a list box, in the order of the slots. Result: 1, or 0 when one could not be
// added.
int FillCandidateList(HWND hPage, int nList);

// The text of an entry. lpszText: SETTING_TEXT_SIZE bytes. Result: 1; 0 with an empty text for an index that is none.
int ReadListText(HWND hPage, int nList, LRESULT index, char *lpszText);

// The selected entry. Result: 1; 0 with an empty text without a selection.
int ReadSelectedText(HWND hPage, int nList, char *lpszText);
