// Creation and destruction of pages, and the widths at which the panel shows them.
#include "panel/pages.h"

#include "kernel/base/plugin_state.h"
#include "panel/button_page.h"
#include "panel/color_page.h"
#include "panel/launcher_page.h"
#include "panel/lock_page.h"
#include "panel/network_page.h"
#include "panel/no_monitor_page.h"
#include "panel/page_window.h"
#include "panel/panel_width.h"
#include "panel/reservation_page.h"
#include "panel/resources/resource.h"
#include "panel/version_page.h"

static HWND s_Pages[PAGE_COUNT]; // null = does not exist

// By PAGEKIND.
static const struct {
    int dialog;
    DLGPROC proc;
} pages[PAGE_COUNT] = {
    {IDD_COLOR_PAGE, ColorDlgProc},
    {IDD_NETWORK_PAGE, NetworkPageProc},
    {IDD_RESERVATION_PAGE, ReservationPageProc},
    {IDD_VERSION_PAGE, VersionDlgProc},
    {IDD_LAUNCHER_PAGE, LauncherPageProc},
    {IDD_BUTTON_LOCK_PAGE, ButtonLockPageProc},
    {IDD_BUTTON_1_PAGE, ButtonPageProc},
    {IDD_BUTTON_2_PAGE, ButtonPageProc},
    {IDD_BUTTON_3_PAGE, ButtonPageProc},
    {IDD_BUTTON_4_PAGE, ButtonPageProc},
    {IDD_BUTTON_5_PAGE, ButtonPageProc},
    {IDD_POWER_PAGE, ButtonPageProc},
};

// What a tree item opens: the page, and the width of the panel beyond its base width, in pixels matched to the page's
// template at the dialog font.
struct PAGEOPENING {
    TREEITEM item;
    PAGEKIND page;
    int widening;
    // Of an item that shows the second half of a page: the width without that half, and the page's button for it.
    int halfWidening;
    int toggle;
    LPCSTR toggleText;
};

static const PAGEOPENING openings[] = {
    {TREE_APPLICATIONS, PAGE_COLOR, 200, 0, 0, nullptr},
    {TREE_COLOR, PAGE_COLOR, 344, 200, IDC_COLOR_TOGGLE, "色設定画面を閉じる"},
    {TREE_NETWORK, PAGE_NETWORK, 160, 0, 0, nullptr},
    {TREE_COMM_LOG, PAGE_NETWORK, 328, 160, IDC_NETWORK_TOGGLE, "通信ログ画面を閉じる"},
    {TREE_RESERVATION, PAGE_RESERVATION, 408, 0, 0, nullptr},
    {TREE_LAUNCHER, PAGE_LAUNCHER, 376, 0, 0, nullptr},
    {TREE_VERSION, PAGE_VERSION, 224, 0, 0, nullptr},
    {TREE_BUTTON_LOCK, PAGE_BUTTON_LOCK, 152, 0, 0, nullptr},
};

constexpr int BUTTON_PAGE_WIDENING = 256;
constexpr int NO_MONITOR_WIDENING = 400;
constexpr int VERSION_WIDENING = 224;

// ---- Pages --------------------------------------------------------------------------------------------------------

void CreatePage(HWND hPanel, PAGEKIND page)
{
    DestroyPages();
    s_Pages[page] = CreatePageWindow(hPanel, pages[page].dialog, pages[page].proc);
}

void DestroyPages()
{
    for (HWND &page : s_Pages) {
        if (page)
            DestroyWindow(page);
        page = nullptr;
    }
}

HWND PageWindow(PAGEKIND page)
{
    return page >= 0 && page < PAGE_COUNT ? s_Pages[page] : nullptr;
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

// ---- Choice of a page ---------------------------------------------------------------------------------------------

static void ShowOpening(HWND hPanel, const PAGEOPENING *opening)
{
    // The page is open already, without its second half.
    if (opening->halfWidening && PageWindow(opening->page) && PanelWidening(hPanel) == opening->halfWidening) {
        SlidePanel(hPanel, opening->halfWidening, opening->widening);
    } else {
        SlidePanel(hPanel, 0, opening->widening);
        CreatePage(hPanel, opening->page);
    }
    if (!opening->toggle)
        return;
    SetDlgItemTextA(PageWindow(opening->page), opening->toggle, opening->toggleText);
    CheckDlgButton(PageWindow(opening->page), opening->toggle, BST_CHECKED);
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
    if (item >= TREE_BUTTON_1 && item <= TREE_BUTTON_6) {
        SlidePanel(hPanel, 0, BUTTON_PAGE_WIDENING);
        CreatePage(hPanel, static_cast<PAGEKIND>(PAGE_BUTTON_1 + (static_cast<int>(item) - TREE_BUTTON_1)));
    }
    for (const PAGEOPENING &opening : openings)
        if (opening.item == item)
            ShowOpening(hPanel, &opening);
}

// Without a monitor: the root stands for the page that tells what to check, and nothing slides.
static void SelectNoMonitorPage(HWND hPanel, TREEITEM item)
{
    if (item == TREE_ROOT) {
        if (PageWindow(PAGE_VERSION))
            ShowRoot(hPanel);
        SetPanelWidening(hPanel, NO_MONITOR_WIDENING);
        CreateNoMonitorPage(hPanel);
    } else if (item == TREE_VERSION) {
        if (IsNoMonitorPageOpen())
            SetPanelWidening(hPanel, 0);
        DestroyNoMonitorPage();
        SetPanelWidening(hPanel, VERSION_WIDENING);
        CreatePage(hPanel, PAGE_VERSION);
    }
}

void SelectPage(HWND hPanel, TREEITEM item)
{
    if (g_bNoMonitor)
        SelectNoMonitorPage(hPanel, item);
    else
        SelectNormalPage(hPanel, item);
}
