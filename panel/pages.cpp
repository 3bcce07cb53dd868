// Creation and destruction of pages, and the widths at which the panel shows them.
#include "panel/pages.h"

#include "kernel/base/plugin_state.h"
#include "panel/no_monitor_page.h"
#include "panel/page_window.h"
#include "panel/panel_width.h"

static HWND s_Pages[TREE_ITEM_COUNT]; // by PageOwner; null = does not exist

// ---- Pages --------------------------------------------------------------------------------------------------------

void CreatePage(HWND hPanel, TREEITEM item)
{
    DestroyPages();
    s_Pages[PageOwner(item)] = CreatePageWindow(hPanel, item);
}

void DestroyPages()
{
    for (HWND &page : s_Pages) {
        if (page)
            DestroyWindow(page);
        page = nullptr;
    }
}

HWND PageWindow(TREEITEM item)
{
    return item >= 0 && item < TREE_ITEM_COUNT ? s_Pages[PageOwner(item)] : nullptr;
}

void ForgetPage(HWND hPage)
{
    for (HWND &page : s_Pages)
        if (page == hPage)
            page = nullptr;
}

void ForgetPages()
{
    for (HWND &page : s_Pages)
        page = nullptr;
}

// ---- The second half of a page ------------------------------------------------------------------------------------

static void ShowToggle(HWND hPage, const PAGEHALF *half, bool open)
{
    SetDlgItemTextA(hPage, half->toggle, open ? half->closeText : half->openText);
    CheckDlgButton(hPage, half->toggle, open ? BST_CHECKED : BST_UNCHECKED);
}

void TogglePageHalf(HWND hPage, TREEITEM item)
{
    const PAGEROW *row = PageRow(item);
    const bool open = IsDlgButtonChecked(hPage, row->half.toggle) != BST_CHECKED;
    const int width = row->widening - PageRow(row->half.narrow)->widening;
    ShowToggle(hPage, &row->half, open);
    SlidePanelBy(GetParent(hPage), open ? width : -width);
}

// ---- Choice of a page ---------------------------------------------------------------------------------------------

static void ShowPage(HWND hPanel, TREEITEM item)
{
    const PAGEROW *row = PageRow(item);
    const bool wide = row->half.narrow != TREE_NONE;
    const int narrowWidening = wide ? PageRow(row->half.narrow)->widening : 0;
    if (wide && PageWindow(item) && PanelWidening(hPanel) == narrowWidening) {
        SlidePanel(hPanel, narrowWidening, row->widening); // the page is open already, without its second half
    } else {
        SlidePanel(hPanel, 0, row->widening);
        CreatePage(hPanel, item);
    }
    if (wide)
        ShowToggle(PageWindow(item), &row->half, true);
}

static void ShowRoot(HWND hPanel)
{
    SetPanelWidening(hPanel, 0);
    DestroyPages();
}

static void SelectNormalPage(HWND hPanel, TREEITEM item)
{
    if (item == TREE_ROOT)
        ShowRoot(hPanel);
    else if (item != TREE_NONE)
        ShowPage(hPanel, item);
}

// Without a monitor: the root stands for the page that tells what to check, and nothing slides.
static void SelectNoMonitorPage(HWND hPanel, TREEITEM item)
{
    if (item == TREE_ROOT) {
        if (PageWindow(TREE_VERSION))
            ShowRoot(hPanel);
        SetPanelWidening(hPanel, PageRow(TREE_ROOT)->widening);
        CreateNoMonitorPage(hPanel);
    } else if (item == TREE_VERSION) {
        if (IsNoMonitorPageOpen())
            SetPanelWidening(hPanel, 0);
        DestroyNoMonitorPage();
        SetPanelWidening(hPanel, PageRow(TREE_VERSION)->widening);
        CreatePage(hPanel, TREE_VERSION);
    }
}

void SelectPage(HWND hPanel, TREEITEM item)
{
    if (g_bNoMonitor)
        SelectNoMonitorPage(hPanel, item);
    else
        SelectNormalPage(hPanel, item);
}
