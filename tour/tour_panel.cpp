// The panel's window, its tree of pages and its list of monitors.
#include "tour/tour_panel.h"

#include <commctrl.h>

#include <algorithm>
#include <cstring>

#include "host/base/console.h"
#include "host/base/text.h"
#include "host/simulated/monitor_window.h"
#include "host/tray.h"
#include "panel/resources/resource.h"
#include "tour/tour_hands.h"
#include "tour/tour_monitors.h"

constexpr DWORD PAGE_PATIENCE = 10000; // ms: a page may ask a slow monitor for many values
constexpr DWORD STEADY_TIME = 100;     // ms without a change of width after which the panel has slid

static HWND s_panel;    // the one that the numbers below are about
static int s_baseWidth; // without a page

static bool Fail(TOUR *tour, const std::string &reason)
{
    FailStep(tour, reason);
    return false;
}

// ---- Windows --------------------------------------------------------------------------------------------------------

HWND FindPage()
{
    const HWND panel = FindPanel();
    HWND child = nullptr;
    while (panel && (child = FindWindowExW(panel, child, L"#32770", nullptr)) != nullptr)
        if (IsWindowVisible(child))
            return child;
    return nullptr;
}

static RECT PanelRect()
{
    RECT rect = {};
    GetWindowRect(s_panel, &rect);
    return rect;
}

int PanelWidening()
{
    const RECT rect = PanelRect();
    return rect.right - rect.left - s_baseWidth;
}

void TakePanelPicture(TOUR *tour, const std::string &name)
{
    const RECT rect = PanelRect();
    TakePicture(tour,
                name + Format(" %ldx%ld+%ld+%ld", rect.right - rect.left, rect.bottom - rect.top, rect.left, rect.top));
}

static void Remember(HWND panel)
{
    s_panel = panel;
    const RECT rect = PanelRect();
    s_baseWidth = rect.right - rect.left;
}

// ---- The tree -------------------------------------------------------------------------------------------------------

static HWND Tree()
{
    return GetDlgItem(FindPanel(), IDC_PANEL_TREE);
}

static HTREEITEM Next(HTREEITEM item, UINT direction)
{
    return reinterpret_cast<HTREEITEM>(Ask(Tree(), TVM_GETNEXTITEM, direction, reinterpret_cast<LPARAM>(item)));
}

static std::string ItemText(HTREEITEM item)
{
    wchar_t text[64] = L"";
    TVITEMW info = {};
    info.mask = TVIF_TEXT;
    info.hItem = item;
    info.pszText = text;
    info.cchTextMax = ARRAYSIZE(text);
    Ask(Tree(), TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&info));
    return Narrow(text);
}

// The item behind it in the order of the texts, also below a closed one.
static HTREEITEM NextInOrder(HTREEITEM item)
{
    if (const HTREEITEM child = Next(item, TVGN_CHILD))
        return child;
    for (; item; item = Next(item, TVGN_PARENT))
        if (const HTREEITEM sibling = Next(item, TVGN_NEXT))
            return sibling;
    return nullptr;
}

static HTREEITEM FindItem(const std::string &text)
{
    HTREEITEM item = Next(nullptr, TVGN_ROOT);
    while (item && ItemText(item) != text)
        item = NextInOrder(item);
    return item;
}

std::vector<std::string> TreeTexts()
{
    std::vector<std::string> texts;
    for (HTREEITEM item = Next(nullptr, TVGN_ROOT); item; item = NextInOrder(item))
        texts.push_back(ItemText(item));
    return texts;
}

// Where an item's text stands on the screen; false while its parent is closed.
static bool ItemPoint(HTREEITEM item, POINT *point)
{
    RECT rect = {};
    memcpy(&rect, &item, sizeof item); // the message takes the item where it puts the rectangle
    if (!Ask(Tree(), TVM_GETITEMRECT, TRUE, reinterpret_cast<LPARAM>(&rect)))
        return false;
    *point = {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
    ClientToScreen(Tree(), point);
    return true;
}

static bool IsOpen(HTREEITEM item)
{
    return (Ask(Tree(), TVM_GETITEMSTATE, reinterpret_cast<WPARAM>(item), TVIS_EXPANDED) & TVIS_EXPANDED) != 0;
}

// The plus sign left of an item's text.
static bool ButtonPoint(HTREEITEM item, POINT *point)
{
    if (!ItemPoint(item, point))
        return false;
    TVHITTESTINFO hit = {};
    hit.pt = *point;
    ScreenToClient(Tree(), &hit.pt);
    for (; hit.pt.x >= 0; hit.pt.x--, point->x--) {
        Ask(Tree(), TVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit));
        if (hit.flags == TVHT_ONITEMBUTTON) {
            point->x -= 4; // from its edge into it
            return true;
        }
    }
    return false;
}

static bool OpenItem(TOUR *tour, HTREEITEM item)
{
    POINT button;
    if (!item || IsOpen(item))
        return true;
    if (!OpenItem(tour, Next(item, TVGN_PARENT)))
        return false;
    if (!ButtonPoint(item, &button))
        return Fail(tour, "the tree shows no plus sign at '" + ItemText(item) + "'");
    if (!ClickAt(tour, button))
        return false;
    return WaitUntil([&] { return IsOpen(item); }) ||
           Fail(tour, "a click on its plus sign does not open '" + ItemText(item) + "'");
}

// ---- Pages ----------------------------------------------------------------------------------------------------------

// Until the panel's thread is done with the choice and the panel has slid to its width.
static bool WaitForPage(bool isRoot)
{
    int width = -1;
    DWORD since = 0;
    return WaitUntil(
        [&] {
            const int now = PanelWidening();
            if (now != width) {
                width = now;
                since = GetTickCount();
            }
            return (isRoot ? !FindPage() && now == 0 : FindPage() && now > 0) && GetTickCount() - since > STEADY_TIME;
        },
        PAGE_PATIENCE);
}

bool ChoosePage(TOUR *tour, const std::string &text)
{
    const HTREEITEM item = FindItem(text);
    if (!item)
        return Fail(tour, "the tree has no item '" + text + "'");
    POINT point;
    if (!OpenItem(tour, Next(item, TVGN_PARENT)))
        return false;
    if (!ItemPoint(item, &point))
        return Fail(tour, "the tree does not show its item '" + text + "'");
    if (!ClickAt(tour, point))
        return false;
    if (!WaitUntil([&] { return Next(nullptr, TVGN_CARET) == item; }))
        return Fail(tour, "a click does not select '" + text + "' in the tree");
    if (!WaitForPage(!Next(item, TVGN_PARENT)))
        return Fail(tour, Format("'%s' does not show its page (the panel is %d pixels wider than without one)",
                                 text.c_str(), PanelWidening()));
    return true;
}

bool ShowPage(TOUR *tour, const std::string &text, const std::string &picture)
{
    if (!ChoosePage(tour, text))
        return false;
    RECT page = {};
    GetWindowRect(FindPage(), &page);
    ConsoleLine(Format("  %s: panel %d pixels wider, page %ld x %ld", text.c_str(), PanelWidening(),
                       page.right - page.left, page.bottom - page.top));
    TakePanelPicture(tour, picture);
    return true;
}

// ---- Monitors -------------------------------------------------------------------------------------------------------

bool ChooseMonitor(TOUR *tour, int monitor)
{
    const HWND panel = FindPanel(), combo = GetDlgItem(panel, IDC_PANEL_MONITOR);
    if (Ask(combo, CB_GETCURSEL) == monitor)
        return true;
    if (!ChooseInCombo(tour, panel, IDC_PANEL_MONITOR, monitor, "the list of monitors"))
        return false;
    // Another tree, asked of the monitor, which may be slow.
    Ask(panel, WM_NULL);
    wchar_t text[128] = L"";
    Ask(combo, CB_GETLBTEXT, static_cast<WPARAM>(monitor), reinterpret_cast<LPARAM>(text));
    std::string items;
    for (const std::string &item : TreeTexts())
        items += (items.empty() ? "" : ", ") + item;
    ConsoleLine("  chosen: " + Narrow(text));
    ConsoleLine("    tree: " + items);
    return PanelWidening() == 0 || Fail(tour, "the panel keeps its width after the change of monitor");
}

STEPRESULT ShowNotOffered(TOUR *tour, const std::string &item, const std::string &why, const std::string &picture)
{
    if (FindItem(item))
        return SkipStep(tour, why);
    if (!OpenItem(tour, Next(nullptr, TVGN_ROOT)))
        return STEP_FAILED;
    TakePanelPicture(tour, picture);
    const LRESULT monitor = Ask(GetDlgItem(FindPanel(), IDC_PANEL_MONITOR), CB_GETCURSEL) + 1;
    tour->seen = Format("monitor %ld: no %s in its tree, as %s", monitor, item.c_str(), why.c_str());
    ConsoleLine("  " + tour->seen);
    return STEP_ABSENT;
}

// ---- Steps: open, go through the tree, close, open again
// ---------------------------------------------------------------------------------

// Below the monitors' windows, if there is room, so that what the panel does can be seen in them.
static bool MovePanel(TOUR *tour)
{
    RECT monitors = {}, area = {}, last = {};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
    for (int i = 0; MonitorWindow(i); i++) {
        GetWindowRect(MonitorWindow(i), &last);
        UnionRect(&monitors, &monitors, &last);
    }
    const RECT panel = PanelRect();
    const int height = panel.bottom - panel.top, top = std::min(monitors.bottom + 6, area.bottom - height);
    const POINT grip = {panel.left + 40, panel.top + 10}, to = {area.left + 12 + 40, top + 10};
    if (!Drag(tour, grip, to))
        return false;
    if (WaitUntil([&] { return PanelRect().left == area.left + 12 && PanelRect().top == top; }))
        return true;
    return Fail(tour, Format("the panel was dragged to %ld, %d and stands at %ld, %ld", area.left + 12, top,
                             PanelRect().left, PanelRect().top));
}

static bool WaitForPanel(TOUR *tour)
{
    HWND panel = nullptr;
    const auto isReady = [&] {
        panel = FindPanel();
        return panel && Ask(GetDlgItem(panel, IDC_PANEL_MONITOR), CB_GETCURSEL) == 0 && !TreeTexts().empty();
    };
    if (!WaitUntil(isReady, PAGE_PATIENCE))
        return Fail(tour, "the panel does not come up");
    Remember(panel);
    return true;
}

// The menu of the tray icon, which is that of a monitor's window, too. Without such a window by what a right click on
// the icon sends, as this screen has no tray.
static bool OpenMenu(TOUR *tour)
{
    const HWND window = MonitorWindow(0);
    RECT rect = {};
    GetWindowRect(window, &rect);
    if (HaveMonitorWindows(tour)) {
        if (!window || !IsWindowVisible(window))
            return Fail(tour, "there is no monitor's window to open the menu on");
        return RightClickAt(tour, {rect.left + 100, rect.top + 100});
    }
    if (!ParkMouse(tour))
        return false;
    PostMessageW(tour->app->window.hWnd, WM_TRAY, 0, WM_RBUTTONUP);
    return true;
}

STEPRESULT StepOpenPanel(TOUR *tour)
{
    if (!OpenMenu(tour))
        return STEP_FAILED;
    HWND menu = nullptr;
    if (!WaitUntil([&] { return (menu = FindWindowW(L"#32768", nullptr)) && IsWindowVisible(menu); }))
        return FailStep(tour, "a right click does not open the menu");
    TakePicture(tour, "menu");
    if (!PressKeys(tour, "o") || !WaitForPanel(tour) || !MovePanel(tour))
        return STEP_FAILED;
    const RECT panel = PanelRect();
    tour->seen = Format("the panel, %ld x %ld, with %u items in its tree", panel.right - panel.left,
                        panel.bottom - panel.top, static_cast<unsigned>(TreeTexts().size()));
    return STEP_DONE;
}

// Shows what the tree has beyond the items seen already.
static STEPRESULT ShowPages(TOUR *tour, const std::vector<std::string> &seen, const std::string &pictures)
{
    std::vector<std::string> items;
    for (const std::string &item : TreeTexts())
        if (std::find(seen.begin(), seen.end(), item) == seen.end())
            items.push_back(item);
    tour->seen = Format("%u pages shown, each beside the tree", static_cast<unsigned>(items.size()));
    if (items.empty()) {
        tour->seen = "its tree has no further page";
        return STEP_DONE;
    }
    for (size_t i = 0; i < items.size(); i++)
        if (!ShowPage(tour, items[i], pictures + std::to_string(i + 1)))
            return STEP_FAILED;
    // The root closes the page.
    if (!ChoosePage(tour, TreeTexts()[0]))
        return STEP_FAILED;
    return STEP_DONE;
}

STEPRESULT StepPages(TOUR *tour)
{
    return ShowPages(tour, {TreeTexts()[0]}, "page-");
}

// Only after a change of monitor does the tree offer the launcher.
STEPRESULT StepOtherMonitor(TOUR *tour)
{
    if (Ask(GetDlgItem(FindPanel(), IDC_PANEL_MONITOR), CB_GETCOUNT) < 2)
        return SkipStep(tour, "there is one monitor only");
    const std::vector<std::string> seen = TreeTexts();
    if (!ChooseMonitor(tour, 1))
        return STEP_FAILED;
    return ShowPages(tour, seen, "launcher-");
}

// Closed by its close box; opened by what a double click on the tray icon sends, as this screen has no tray.
STEPRESULT StepReopenPanel(TOUR *tour)
{
    const HWND before = FindPanel();
    const RECT panel = PanelRect();
    POINT close = {panel.right - 1, panel.top + 11};
    while (close.x > panel.left && Ask(before, WM_NCHITTEST, 0, MAKELPARAM(close.x, close.y)) != HTCLOSE)
        close.x--;
    close.x -= 4; // from its edge into it
    if (!ClickAt(tour, close))
        return STEP_FAILED;
    if (!WaitUntil([] { return !FindPanel(); }))
        return FailStep(tour, "the panel's close box does not close it");
    PostMessageW(tour->app->window.hWnd, WM_TRAY, 0, WM_LBUTTONDBLCLK);
    if (!WaitForPanel(tour))
        return STEP_FAILED;
    tour->seen = "closed by its close box; a double click opened it anew, on monitor 1";
    return STEP_DONE;
}
