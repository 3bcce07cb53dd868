// The whole host on real monitors: RunHost with the plug-in as it ships, its panel used while monitors are slow, fail,
// hang and vanish.
#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>
#include <wtsapi32.h>

#include <memory>

#include "host/base/program_path.h"
#include "host/base/resource.h"
#include "host/base/text.h"
#include "host/host_app.h"
#include "panel/resources/resource.h"
#include "tests/dxva2_stand_in/tests/stand_in_control.h"
#include "tour/tour_clock.h"
#include "tour/tour_hands.h"
#include "tour/tour_panel.h"
#include "tour/tour_settings.h"

constexpr DWORD LONG_ENOUGH = 40000; // ms: nothing here takes so long, however loaded the machine is

class HostOnRealMonitors : public testing::Test {
protected:
    void TearDown() override { Stop(); }

    // Until the plug-in has found the monitors and asks no more.
    void Start()
    {
        std::string error;
        app = std::make_unique<HOSTAPP>();
        app->hInstance = GetModuleHandleW(nullptr);
        ASSERT_TRUE(ParseOptions({"--fresh", "--no-tray"}, &app->options, &error)) << error;
        for (const char *left : {"\\profile.ini", "\\ontimer.ini"}) // by a test that was ended on the way
            DeleteFileW(Widen(ProgramFolder() + left).c_str());
        ASSERT_TRUE(OpenTourSettings(&error)) << error;
        app->prepare = [](HOSTAPP *host, std::string *) { return InstallTourClock(host->plugin.library.hModule); };
        thread = std::thread([this] { status = RunHost(app.get()); });
        ASSERT_TRUE(WaitUntil([this] { return HasNotice(&app->plugin.router, HOST_NOTICE_STARTED); }, LONG_ENOUGH));
        WaitUntilQuiet();
        MONITORWATCH *watch = &app->reload.watch;
        watch->looked = [this, looked = watch->looked](const LOOK &look) {
            looked(look);
            looks++;
        };
    }

    // The displays change, and all looks that follow are made at once. Returns when what has come of them is done.
    void LookAround()
    {
        MONITORWATCH *watch = &app->reload.watch;
        const int before = looks;
        SendMessageW(app->window.hWnd, WM_DISPLAYCHANGE, 0, 0);
        {
            std::lock_guard lock(watch->mutex);
            watch->series.startTick -= 60 * 1000;
        }
        watch->changed.notify_one();
        const auto isOver = [=, this] {
            std::lock_guard lock(watch->mutex);
            return looks > before && !watch->series.isOn;
        };
        ASSERT_TRUE(WaitUntil(isOver, LONG_ENOUGH));
        CallOnWindow(&app->window, [] {});
    }

    void Stop()
    {
        if (!thread.joinable())
            return;
        EndHost(&app->window, 0);
        thread.join();
        CloseTourSettings();
        EXPECT_EQ(status, 0);
    }

    void WaitUntilQuiet()
    {
        EXPECT_TRUE(WaitUntil([this] { return IsLinkQuiet(&app->plugin.router, QUIET_TIME); }, LONG_ENOUGH));
    }

    std::string Command(const char *text)
    {
        PLUGINCOMMAND command;
        std::string error;
        PLUGINANSWER answer;
        EXPECT_TRUE(ParsePluginCommand(text, &command, &error)) << error;
        CallOnWindow(&app->window, [&] { answer = SendPluginCommand(&app->plugin.router, command); });
        return DescribePluginAnswer(command, answer);
    }

    void OpenColorPage()
    {
        CallOnWindow(&app->window, [this] { app->plugin.library.slots[PLUGIN_SLOT_OPEN_PANEL](nullptr); });
        ASSERT_TRUE(WaitUntil([] { return FindPanel() && TreeTexts().size() > 3; }, LONG_ENOUGH));
        ChooseColorPage();
    }

    // The former one may go at any moment, so one look decides.
    static bool WaitForAnotherPanel(HWND former)
    {
        const auto isThere = [=] {
            const HWND panel = FindPanel();
            return panel && panel != former;
        };
        return WaitUntil(isThere, LONG_ENOUGH);
    }

    // The item of the tree with this text, below another one.
    static LRESULT FindItem(HWND tree, LRESULT above, const std::wstring &text)
    {
        for (LRESULT item = SendMessageW(tree, TVM_GETNEXTITEM, TVGN_CHILD, above); item;
             item = SendMessageW(tree, TVM_GETNEXTITEM, TVGN_NEXT, item)) {
            wchar_t shown[64] = L"";
            TVITEMW wanted = {};
            wanted.mask = TVIF_TEXT;
            wanted.hItem = reinterpret_cast<HTREEITEM>(item);
            wanted.pszText = shown;
            wanted.cchTextMax = 63;
            SendMessageW(tree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&wanted));
            const LRESULT found = text == shown ? item : FindItem(tree, item, text);
            if (found)
                return found;
        }
        return 0;
    }

    // Until the page with this control is there.
    static void ChoosePage(const wchar_t *text, int control)
    {
        const HWND tree = GetDlgItem(FindPanel(), IDC_PANEL_TREE);
        SendMessageW(tree, TVM_SELECTITEM, TVGN_CARET,
                     FindItem(tree, SendMessageW(tree, TVM_GETNEXTITEM, TVGN_ROOT, 0), text));
        ASSERT_TRUE(WaitUntil([=] { return FindPage() && GetDlgItem(FindPage(), control); }, LONG_ENOUGH));
    }

    static void ChooseColorPage() { ChoosePage(L"色設定", IDC_COLOR_PROFILE_COMBO); }

    // Returns when the panel's thread has done what follows.
    static void Choose(HWND dialog, int combo, int entry)
    {
        SendDlgItemMessageW(dialog, combo, CB_SETCURSEL, static_cast<WPARAM>(entry), 0);
        DWORD_PTR result = 0;
        ASSERT_TRUE(SendMessageTimeoutW(dialog, WM_COMMAND, MAKEWPARAM(combo, CBN_SELCHANGE),
                                        reinterpret_cast<LPARAM>(GetDlgItem(dialog, combo)), SMTO_NORMAL, LONG_ENOUGH,
                                        &result));
    }

    // In the panel's list; and its colour page.
    static void ChooseMonitor(int monitor)
    {
        Choose(FindPanel(), IDC_PANEL_MONITOR, monitor);
        ChooseColorPage();
    }

    static void SetClock(WORD hour, WORD minute)
    {
        SYSTEMTIME time = TourClock();
        time.wHour = hour;
        time.wMinute = minute;
        SetTourClock(time);
    }

    // On the present monitor, from 20:00 to 20:30.
    static void ReserveVideo()
    {
        ASSERT_NO_FATAL_FAILURE(ChoosePage(L"タイマー予約設定", IDC_RESERVATION_LIST));
        const struct {
            int combo;
            WPARAM entry;
        } choices[] = {{IDC_RESERVATION_START_HOUR, 20},
                       {IDC_RESERVATION_START_MINUTE, 0},
                       {IDC_RESERVATION_END_HOUR, 20},
                       {IDC_RESERVATION_END_MINUTE, 30}};
        for (const auto &one : choices)
            SendDlgItemMessageW(FindPage(), one.combo, CB_SETCURSEL, one.entry, 0);
        ASSERT_NE(SendDlgItemMessageW(FindPage(), IDC_RESERVATION_CHANNEL, CB_SELECTSTRING, static_cast<WPARAM>(-1),
                                      reinterpret_cast<LPARAM>(L"ビデオ")),
                  CB_ERR);
        SendDlgItemMessageW(FindPage(), IDC_RESERVATION_ADD, BM_CLICK, 0, 0);
        EXPECT_EQ(SendDlgItemMessageW(FindPage(), IDC_RESERVATION_LIST, LVM_GETITEMCOUNT, 0, 0), 1);
    }

    static UINT ShownContrast() { return GetDlgItemInt(FindPage(), IDC_COLOR_CONTRAST_EDIT, nullptr, FALSE); }

    static void TypeContrast(int value)
    {
        SetDlgItemInt(FindPage(), IDC_COLOR_CONTRAST_EDIT, static_cast<UINT>(value), FALSE);
        SendMessageW(FindPage(), WM_COMMAND, MAKEWPARAM(IDC_COLOR_CONTRAST_EDIT, EN_KILLFOCUS),
                     reinterpret_cast<LPARAM>(GetDlgItem(FindPage(), IDC_COLOR_CONTRAST_EDIT)));
    }

    std::unique_ptr<HOSTAPP> app;
    std::thread thread;
    int status = -1;
    std::atomic<int> looks = 0;
};

// First a monitor of which only every third access succeeds. Then it is unplugged in the middle of a profile's values:
// the brightness is read, and with the contrast it is gone, while the other one answers nonsense for a
// time. Last a driver that does not come back: the request that is in it fails after eight seconds, all others at once.
TEST_F(HostOnRealMonitors, KeepThePanelUsableWhateverTheyDo)
{
    OpenTestMonitors({{"ALPHA", "", ""}, {"BETA", "", ""}});
    SetDesk({{0, 1}, {1, 2}});
    g_StandIn.set(0, STANDIN_ANSWERS_EVERY, 3);
    ASSERT_NO_FATAL_FAILURE(Start());
    EXPECT_EQ(CopyWireMonitors(&app->plugin.router)[0].name, "ALPHA");
    EXPECT_EQ(Command("count"), "2 monitors");
    EXPECT_EQ(Command("set-vcp 10 77"), "brightness (0x10): 77 of 100");
    ASSERT_NO_FATAL_FAILURE(OpenColorPage());
    EXPECT_EQ(ShownContrast(), 50u);

    g_StandIn.set(0, STANDIN_ANSWERS_EVERY, 0);
    g_StandIn.set(0, STANDIN_GONE_AFTER, 1);
    Choose(FindPage(), IDC_COLOR_PROFILE_COMBO, 2);
    EXPECT_EQ(Seen(0, 0x10), 77) << "the profile has more than the monitor's maximum";
    EXPECT_EQ(Seen(0, 0x12), 50);
    g_StandIn.set(1, STANDIN_READS_AS, 0xFFFF);
    ChooseMonitor(1);
    EXPECT_EQ(ShownContrast(), 0xFFFFu) << "nonsense is shown as it is";
    g_StandIn.set(1, STANDIN_READS_AS, 0);
    TypeContrast(83);
    EXPECT_EQ(Seen(1, 0x12), 83) << "the other one does what the panel says";

    g_StandIn.set(0, STANDIN_GONE, 0);
    ChooseMonitor(0);
    const auto isBack = [] {
        TypeContrast(64);
        return Seen(0, 0x12) == 64;
    };
    EXPECT_TRUE(WaitUntil(isBack, LONG_ENOUGH)) << "and so does the first, once it has come back";

    g_StandIn.set(0, STANDIN_HANGS, 1);
    Choose(FindPage(), IDC_COLOR_PROFILE_COMBO, 3);
    ChooseMonitor(1);
    TypeContrast(29);
    EXPECT_EQ(Seen(1, 0x12), 29);
    Stop();
    EXPECT_TRUE(app->isDriverStuck) << "so that main ends the process the hard way";
    g_StandIn.set(0, STANDIN_HANGS, 0);
}

// The cable of the second one is plugged, and pulled for good later, while the first one sleeps: it is away as long as
// the user does not have the host forget it.
TEST_F(HostOnRealMonitors, AreTakenUpAnewWithThePanelOpen)
{
    OpenTestMonitors({{"ALPHA", "", ""}, {"BETA", "", ""}});
    SetDesk({{0, 1}});
    Start();
    EXPECT_EQ(Command("count"), "1 monitors");
    OpenColorPage();
    const HWND host = app->window.hWnd, panel = FindPanel();
    SetDesk({{1, 1}});
    PostMessageW(host, WM_DISPLAYCHANGE, 0, 0);
    EXPECT_TRUE(WaitForAnotherPanel(panel)) << "it comes by itself";
    EXPECT_EQ(app->window.hWnd, host);
    WaitUntilQuiet();
    EXPECT_EQ(Command("count"), "2 monitors") << "the first one keeps its place";
    ChooseColorPage();
    ChooseMonitor(1);
    TypeContrast(31);
    EXPECT_EQ(Seen(1, 0x12), 31);

    SetDesk({{0, 1}});
    const HWND former = FindPanel();
    PostMessageW(host, WM_COMMAND, IDM_DETECT_MONITORS, 0);
    EXPECT_TRUE(WaitForAnotherPanel(former));
    EXPECT_EQ(Command("count"), "1 monitors");
}

// Of two monitors one or both sleep and come back, one after the other and with other numbers, and Windows has a
// display of its own meanwhile. The plug-in, its panel and all that the user has set there stay as they are, and a
// reservation of the second monitor, whose page was opened once, begins at its minute.
TEST_F(HostOnRealMonitors, AreTheSameAfterTheySlept)
{
    OpenTestMonitors({{"ALPHA", "", ""},
                      {"BETA", "capabilities = (type(lcd)model(BETA)vcp(10 12 14(05 08 0B) 60(03 05 09) E8))\n", ""},
                      {"STANDBY", "", ""}});
    SetDesk({{0, 1}, {1, 2}});
    ASSERT_NO_FATAL_FAILURE(Start());
    SetClock(19, 58);
    ASSERT_NO_FATAL_FAILURE(OpenColorPage());
    ASSERT_NO_FATAL_FAILURE(ChooseMonitor(1));
    ASSERT_NO_FATAL_FAILURE(ReserveVideo());
    ASSERT_NO_FATAL_FAILURE(ChooseColorPage());
    CheckDlgButton(FindPage(), IDC_COLOR_DIRECT_LINK, BST_CHECKED);
    SendMessageW(FindPage(), WM_COMMAND, MAKEWPARAM(IDC_COLOR_DIRECT_LINK, BN_CLICKED),
                 reinterpret_cast<LPARAM>(GetDlgItem(FindPage(), IDC_COLOR_DIRECT_LINK)));
    const auto isLinked = [this] { return CopyWireMonitors(&app->plugin.router)[1].directLink; };
    ASSERT_TRUE(WaitUntil(isLinked, LONG_ENOUGH));
    const HWND panel = FindPanel(), page = FindPage();

    const std::vector<DESKMONITOR> desks[] = {
        {{1, 2}},         {{1, 1}},        {},       {{2, 1, false}},  {{2, 1, false}, {0, 3}},
        {{1, 1}, {0, 2}}, {{2, 1, false}}, {{1, 4}}, {{1, 4}, {0, 1}},
    };
    for (const auto &desk : desks) {
        SetDesk(desk);
        ASSERT_NO_FATAL_FAILURE(LookAround());
        CallOnWindow(&app->window, [this] { EXPECT_FALSE(app->reload.isUnderWay); });
    }
    EXPECT_EQ(FindPanel(), panel);
    EXPECT_EQ(FindPage(), page);
    EXPECT_EQ(SendDlgItemMessageW(panel, IDC_PANEL_MONITOR, CB_GETCURSEL, 0, 0), 1);
    EXPECT_TRUE(isLinked());
    EXPECT_EQ(IsDlgButtonChecked(page, IDC_COLOR_DIRECT_LINK), static_cast<UINT>(BST_CHECKED));
    EXPECT_EQ(app->tray.notices.told[MATTER_CHANGE], L"") << "no balloon";
    EXPECT_EQ(Command("count"), "2 monitors");
    SetClock(20, 0);
    EXPECT_TRUE(WaitUntil([] { return Seen(1, 0x60) == 5; }, LONG_ENOUGH)) << "each is still reached by its number";
}

// Nothing goes to a monitor while nobody is there, and then it gets what it has forgotten and what was held back.
TEST_F(HostOnRealMonitors, AreLeftAloneWhileNobodyIsThere)
{
    const struct {
        UINT message;
        WPARAM leaves, returns;
    } cases[] = {{WM_POWERBROADCAST, PBT_APMSUSPEND, PBT_APMRESUMEAUTOMATIC},
                 {WM_WTSSESSION_CHANGE, WTS_SESSION_LOCK, WTS_SESSION_UNLOCK}};
    OpenTestMonitors({{"ALPHA", "", ""}});
    SetDesk({{0, 1}});
    ASSERT_NO_FATAL_FAILURE(Start());
    EXPECT_EQ(Command("set-vcp 10 77"), "brightness (0x10): 77 of 100");
    ASSERT_NO_FATAL_FAILURE(OpenColorPage());
    for (const auto &one : cases) {
        SendMessageW(app->window.hWnd, one.message, one.leaves, 0);
        const DWORD accesses = g_StandIn.accesses(0);
        TypeContrast(66);
        SendMessageW(app->window.hWnd, WM_DISPLAYCHANGE, 0, 0);
        EXPECT_EQ(g_StandIn.accesses(0), accesses);
        g_StandIn.turn(0, 0x10, 40);
        SendMessageW(app->window.hWnd, one.message, one.returns, 0);
        EXPECT_TRUE(WaitUntil([] { return Seen(0, 0x10) == 77 && Seen(0, 0x12) == 66; }, LONG_ENOUGH));
        g_StandIn.turn(0, 0x12, 50);
    }
}
