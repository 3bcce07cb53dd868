// Enabling of a page's controls without losing the keyboard.
#pragma once

#include <windows.h>

// Enables or disables a control of a page. One that has the focus passes it on to the page's next control before it is
// disabled: keys would go nowhere. Kernel thread.
void EnablePageControl(HWND hPage, int nControl, BOOL bEnable);
