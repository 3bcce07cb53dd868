// Which controls of a page the keyboard reaches.
//
// Kernel thread.
#pragma once

#include <windows.h>

// Enables or disables a control of a page. One that has the focus passes it on to the page's next control before it is
// disabled: keys would go nowhere.
void EnablePageControl(HWND hPage, int nControl, BOOL bEnable);

// After a change of the panel's width, and for a new page: Tab reaches those controls of a page that the panel shows,
// and none that its edge covers. An edit that nobody sees would be left with the next Tab, which writes its value.
void FollowPanelEdge(HWND hPanel);
