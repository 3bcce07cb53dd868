// Monitors with all that the panel can be about, and the hands that open it and walk through its tree.
#pragma once

#include "panel/page_tree.h"
#include "panel/pages.h"
#include "support/hands.h"
#include "support/test_host.h"

// Two monitors, "NRV-PA1" and "NRV-PA2", alike: colours, tuner and video inputs, a button lock, a press register.
std::vector<TestMonitor> FullMonitors();

// "lvcap.ini" and "Launcher.ini" for them: six labelled buttons.
void WriteMonitorFiles();

// What ChooseAllItems counts once the launcher's items are in the tree, which they are after a change of monitor.
constexpr int PAGES_WITH_LAUNCHER = 14;

// Opens the panel as the host does. False when it did not come.
bool OpenPanel(TestHost *host);

void ChooseItem(TREEITEM item);
bool IsPageShown();

// Chooses each item of the tree but the root in turn. Result: how many pages were there to be seen.
int ChooseAllItems();

// Opens the panel anew, with the launcher's items in its tree, at a page. Null when that does not come.
HWND OpenPage(TestHost *host, TREEITEM item);

void ChooseMonitor(int monitor);
void ClosePanel();
