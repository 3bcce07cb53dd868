// The panel: opening, monitor list, tree, widths and pages.
#include "panel/panel.h"

#include "kernel/plugin.h"
#include "monitor/vcp.h"
#include "panel/resources/resource.h"
#include "support/clock.h"
#include "support/panel_session.h"
#include "support/reservation_session.h"
#include "timer/reservation_store.h"

#include <algorithm>
#include <functional>

namespace {

const Lines openingTree = {"Lumivane2",    "  アプリケーション登録", "    色設定",         "  ネットワーク設定",
                           "    通信ログ", "  ボタンロック",         "  タイマー予約設定", "  バージョン情報"};

Lines Without(Lines lines, const std::string &text)
{
    std::erase_if(lines, [&](const std::string &line) { return line.find(text) != std::string::npos; });
    return lines;
}

// The launcher's items stand behind the button lock.
Lines WithLauncher(Lines lines, const Lines &buttons)
{
    Lines launcher = {"  ランチャー設定"};
    for (const std::string &button : buttons)
        launcher.push_back("    " + button);
    const auto lock = std::find(lines.begin(), lines.end(), "  ボタンロック");
    lines.insert(lock + 1, launcher.begin(), launcher.end());
    return lines;
}

const Lines allButtons = {"B1", "B2", "B3", "B4", "B5", "POWER"};

} // namespace

TEST_F(PanelTest, OpensOnceAndAgain)
{
    ASSERT_TRUE(Open());
    EXPECT_TRUE(IsWindowVisible(Panel()));
    EXPECT_EQ(GetWindow(Panel(), GW_OWNER), g_hKernelWnd);
    int result = 1;
    host.Run([&] { result = PluginOpenPanel(nullptr); });
    EXPECT_EQ(result, 0) << "the open one comes to the front";
    Choose(TREE_VERSION);
    ChooseMonitor(1);
    Close();
    EXPECT_EQ(Panel(), nullptr);
    ASSERT_TRUE(Open());
    EXPECT_EQ(g_nCurMonitor, 0);
    EXPECT_EQ(SelectionOf(Panel(), IDC_PANEL_MONITOR), 0);
    EXPECT_EQ(TreeLines(GetDlgItem(Panel(), IDC_PANEL_TREE)), openingTree) << "without the launcher again";
}

TEST_F(PanelTest, OpensAsSoonAsStarted)
{
    ASSERT_TRUE(Start());
    host.Run([] { EXPECT_EQ(PluginOpenPanel(nullptr), 1); });
    EXPECT_EQ(Panel(), nullptr);
    StartUp();
    EXPECT_TRUE(Comes([this] { return Panel() != nullptr; }));
}

// The panel asks about missed reservations before it shows. Meanwhile it is not open, nor can it be opened twice.
TEST_F(PanelTest, TimeGoesOnWhileItAsksAtItsOpening)
{
    const struct Files {
        ~Files() { CloseReservationFiles(); } // or a failure leaves its questions to the next test
    } files;
    SetClock(2006, 6, 10, 20, 0);
    const std::string file = Section(0, "2006/06/10 19:50", "2006/06/10 20:01", "ビデオ") +
                             Section(1, "2006/06/11 20:00", "2006/06/11 21:00", "ビデオ");
    IniFolder::Write("ontimer.ini", file);
    ASSERT_TRUE(Start());
    StartUp();
    KillTimer(g_hKernelWnd, TIMER_RESERVATION);
    g_nReservation = LoadReservations(g_Reservation, "ontimer.ini");
    PostMessageA(g_hKernelWnd, WM_KERNEL_OPEN_PANEL, 0, 0);
    HWND question = WaitForDialog("Lumivane 2");
    ASSERT_NE(question, nullptr);
    DWORD_PTR opened = 1;
    ASSERT_NE(SendMessageTimeoutA(g_hKernelWnd, WM_KERNEL_OPEN_PANEL, 0, 0, SMTO_NORMAL, 10000, &opened), 0);
    EXPECT_EQ(opened, 0u);

    // Closed behind its question it can be opened again, and asks again.
    SendMessageA(GetWindow(question, GW_OWNER), WM_CLOSE, 0, 0);
    ASSERT_TRUE(Comes([&] { return !IsWindow(question); }));
    ASSERT_TRUE(Comes([] {
        PostMessageA(g_hKernelWnd, WM_KERNEL_OPEN_PANEL, 0, 0);
        return FindDialog("Lumivane 2") != nullptr;
    }));

    host.TakeLog();
    AdvanceClock(1);
    Tick(TIMER_RESERVATION);
    EXPECT_EQ(host.TakeLog(), Lines{"set 0 60 = 5"}) << "the end minute puts the input back";
    EXPECT_EQ(SectionLines(0), Lines{"[Timer0]"});
    BoxAnswerer answerer("Lumivane 2", IDNO);
    ASSERT_TRUE(Comes([&] { return Panel() && IsWindowVisible(Panel()); }));
    EXPECT_EQ(g_nReservation, 1) << "no answer deletes what has gone by itself, and the other one stays";
}

TEST_F(PanelTest, ListsMonitorsWithTheirInputs)
{
    const struct {
        std::optional<LONG> input;
        const char *entry;
    } cases[] = {{1, "1: NRV-PA1 (アナログ) "},  {2, "2: NRV-PA1 (アナログ2) "}, {3, "3: NRV-PA1 (デジタル) "},
                 {4, "4: NRV-PA1 (デジタル2) "}, {9, "5: NRV-PA1 (Undefined) "}, {{}, "6: NRV-PA1 (Undefined) "}};
    host.monitors.clear();
    Lines expected;
    for (const auto &c : cases) {
        host.monitors.push_back(ColorMonitor("NRV-PA1"));
        host.monitors.back().features.erase(VCP_INPUT_SOURCE);
        if (c.input)
            host.monitors.back().features[VCP_INPUT_SOURCE] = {*c.input, 4};
        expected.push_back(c.entry);
    }
    ASSERT_TRUE(Open());
    EXPECT_EQ(EntriesOf(Panel(), IDC_PANEL_MONITOR), expected);
}

// What the tree offers as the panel opens, and after a change of monitor and back.
TEST_F(PanelTest, TreeOfEachKindOfMonitor)
{
    const struct {
        const char *name;
        void (*change)(TestMonitor &);
        Lines opened;
        Lines rebuilt;
    } cases[] = {
        {"all", [](TestMonitor &) {}, openingTree, WithLauncher(openingTree, allButtons)},
        {"no lock", [](TestMonitor &m) { m.features.erase(VCP_BUTTON_LOCK); }, Without(openingTree, "ロック"),
         Without(openingTree, "ロック")},
        {"no report", [](TestMonitor &m) { m.features.erase(VCP_BUTTON_PRESSED); }, openingTree, openingTree},
        {"few bits", [](TestMonitor &m) { m.features[VCP_BUTTON_PRESSED].maximum = 0x1F00; }, openingTree, openingTree},
        {"no tuner", [](TestMonitor &m) { m.capabilities = "(vcp(10 60(01 03)))"; }, Without(openingTree, "タイマー"),
         Without(WithLauncher(openingTree, allButtons), "タイマー")},
        {"no labels", [](TestMonitor &m) { m.model = "NRV-PA9"; }, openingTree, WithLauncher(openingTree, {})},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        host.monitors[0] = ColorMonitor("NRV-PA1");
        host.monitors[0].features[VCP_BUTTON_PRESSED] = {BUTTON_PRESSED_NONE, 0xFF00};
        host.monitors[0].capabilities = "(vcp(10 60(01 09) F2 F4))";
        c.change(host.monitors[0]);
        g_bAbort = 0;
        ResetPluginState();
        HoldTimer(TIMER_START_UP); // which that lets go
        g_hHostWnd = host.Window();
        host.Introduce();
        ASSERT_TRUE(Open());
        const HWND tree = GetDlgItem(Panel(), IDC_PANEL_TREE);
        EXPECT_EQ(TreeLines(tree), c.opened);
        ChooseMonitor(1);
        EXPECT_EQ(TreeLines(tree), WithLauncher(Without(openingTree, "タイマー"), allButtons)) << "the other monitor's";
        ChooseMonitor(0);
        EXPECT_EQ(TreeLines(tree), c.rebuilt);
        Stop();
    }
}

TEST_F(PanelTest, AMissingLabelLeavesItsButtonOut)
{
    IniFolder::Write("Launcher.ini", "[NRV-PA2]\r\nbutton2=B2\r\nbutton6=12345678901234567890\r\n");
    ASSERT_TRUE(Open());
    ChooseMonitor(1);
    EXPECT_EQ(TreeLines(GetDlgItem(Panel(), IDC_PANEL_TREE)),
              WithLauncher(Without(openingTree, "タイマー"), {"B2", "123456789012345"}));
}

// Widths are those of the item, whatever was open before; the pages stand beside the tree.
TEST_F(PanelTest, WidthOfEachPageThereAndBack)
{
    const struct {
        const char *name;
        TREEITEM item;
        int widening;
        int control; // of this page alone
    } cases[] = {
        {"applications", TREE_APPLICATIONS, 200, IDC_COLOR_APP_LIST},
        {"colours", TREE_COLOR, 344, IDC_COLOR_APP_LIST},
        {"network", TREE_NETWORK, 160, IDC_NETWORK_LOG},
        {"log", TREE_COMM_LOG, 328, IDC_NETWORK_LOG},
        {"reservation", TREE_RESERVATION, 408, IDC_RESERVATION_LIST},
        {"launcher", TREE_LAUNCHER, 376, IDC_LAUNCHER_ASSIGNMENTS},
        {"button lock", TREE_BUTTON_LOCK, 152, IDC_LOCK_PICTURE},
        {"version", TREE_VERSION, 224, IDC_VERSION_PICTURE},
        {"button 1", TREE_BUTTON_1, 256, IDC_BUTTON_1_ENABLE},
        {"button 6", TREE_BUTTON_6, 256, IDC_POWER_ENABLE},
    };
    ASSERT_TRUE(Open());
    ChooseMonitor(1);
    ChooseMonitor(0); // the tree with everything
    RECT base;
    GetWindowRect(Panel(), &base);
    const char *before = "the root";
    const auto choose = [&](size_t index) {
        const auto &chosen = cases[index];
        SCOPED_TRACE(std::string(before) + " then " + chosen.name);
        before = chosen.name;
        Choose(chosen.item);
        EXPECT_EQ(Widening(), chosen.widening);
        const HWND page = Page(chosen.item);
        EXPECT_NE(GetDlgItem(page, chosen.control), nullptr);
        for (int item = TREE_ROOT; item < TREE_ITEM_COUNT; ++item)
            EXPECT_TRUE(Page(static_cast<TREEITEM>(item)) == nullptr || Page(static_cast<TREEITEM>(item)) == page)
                << "there is another page, of item " << item;
        POINT corner = {};
        MapWindowPoints(page, Panel(), &corner, 1);
        EXPECT_EQ(corner.x, 178);
        EXPECT_EQ(corner.y, 0);
    };
    // There and back: each follows a narrower and a wider one, and the halves of a page follow each other both ways.
    for (size_t n = 0; n < 2 * std::size(cases); ++n)
        choose(n < std::size(cases) ? n : 2 * std::size(cases) - 1 - n);
    Choose(TREE_ROOT);
    EXPECT_EQ(Widening(), 0);
    for (int item = TREE_ROOT; item < TREE_ITEM_COUNT; ++item)
        EXPECT_EQ(Page(static_cast<TREEITEM>(item)), nullptr);
    RECT now;
    GetWindowRect(Panel(), &now);
    EXPECT_TRUE(EqualRect(&now, &base));
}

// Held against a sheet that a person has read, beside the program: texts, tips, pictures and column headings.
TEST_F(PanelTest, EveryControlLooksAsOnTheSheet)
{
    ASSERT_TRUE(Open());
    ChooseMonitor(1);
    ChooseMonitor(0);
    std::string seen;
    const auto add = [&seen](const char *name, HWND dialog) {
        seen += std::string("== ") + name + "\n";
        for (const std::string &line : SheetOf(dialog))
            seen += line + "\n";
    };
    add("Panel", Panel());
    const std::pair<TREEITEM, const char *> pages[] = {
        {TREE_COLOR, "Colours"},     {TREE_COMM_LOG, "Network"},  {TREE_RESERVATION, "Reservations"},
        {TREE_VERSION, "Version"},   {TREE_LAUNCHER, "Launcher"}, {TREE_BUTTON_LOCK, "Button lock"},
        {TREE_BUTTON_1, "Button 1"}, {TREE_BUTTON_2, "Button 2"}, {TREE_BUTTON_3, "Button 3"},
        {TREE_BUTTON_4, "Button 4"}, {TREE_BUTTON_5, "Button 5"}, {TREE_BUTTON_6, "POWER"}};
    for (const auto &[item, name] : pages) {
        Choose(item);
        add(name, Page(item));
    }
    const std::string place = IniFolder::Path("panel_sheet.seen.txt");
    WriteFileBytes(place, seen);
    EXPECT_TRUE(seen == ReadFileBytes(IniFolder::Path("panel_sheet.txt"))) << "compare it with " << place;
}

// The second half of a page that is open is only uncovered.
TEST_F(PanelTest, SecondHalfOfAnOpenPage)
{
    const struct {
        TREEITEM half, whole;
        int toggle;
        const char *text;
        int widening;
        int covered, beforeIt; // a control of the second half, and the last button before that half
    } cases[] = {
        {TREE_APPLICATIONS, TREE_COLOR, IDC_COLOR_TOGGLE, "色設定画面を閉じる", 344, IDC_COLOR_BRIGHTNESS_EDIT,
         IDC_COLOR_PROFILE_DELETE},
        {TREE_NETWORK, TREE_COMM_LOG, IDC_NETWORK_TOGGLE, "通信ログ画面を閉じる", 328, IDC_NETWORK_LOG,
         IDC_NETWORK_APPLY},
    };
    ASSERT_TRUE(Open());
    PutDword(HKEY_CURRENT_USER, "Lumivane2", "EnableChangeName", 1); // that button can be used
    const auto reached = [&](HWND page, int control) { return IsReachedByTab(Panel(), GetDlgItem(page, control)); };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.text);
        Choose(TREE_ROOT);
        Choose(c.half);
        const HWND page = Page(c.whole);
        EXPECT_FALSE(IsChecked(page, c.toggle));
        EXPECT_FALSE(reached(page, c.covered));
        EXPECT_TRUE(reached(page, c.beforeIt));
        const HWND group = GetNextDlgGroupItem(Panel(), GetDlgItem(page, c.beforeIt), FALSE);
        EXPECT_NE(group, GetDlgItem(page, c.covered)) << "by an arrow key";
        Choose(c.whole);
        EXPECT_EQ(Page(c.whole), page) << "not created anew";
        EXPECT_TRUE(reached(page, c.covered));
        EXPECT_EQ(Widening(), c.widening);
        EXPECT_TRUE(IsChecked(page, c.toggle));
        EXPECT_EQ(TextOf(page, c.toggle), c.text);
        Choose(TREE_ROOT);
        Choose(c.whole);
        EXPECT_EQ(Widening(), c.widening) << "from the base width";
        EXPECT_TRUE(IsChecked(Page(c.whole), c.toggle));
        EXPECT_TRUE(reached(Page(c.whole), c.covered));
        // A page that closed itself leaves its width behind.
        Choose(c.half);
        SendMessageA(Page(c.whole), WM_CLOSE, 0, 0);
        EXPECT_EQ(Page(c.whole), nullptr);
        Choose(c.whole);
        EXPECT_NE(Page(c.whole), nullptr);
    }
}

TEST_F(PanelTest, AChangeOfMonitorReturnsToTheBaseWidth)
{
    ASSERT_TRUE(Open());
    Choose(TREE_BUTTON_LOCK);
    host.TakeLog();
    ChooseMonitor(0);
    EXPECT_EQ(host.TakeLog(), Lines{}) << "the same one again";
    EXPECT_EQ(Widening(), 152);
    ChooseMonitor(1);
    EXPECT_EQ(host.TakeLog(), (Lines{"get 1 F2", "set 1 F4 = 255", "get 1 F4"}));
    EXPECT_EQ(TreeItemHandle(TREE_RESERVATION), nullptr) << "only what is in the tree can be taken from it";
    EXPECT_EQ(g_nCurMonitor, 1);
    EXPECT_EQ(Widening(), 0);
    EXPECT_FALSE(IsReachedByTab(Panel(), GetDlgItem(Page(TREE_BUTTON_LOCK), IDC_LOCK_TOGGLE_1)));
    Choose(TREE_VERSION);
    EXPECT_EQ(Page(TREE_BUTTON_LOCK), nullptr);
}

TEST_F(PanelTest, WithoutAMonitor)
{
    ASSERT_TRUE(Start());
    StartUp();
    g_bNoMonitor = 1;
    ASSERT_TRUE(Open());
    const HWND tree = GetDlgItem(Panel(), IDC_PANEL_TREE);
    EXPECT_EQ(TreeLines(tree), (Lines{"Lumivane2", "  バージョン情報"}));
    EXPECT_FALSE(IsEnabled(Panel(), IDC_PANEL_MONITOR));
    // With its list disabled the panel opens on the tree, whose first item it then shows.
    constexpr int opened = 400;
    Choose(TREE_VERSION);
    EXPECT_EQ(Widening(), 224 - opened);
    Choose(TREE_ROOT);
    EXPECT_EQ(Widening(), 400 - opened);
    EXPECT_EQ(Page(TREE_VERSION), nullptr);
    const HWND page = GetWindow(GetDlgItem(Panel(), IDC_PANEL_DEBUG), GW_HWNDNEXT);
    TakeRecordedCalls();
    Click(page, IDC_NO_MONITOR_LIST);
    EXPECT_EQ(TakeRecordedCalls().size(), 1u) << "opened in the browser";
    Choose(TREE_VERSION);
    EXPECT_TRUE(IsWindow(page)) << "forgotten with the click, so not destroyed";
    Close();
    EXPECT_FALSE(IsWindow(page));
    g_bNoMonitor = 0;
}

TEST_F(PanelTest, HelpAndLogo)
{
    ASSERT_TRUE(Open());
    char directory[MAX_PATH] = "";
    GetModuleFileNameA(nullptr, directory, sizeof directory);
    *(strrchr(directory, '\\') + 1) = '\0';
    Click(Panel(), IDC_PANEL_HELP);
    EXPECT_EQ(TakeRecordedCalls(), (Lines{std::string("ShellExecute open|lumvanap.chm||") + directory + "|5"}));
    SendDlgItemMessageA(Panel(), IDC_PANEL_LOGO, WM_LBUTTONDOWN, 0, 0);
    SendDlgItemMessageA(Panel(), IDC_PANEL_LOGO, WM_LBUTTONUP, 0, 0);
    EXPECT_EQ(TakeRecordedCalls().size(), 1u);
}

// ---- Mouse and keyboard of the X server ---------------------------------------------------------------------------

namespace {

// Gives xdotool words such as "mousemove 10 20 click 1". Wine starts programs of the system beneath, too, and tells
// nothing of their end: wait for what they bring about. Nor does it give handles of them: what stands in their place is
// some other object's, and must not be closed.
void GiveInput(const std::string &words)
{
    std::string command = "Z:\\usr\\bin\\xdotool " + words;
    STARTUPINFOA start = {};
    start.cb = sizeof start;
    PROCESS_INFORMATION process = {};
    ASSERT_TRUE(
        CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &process));
}

// A point of a window in screen coordinates, as words: "mousemove X Y ".
std::string MoveTo(HWND window, int x, int y)
{
    POINT point = {x, y};
    ClientToScreen(window, &point);
    return "mousemove " + std::to_string(point.x) + " " + std::to_string(point.y) + " ";
}

// A tree item's middle, or what the tree shows of it.
std::string MoveToItem(HWND tree, TREEITEM item)
{
    RECT place = {}; // names the item first
    const HTREEITEM handle = TreeItemHandle(item);
    memcpy(&place, &handle, sizeof handle);
    SendMessageA(tree, TVM_GETITEMRECT, TRUE, reinterpret_cast<LPARAM>(&place));
    return MoveTo(tree, (place.left + place.right) / 2, (place.top + place.bottom) / 2);
}

} // namespace

TEST_F(PanelTest, IsDrivenByRealMouseAndKeyboard)
{
    if (GetFileAttributesA("Z:\\usr\\bin\\xdotool") == INVALID_FILE_ATTRIBUTES)
        GTEST_SKIP() << "no X server with xdotool";
    host.monitors[0].features[VCP_COLOR_PRESET].current = 5;
    ASSERT_TRUE(Open());
    const HWND tree = GetDlgItem(Panel(), IDC_PANEL_TREE);
    GiveInput(MoveToItem(tree, TREE_ROOT) + "click 1");
    ASSERT_TRUE(Comes([&] { return IsWindowVisible(Panel()) && SelectedTreeItem(Panel()) == TREE_ROOT; }));
    // Right opens what is closed, down goes on: "アプリケーション登録", then "色設定" below it.
    GiveInput("key Right key Down");
    ASSERT_TRUE(Comes([&] { return Page(TREE_COLOR) && Widening() == 200; }));
    GiveInput("key Right key Down");
    ASSERT_TRUE(Comes([&] { return Widening() == 344; }));

    const HWND slider = GetDlgItem(Page(TREE_COLOR), IDC_COLOR_CONTRAST_SLIDER);
    RECT thumb;
    SendMessageA(slider, TBM_GETTHUMBRECT, 0, reinterpret_cast<LPARAM>(&thumb));
    const int x = (thumb.left + thumb.right) / 2, y = (thumb.top + thumb.bottom) / 2;
    host.TakeLog();
    GiveInput(MoveTo(slider, x, y) + "mousedown 1 " + MoveTo(slider, x - 10, y) + MoveTo(slider, x - 20, y) +
              "mouseup 1");
    const auto contrast = [&] {
        const auto lock = host.Lock();
        return host.monitors[0].features[VCP_CONTRAST].current;
    };
    ASSERT_TRUE(Comes([&] { return contrast() < 70; })) << "the monitor followed the thumb";
    EXPECT_EQ(TextOf(Page(TREE_COLOR), IDC_COLOR_CONTRAST_EDIT), std::to_string(contrast()));
    const LONG dragged = contrast();
    GiveInput("key Right");
    EXPECT_TRUE(Comes([&] { return contrast() == dragged + 1; })) << "and the arrow key";
}

TEST_F(PanelTest, NothingRemainsOfAnOpening)
{
    const auto showEveryPage = [&] {
        for (int item = TREE_ROOT; item < TREE_ITEM_COUNT; ++item)
            Choose(static_cast<TREEITEM>(item));
    };
    ExpectNothingLeft(2, [&] {
        ASSERT_TRUE(Open());
        ChooseMonitor(1);
        ChooseMonitor(0);
        showEveryPage();
        Close();
    });
}
