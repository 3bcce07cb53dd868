// The pages of the panel: child dialogs, of which one exists at a time, and the choice of one in the tree.
//
// Kernel thread.
#pragma once

#include "panel/page_table.h"

#include <windows.h>

// Shows what an item of the tree stands for, at the width that belongs to it. TREE_NONE changes nothing.
void SelectPage(HWND hPanel, TREEITEM item);

// Destroys whatever page there is and creates the item's, to the right of the tree. Without its template there is no
// page afterwards.
void CreatePage(HWND hPanel, TREEITEM item);

// Destroys the pages that exist; the no-monitor page is none of them.
void DestroyPages();

// The window of the page that an item opens, of either form of it; null when it does not exist.
HWND PageWindow(TREEITEM item);

// Covers or uncovers a page's second half, as the page's button for it is pressed. item: the one that opens the page
// with that half. The page stays as it is: the panel's edge slides.
void TogglePageHalf(HWND hPage, TREEITEM item);

// Forgets a page whose window is being destroyed; other windows are ignored.
void ForgetPage(HWND hPage);

// Forgets all pages, as the panel that held them is gone.
void ForgetPages();
