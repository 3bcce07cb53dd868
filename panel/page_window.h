// The window of a page, in its place in the panel.
//
// Kernel thread.
#pragma once

#include "panel/page_table.h"

#include <windows.h>

// Creates the page of a tree item, puts it in its place beside the tree and shows it. Result: its window, or null.
HWND CreatePageWindow(HWND hPanel, TREEITEM item);
