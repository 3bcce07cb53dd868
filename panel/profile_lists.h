// The colour page's lists of colour profiles and of registered applications, and the load that fills them. Windows
// without the lists are left alone.
//
// Kernel thread.
#pragma once

#include <windows.h>

// Loads the store, at the very first time after making the file with the system profiles and those of installed
// programs. hWnd: the colour page, whose two lists are filled, or a window without them.
void LoadProfiles(HWND hWnd, LPCSTR lpszFileName);

// Adds a registered application to the page's list: file name of the program (all of szName when it has no backslash),
// with the slot as item data. Counts g_nAppProfile up, with or without a list. A slot out of range does nothing.
void AddAppListItem(HWND hPage, int nSlot);

// Inserts an entry into the page's list of colour profiles, with its position as item data. A position beyond the end
// is refused by the list: behind a gap, profiles are loaded but not shown.
void AddProfileComboItem(HWND hPage, int nPosition, LPCSTR lpszText);
