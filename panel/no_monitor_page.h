// The page that tells what to check when there is no monitor to work with. It is not one of the pages that a choice in
// the tree destroys: the no-monitor form of the panel keeps it apart.
//
// Kernel thread.
#pragma once

#include <windows.h>

void CreateNoMonitorPage(HWND hPanel);

// Destroys the page if the panel still knows it: a click on one of its buttons makes the panel forget it.
void DestroyNoMonitorPage();

bool IsNoMonitorPageOpen();
