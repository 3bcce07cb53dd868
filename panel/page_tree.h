// The tree of pages in the panel: which items there are for the selected monitor.
//
// Kernel thread. The functions that build the tree ask the selected monitor about its buttons.
#pragma once

#include "panel/page_table.h"

#include <windows.h>

#include <commctrl.h>

// Fills the empty tree as the panel opens with it: without the launcher's items.
void BuildPageTree(HWND hPanel);

// Fills the tree below its root after a change of monitor, with the launcher's items if the monitor qualifies.
void RebuildPageTree(HWND hPanel);

// Fills the empty tree for a panel without a monitor.
void BuildNoMonitorTree(HWND hPanel);

// Closes the root. A selection below it moves to the root.
void CollapsePageTree(HWND hPanel);

// Deletes all items but the root.
void ClearPageTree(HWND hPanel);

// Forgets the items of a tree that is gone.
void ForgetPageTree();

// The selected item; TREE_NONE without a selection.
TREEITEM SelectedTreeItem(HWND hPanel);

// The item's handle in the tree; null when the tree does not have it.
HTREEITEM TreeItemHandle(TREEITEM item);
