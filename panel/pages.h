// The pages of the panel: child dialogs, of which one exists at a time, and the choice of one in the tree.
//
// Kernel thread.
#pragma once

#include "panel/page_tree.h"

#include <windows.h>

// The pages that a tree item opens, in the order in which they are destroyed. The button pages follow one another.
enum PAGEKIND : int {
    PAGE_COLOR,
    PAGE_NETWORK,
    PAGE_RESERVATION,
    PAGE_VERSION,
    PAGE_LAUNCHER,
    PAGE_BUTTON_LOCK,
    PAGE_BUTTON_1,
    PAGE_BUTTON_6 = PAGE_BUTTON_1 + 5,
    PAGE_COUNT,
};

// Shows what an item of the tree stands for, at the width that belongs to it. TREE_NONE changes nothing.
void SelectPage(HWND hPanel, TREEITEM item);

// Destroys whatever page there is and creates this one, to the right of the tree. Without its template there is no page
// afterwards.
void CreatePage(HWND hPanel, PAGEKIND page);

// Destroys the pages that exist; the no-monitor page is none of them.
void DestroyPages();

// The window of a page; null when it does not exist.
HWND PageWindow(PAGEKIND page);

// Forgets a page whose window is being destroyed; other windows are ignored.
void ForgetPage(HWND hPage);

// Forgets all pages, as the panel that held them is gone.
void ForgetPages();
