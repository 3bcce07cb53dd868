// Colour profiles and registered applications in "profile.ini".
#pragma once

#include <windows.h>

// Loads the store from a file beside the host's executable. hWnd: the colour page, whose lists are filled, or any other
// window. Kernel thread.
void LoadProfiles(HWND hWnd, LPCSTR lpszFileName);
