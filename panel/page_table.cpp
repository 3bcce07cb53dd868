// The table of pages, and what its rows owe each other.
#include "panel/page_table.h"

#include "panel/panel_width.h"
#include "panel/resources/resource.h"

static constexpr PAGEHALF s_ColorHalf = {TREE_APPLICATIONS, IDC_COLOR_TOGGLE, "色設定画面を開く", "色設定画面を閉じる"};
static constexpr PAGEHALF s_LogHalf = {TREE_NETWORK, IDC_NETWORK_TOGGLE, "通信ログ画面を開く", "通信ログ画面を閉じる"};

// By TREEITEM. The root's page is shown without a monitor only.
static constexpr PAGEROW s_Rows[TREE_ITEM_COUNT] = {
    {TREE_ROOT, TREE_NONE, "Lumivane2", IDD_NO_MONITOR_PAGE, NoMonitorDlgProc, 400, {}},
    {TREE_APPLICATIONS, TREE_ROOT, "アプリケーション登録", IDD_COLOR_PAGE, ColorDlgProc, 200, {}},
    {TREE_COLOR, TREE_APPLICATIONS, "色設定", IDD_COLOR_PAGE, ColorDlgProc, 344, s_ColorHalf},
    {TREE_NETWORK, TREE_ROOT, "ネットワーク設定", IDD_NETWORK_PAGE, NetworkPageProc, 160, {}},
    {TREE_COMM_LOG, TREE_NETWORK, "通信ログ", IDD_NETWORK_PAGE, NetworkPageProc, 328, s_LogHalf},
    {TREE_RESERVATION, TREE_ROOT, "タイマー予約設定", IDD_RESERVATION_PAGE, ReservationPageProc, 408, {}},
    {TREE_VERSION, TREE_ROOT, "バージョン情報", IDD_VERSION_PAGE, VersionDlgProc, 224, {}},
    {TREE_LAUNCHER, TREE_ROOT, "ランチャー設定", IDD_LAUNCHER_PAGE, LauncherPageProc, 376, {}},
    {TREE_BUTTON_LOCK, TREE_ROOT, "ボタンロック", IDD_BUTTON_LOCK_PAGE, ButtonLockPageProc, 152, {}},
    {TREE_BUTTON_1, TREE_LAUNCHER, nullptr, IDD_BUTTON_1_PAGE, ButtonPageProc, 256, {}},
    {TREE_BUTTON_2, TREE_LAUNCHER, nullptr, IDD_BUTTON_2_PAGE, ButtonPageProc, 256, {}},
    {TREE_BUTTON_3, TREE_LAUNCHER, nullptr, IDD_BUTTON_3_PAGE, ButtonPageProc, 256, {}},
    {TREE_BUTTON_4, TREE_LAUNCHER, nullptr, IDD_BUTTON_4_PAGE, ButtonPageProc, 256, {}},
    {TREE_BUTTON_5, TREE_LAUNCHER, nullptr, IDD_BUTTON_5_PAGE, ButtonPageProc, 256, {}},
    {TREE_BUTTON_6, TREE_LAUNCHER, nullptr, IDD_POWER_PAGE, ButtonPageProc, 256, {}},
};

// ---- What holds for every row -------------------------------------------------------------------------------------

static constexpr bool ComesAfterParent(const PAGEROW &row)
{
    return row.parent < row.item && (row.parent == TREE_NONE) == (row.item == TREE_ROOT);
}

// A slide of any other width would not end where it shall.
static constexpr bool IsWholeSlide(const PAGEROW &row)
{
    return row.widening > 0 && row.widening % SLIDE_STEP == 0;
}

static constexpr bool HasPage(const PAGEROW &row)
{
    return row.dialog && row.proc && (row.text || row.parent == TREE_LAUNCHER);
}

// Two items open one page only if they are its narrow and its wide form.
static constexpr bool SharesRightly(const PAGEROW &row)
{
    for (const PAGEROW &other : s_Rows)
        if (other.item < row.item && other.dialog == row.dialog && other.item != row.half.narrow)
            return false;
    if (row.half.narrow == TREE_NONE)
        return true;
    const PAGEROW &narrow = s_Rows[row.half.narrow];
    return narrow.dialog == row.dialog && narrow.proc == row.proc && narrow.widening < row.widening &&
           row.half.toggle && row.half.openText && row.half.closeText;
}

static constexpr bool AllRows(bool (*holds)(const PAGEROW &row))
{
    for (int item = 0; item < TREE_ITEM_COUNT; ++item)
        if (s_Rows[item].item != item || !holds(s_Rows[item]))
            return false;
    return true;
}

static_assert(AllRows(ComesAfterParent), "a row is not at the place of its item, or a child comes before its parent");
static_assert(AllRows(IsWholeSlide), "a width is no multiple of a slide's step");
static_assert(AllRows(HasPage), "a row has no template, no procedure or no text");
static_assert(AllRows(SharesRightly), "two items open one page, but not as its two forms");

// -------------------------------------------------------------------------------------------------------------------

const PAGEROW *PageRow(TREEITEM item)
{
    return &s_Rows[item];
}

TREEITEM PageOwner(TREEITEM item)
{
    return s_Rows[item].half.narrow == TREE_NONE ? item : s_Rows[item].half.narrow;
}
