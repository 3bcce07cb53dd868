// The bitmaps of the resources on controls. A bitmap that a dialog template names is made anew with each dialog, and
// not every system's control deletes it; those shown here are loaded once.
//
// Kernel thread.
#pragma once

#include <windows.h>

// Gives a control a bitmap by BM_SETIMAGE or STM_SETIMAGE. False when it cannot be loaded.
bool SetControlImage(HWND hDlg, int nControl, UINT uMessage, UINT uImage);
