// Texts that are wider than their control: places are fixed in the templates, fonts and button labels differ.
//
// Kernel thread.
#pragma once

#include <windows.h>

// Gives a check box or a label a narrower font in which its present text fits; does nothing when it fits already. The
// font belongs to the control until ReleaseFittedText.
void FitText(HWND hDlg, int nControl);

// Releases the font of FitText, if there is one. For the end of the dialog.
void ReleaseFittedText(HWND hDlg, int nControl);
