// The named colour profiles of the colour page: list, "register" and "delete".
//
// Kernel thread.
#pragma once

#include <windows.h>

// An entry was chosen: its profile is applied. The first entry stands for none.
void OnProfileChosen(HWND hPage);

// Makes a profile of the current settings, named by its slot.
void OnRegisterProfile(HWND hPage);

// Deletes the chosen profile, unless it is one of the system's own.
void OnDeleteProfile(HWND hPage);

// Writes a profile to the selected monitor, also in the all-monitors mode, and shows it. nItemData: slot + 1; any other
// number does nothing.
void ApplySysProfile(HWND hPage, int nItemData);
