// Files dropped on a list box.
//
// Kernel thread.
#pragma once

#include <windows.h>

// Hands the WM_DROPFILES of a list box, which has WS_EX_ACCEPTFILES, to its dialog, for as long as the list lives.
void PassDropsToDialog(HWND hDlg, int nList);
