// The pages of the panel: a row for each item of its tree, with the page that the item opens.
//
// A new page is an item and its row, a dialog template, and a file with the dialog procedure; panel/page_tree says when
// the tree offers it.
#pragma once

#include <windows.h>

// The items: a parent before its children, the buttons one after another. Pages are destroyed in this order.
enum TREEITEM : int {
    TREE_ROOT,
    TREE_APPLICATIONS,
    TREE_COLOR,
    TREE_NETWORK,
    TREE_COMM_LOG,
    TREE_RESERVATION,
    TREE_VERSION,
    TREE_LAUNCHER,
    TREE_BUTTON_LOCK,
    TREE_BUTTON_1,
    TREE_BUTTON_2,
    TREE_BUTTON_3,
    TREE_BUTTON_4,
    TREE_BUTTON_5,
    TREE_BUTTON_6,
    TREE_ITEM_COUNT,
    TREE_NONE = -1,
};

// Of an item that opens a page with its second half: the item that opens the same page without, and the page's button
// for that half. TREE_NONE: the page has one half only, or the item opens it without the second.
struct PAGEHALF {
    TREEITEM narrow = TREE_NONE;
    int toggle = 0;
    LPCSTR openText = nullptr;  // on the button while the half is covered
    LPCSTR closeText = nullptr; // and while it is seen
};

struct PAGEROW {
    TREEITEM item;
    TREEITEM parent; // TREE_NONE: the root
    LPCSTR text;     // null: the label of the item's button
    int dialog;
    DLGPROC proc;
    int widening; // of the panel beyond its base width: pixels matched to the template at the dialog font
    PAGEHALF half;
};

// The row of an item, which is not TREE_NONE. Any thread.
const PAGEROW *PageRow(TREEITEM item);

// The item under which the window of an item's page is kept: the one that opens the page without its second half.
TREEITEM PageOwner(TREEITEM item);

// ---- The dialog procedures, each in the file of its page. Kernel thread ----

// The settings of the selected monitor, named colour profiles, and the programs that have one of their own. Every
// change goes to the monitor at once.
INT_PTR CALLBACK ColorDlgProc(HWND hPage, UINT message, WPARAM wParam, LPARAM lParam);

// The link to the management server, its ports, the names of this PC, and the communication log.
INT_PTR CALLBACK NetworkPageProc(HWND hPage, UINT message, WPARAM wParam, LPARAM lParam);

// Entry and list of the reservations, and whether their starts are asked about first. The page's creation loads the
// reservations from their file; g_hReservationPage is the page while it exists.
INT_PTR CALLBACK ReservationPageProc(HWND hPage, UINT message, WPARAM wParam, LPARAM lParam);

// Only shows its template and the product's picture.
INT_PTR CALLBACK VersionDlgProc(HWND hPage, UINT message, WPARAM wParam, LPARAM lParam);

// The candidates that buttons can be given, and what every button starts.
INT_PTR CALLBACK LauncherPageProc(HWND hPage, UINT message, WPARAM wParam, LPARAM lParam);

// Which front-panel buttons do nothing.
INT_PTR CALLBACK ButtonLockPageProc(HWND hPage, UINT message, WPARAM wParam, LPARAM lParam);

// What a front-panel button starts: one procedure for all six pages.
INT_PTR CALLBACK ButtonPageProc(HWND hPage, UINT message, WPARAM wParam, LPARAM lParam);

// What to check when there is no monitor to work with.
INT_PTR CALLBACK NoMonitorDlgProc(HWND hPage, UINT message, WPARAM wParam, LPARAM lParam);
