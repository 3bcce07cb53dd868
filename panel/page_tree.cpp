// Which pages the tree offers.
#include "panel/page_tree.h"

#include "launcher/launcher_settings.h"
#include "monitor/monitor_table.h"
#include "monitor/selection.h"
#include "monitor/vcp.h"
#include "panel/resources/resource.h"

#include <initializer_list>

static_assert(TREE_BUTTON_6 - TREE_BUTTON_1 == LAUNCHER_BUTTON_COUNT - 1);

static HTREEITEM s_Items[TREE_ITEM_COUNT]; // null = not in the tree

// ---- Items --------------------------------------------------------------------------------------------------------

static LRESULT Tree(HWND hPanel, UINT message, WPARAM wParam, const void *lParam)
{
    return SendDlgItemMessageA(hPanel, IDC_PANEL_TREE, message, wParam, reinterpret_cast<LPARAM>(lParam));
}

static void InsertItem(HWND hPanel, TREEITEM item, LPCSTR lpszText)
{
    const TREEITEM parent = PageRow(item)->parent;
    TVINSERTSTRUCTA insertion = {};
    insertion.hParent = parent == TREE_NONE ? TVI_ROOT : s_Items[parent];
    insertion.hInsertAfter = TVI_LAST;
    insertion.item.mask = TVIF_TEXT;
    insertion.item.pszText = const_cast<char *>(lpszText);
    s_Items[item] = reinterpret_cast<HTREEITEM>(Tree(hPanel, TVM_INSERTITEMA, 0, &insertion));
}

static void InsertPage(HWND hPanel, TREEITEM item)
{
    InsertItem(hPanel, item, PageRow(item)->text);
}

// ---- What the trees have in common --------------------------------------------------------------------------------

static void InsertColorAndNetwork(HWND hPanel)
{
    for (const TREEITEM item : {TREE_APPLICATIONS, TREE_COLOR, TREE_NETWORK, TREE_COMM_LOG})
        InsertPage(hPanel, item);
}

static void InsertReservation(HWND hPanel)
{
    if (IsMonitorIndex(g_nCurMonitor) && g_Monitor[g_nCurMonitor].bTuner)
        InsertPage(hPanel, TREE_RESERVATION);
}

// Inserts the lock page for a monitor that can lock its buttons. Result: the highest press report that the monitor
// names; 0 for one without a button lock.
static LONG InsertButtonLock(HWND hPanel)
{
    if (GetVCP(g_nCurMonitor, VCP_BUTTON_LOCK, nullptr) == -1)
        return 0;
    InsertPage(hPanel, TREE_BUTTON_LOCK);
    LONG maximum = 0;
    SetVCP(g_nCurMonitor, VCP_BUTTON_PRESSED, BUTTON_PRESSED_NONE);
    GetVCP(g_nCurMonitor, VCP_BUTTON_PRESSED, &maximum);
    return maximum;
}

static void InsertLauncher(HWND hPanel)
{
    InsertPage(hPanel, TREE_LAUNCHER);
    for (int button = 1; button <= LAUNCHER_BUTTON_COUNT; ++button) {
        char label[BUTTON_LABEL_SIZE] = "";
        ReadButtonLabel(hPanel, button, label, sizeof label);
        if (label[0])
            InsertItem(hPanel, static_cast<TREEITEM>(TREE_BUTTON_1 + button - 1), label);
    }
}

// ---- The trees ----------------------------------------------------------------------------------------------------

void BuildPageTree(HWND hPanel)
{
    InsertPage(hPanel, TREE_ROOT);
    InsertColorAndNetwork(hPanel);
    // The launcher is not offered here: it comes with the first change of monitor.
    InsertButtonLock(hPanel);
    InsertReservation(hPanel);
    InsertPage(hPanel, TREE_VERSION);
}

void RebuildPageTree(HWND hPanel)
{
    InsertColorAndNetwork(hPanel);
    // Buttons report themselves in the high byte; a monitor whose launcher works names all its bits.
    if (InsertButtonLock(hPanel) >> 8 == 255)
        InsertLauncher(hPanel);
    InsertReservation(hPanel);
    InsertPage(hPanel, TREE_VERSION);
}

void BuildNoMonitorTree(HWND hPanel)
{
    InsertPage(hPanel, TREE_ROOT);
    InsertPage(hPanel, TREE_VERSION);
}

void CollapsePageTree(HWND hPanel)
{
    Tree(hPanel, TVM_EXPAND, TVE_COLLAPSE, s_Items[TREE_ROOT]);
}

void ClearPageTree(HWND hPanel)
{
    // Children come after their parents in the enumeration; deleting from its end takes them first.
    for (int item = TREE_ITEM_COUNT - 1; item > TREE_ROOT; --item) {
        if (s_Items[item])
            Tree(hPanel, TVM_DELETEITEM, 0, s_Items[item]);
        s_Items[item] = nullptr;
    }
}

void ForgetPageTree()
{
    for (HTREEITEM &item : s_Items)
        item = nullptr;
}

TREEITEM SelectedTreeItem(HWND hPanel)
{
    const HTREEITEM selected = reinterpret_cast<HTREEITEM>(Tree(hPanel, TVM_GETNEXTITEM, TVGN_CARET, nullptr));
    for (int item = 0; selected && item < TREE_ITEM_COUNT; ++item)
        if (s_Items[item] == selected)
            return static_cast<TREEITEM>(item);
    return TREE_NONE;
}

HTREEITEM TreeItemHandle(TREEITEM item)
{
    return item >= 0 && item < TREE_ITEM_COUNT ? s_Items[item] : nullptr;
}
