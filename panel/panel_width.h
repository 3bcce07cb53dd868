// The panel's width: the base width, and what it is widened by for a page. The height never changes. Controls of a page
// that the panel's edge covers are left out of the tab order.
//
// Kernel thread. Widths in pixels.
#pragma once

#include <windows.h>

constexpr int SLIDE_STEP = 8;

// Takes the panel's present size as its base size.
void TakePanelSize(HWND hPanel);

// The panel's present width beyond the base width.
int PanelWidening(HWND hPanel);

// Sets the panel to its base width plus nWidening, at once.
void SetPanelWidening(HWND hPanel, int nWidening);

// Slides the panel in steps from nFrom to nTo, both counted from the base width and whole steps apart; either may be
// the larger. Blocks for about a millisecond a step.
void SlidePanel(HWND hPanel, int nFrom, int nTo);

// Slides the panel by nDelta, whole steps, from the width that it has now.
void SlidePanelBy(HWND hPanel, int nDelta);
