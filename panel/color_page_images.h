// Images and tooltips of the colour page.
//
// Kernel thread. Results: 1, or 0 when an image cannot be loaded; then the rest stays as it is.
#pragma once

#include <windows.h>

// Labels and tips that never change.
int SetColorPageImages(HWND hPage);

// The two buttons whose image follows their check.
int SetMonitorButtonImage(HWND hPage);
int SetEcoButtonImage(HWND hPage);

// The ECO button's image for an ECO state, whatever its check.
bool ShowEcoImage(HWND hPage, bool bEco);
