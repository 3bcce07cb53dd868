// The load of the profile store, and what a first run puts into it.
//
// Kernel thread.
#pragma once

#include <windows.h>

// Puts the four system profiles into their slots, in memory only.
void InitSystemProfiles();

// Makes the store ready to be loaded: the system profiles in memory, the path, the file repaired or, at the very first
// time, made with the system profiles and those of installed programs.
void OpenProfileStore(LPCSTR lpszFileName);
