// The panel dialog.
#pragma once

#include <windows.h>

// Opens the panel with a window as its owner, or brings the open one to the front. Kernel thread. Result: 1 when it was
// opened, else 0.
int ShowPanel(HWND hOwner);
