// Start-up, timers, deferred opening and shutdown of the kernel window.
#include "kernel/kernel_window.h"

#include "kernel/base/platform.h"
#include "kernel/display_cpl.h"
#include "kernel/plugin.h"
#include "launcher/launcher_settings.h"
#include "profiles/foreground.h"
#include "support/plugin_session.h"

#include <commctrl.h>
#include <prsht.h>

#include <algorithm>

using namespace std::string_literals;

namespace {

class KernelWindowTest : public PluginTest {
protected:
    KernelWindowTest() { host.monitors = {ColorMonitor("NRV-PA1"), ColorMonitor("NRV-PA2")}; }
};

const std::string noMonitorText =
    "x OK: DDC/"
    "CI対応のNorvale製液晶ディスプレイが検出できませんでした。\nドライバが正しくインストールされているか、または対応"
    "グラフィックチップをご使用になっているかをご確認ください。";

// The page that a property sheet was told to show.
LPARAM s_SelectedPage = 0;

LRESULT CALLBACK SheetProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == PSM_SETCURSELID)
        s_SelectedPage = lParam;
    return DefWindowProcA(window, message, wParam, lParam);
}

} // namespace

TEST_F(KernelWindowTest, PacketsOfAWholeRun)
{
    host.monitors[1].capabilities = "(vcp(10 12))"; // no button lock, no input list
    ASSERT_TRUE(Start());
    EXPECT_EQ(g_bStarted, 0);
    const std::map<UINT_PTR, UINT> timers = {
        {TIMER_START_UP, 1000}, {TIMER_FOREGROUND, 2000}, {TIMER_RESERVATION, 1000}};
    EXPECT_EQ(ArmedTimers(), timers);
    EXPECT_EQ(CommonControlClasses(), static_cast<DWORD>(ICC_DATE_CLASSES | ICC_INTERNET_CLASSES));
    StartUp();
    EXPECT_EQ(g_bStarted, 1);
    EXPECT_FALSE(KillTimer(g_hKernelWnd, TIMER_START_UP)) << "once";
    EXPECT_EQ(host.TakeLog(), (Lines{"notice 8", "count", "name 0", "capabilities 0", "inputs 0: 1 3", "name 1",
                                     "capabilities 1", "inputs 1:", "get 0 E0", "get 0 10", "get 0 12", "get 0 14",
                                     "get 0 16", "get 0 18", "get 0 1A", "notice 9", "get 0 F2", "get 1 F2"}));
    Stop();
    EXPECT_EQ(host.TakeLog(), (Lines{"directlink 0 = 0", "set 0 F2 = 0", "edid 0", "edid 1", "notice 3"}));
}

TEST_F(KernelWindowTest, AStopEndsTheStartUpAtTheAccessThatItMeets)
{
    const struct {
        const char *last; // the stop comes while this is under way
        Answer::Kind answer;
        DWORD endFlag; // of the run before: 1 = not in order, the launcher is reset
    } cases[] = {
        {"count", Answer::Never, 0},           {"name 0", Answer::Inline, 0},
        {"capabilities 0", Answer::Inline, 0}, {"get 0 F2", Answer::Inline, 0},
        {"set 0 F2 = 0", Answer::Inline, 1},   {"set 0 F2 = 5", Answer::Inline, 0},
        {"set 0 F4 = 255", Answer::Inline, 0},
    };
    IniFolder::Write("lvcap.ini", "[NRV-PA1]\r\nCapability=F4\r\n[NRV-PA2]\r\nCapability=F4\r\n");
    for (const auto &c : cases) {
        const std::pair<const char *, DWORD> before[] = {
            {"InitFlag", 1},           {"MaxMonitor", 2},          {"EndFlag", c.endFlag},
            {"dwLTimer", 1},           {"Launcher_1_Enable_1", 2}, {"PowerSwitch_1", 1},
            {"ButtonLockStatus_0", 5}, {"ButtonLockStatus_1", 6},
        };
        for (const auto &[name, stored] : before)
            PutLauncher(name, stored);
        g_bAbort = 0;
        host.TakeLog();
        host.plan = [&](const TestRequest &) {
            if (host.Log().back() != c.last)
                return Answer{};
            g_bAbort = 1;
            return Answer{c.answer};
        };
        ASSERT_TRUE(Start());
        StartUp();
        EXPECT_EQ(host.TakeLog().back(), c.last);
        host.plan = [](const TestRequest &) { return Answer{}; };
        Stop();
        for (const auto &[name, stored] : before) {
            const bool reset = c.endFlag == 1 && name != "InitFlag"s && name != "MaxMonitor"s;
            EXPECT_EQ(LauncherValue(name), reset ? 0 : stored) << name << " at " << c.last;
        }
    }
}

TEST_F(KernelWindowTest, WithoutAMonitor)
{
    host.monitors.clear();
    DWORD shortest = INFINITE; // of three stops: a machine that is busy elsewhere must not count
    for (int round = 0; round < 3; ++round) {
        g_bAbort = 0;
        ASSERT_TRUE(Start());
        StartUp();
        EXPECT_EQ(host.TakeLog(), (Lines{"notice 8", "count"}));
        EXPECT_EQ(g_bNoMonitor, 1);
        EXPECT_EQ(g_bStarted, 0);
        EXPECT_EQ(PluginOpenPanel(nullptr), 1) << "deferred, for as long as it takes";
        const DWORD start = GetTickCount();
        Stop();
        shortest = std::min(shortest, GetTickCount() - start);
        EXPECT_EQ(host.TakeLog(), (Lines{"directlink 0 = 0", "notice 3"}));
    }
    EXPECT_LT(shortest, 700u) << "the waiter looks once a second, but the stop does not wait for that";
}

TEST_F(KernelWindowTest, ThePanelIsAskedForAgainOnceStarted)
{
    ASSERT_TRUE(Start());
    EXPECT_EQ(PluginOpenPanel(nullptr), 1);
    EXPECT_EQ(PluginOpenPanel(nullptr), 1);
    StartUp();
    // The waiters' threads end, their blocks are freed, and messages that name no pending deferral do no harm.
    EXPECT_EQ(SendMessageA(g_hKernelWnd, WM_KERNEL_PANEL_DEFERRED, 0, 0), 1);
    EXPECT_EQ(SendMessageA(g_hKernelWnd, WM_KERNEL_PANEL_DEFERRED, 0, 0x1234), 1);

    InjectFault(Fault::Thread);
    g_bStarted = 0;
    EXPECT_EQ(PluginOpenPanel(nullptr), 0);
    g_bStarted = 1;
}

TEST_F(KernelWindowTest, DirectLinkOfTheSettingsIsToldToTheHost)
{
    PutDword(HKEY_CURRENT_USER, "Lumivane2", "DirectLink", 1);
    ASSERT_TRUE(Start());
    StartUp();
    EXPECT_EQ(g_bDirectLink, 1);
    EXPECT_EQ(host.TakeLog().back(), "directlink 0 = 1");
    g_bAllMonitors = 1;
    Stop();
    EXPECT_EQ(host.TakeLog().front(), "directlink -1 = 0");
}

TEST_F(KernelWindowTest, ButtonRegistersAreClearedWhenALauncherFunctionIsOn)
{
    IniFolder::Write("lvcap.ini", "[NRV-PA2]\r\nCapability=F4\r\n");
    PutLauncher("dwLTimer", 0xFFFFFFFF); // unsigned: more than none
    ASSERT_TRUE(Start());
    StartUp();
    EXPECT_EQ(host.TakeLog().back(), "set 1 F4 = 255");
    EXPECT_EQ(ArmedTimers()[TIMER_BUTTON_POLL], BUTTON_POLL_PERIOD_MS) << "or no button launches after a restart";
    Stop();

    g_bAbort = 0;
    PutLauncher("dwLTimer", 0);
    host.TakeLog();
    ASSERT_TRUE(Start());
    StartUp();
    EXPECT_EQ(host.TakeLog().back(), "get 1 F2");
}

TEST_F(KernelWindowTest, NamesAreSetUpOnce)
{
    ASSERT_TRUE(Start());
    EXPECT_EQ(DwordAt(HKEY_CURRENT_USER, "Lumivane2", "IiF"), 1u);
    char name[64] = "";
    DWORD size = sizeof name;
    GetComputerNameA(name, &size);
    const auto stored = TextAt(HKEY_CURRENT_USER, "Lumivane2", "LocalUserName");
    ASSERT_TRUE(stored);
    EXPECT_EQ(_strnicmp(stored->c_str(), name, strlen(name)), 0) << *stored;
    Stop();

    PutText(HKEY_CURRENT_USER, "Lumivane2", "LocalUserName", "somebody");
    g_bAbort = 0;
    ASSERT_TRUE(Start());
    EXPECT_EQ(TextAt(HKEY_CURRENT_USER, "Lumivane2", "LocalUserName"), "somebody");
}

TEST_F(KernelWindowTest, AnOlderVersionIsClosedAfterAWord)
{
    host.MakeWindow("LumVanClass"); // the older program's main window
    BoxAnswerer answerer("Lumivane 2", IDOK);
    ASSERT_TRUE(Start());
    Tick(TIMER_BUTTON_POLL);
    EXPECT_EQ(answerer.Boxes(), Lines{}) << "not after a button poll";
    Tick(TIMER_RESERVATION);
    ASSERT_TRUE(answerer.WaitForBoxes(1));
    EXPECT_EQ(FindWindowA("LumVanClass", nullptr), nullptr);
    Tick(TIMER_RESERVATION);
    EXPECT_EQ(answerer.Boxes(), Lines{Ansi("i OK: 旧バージョンのLumivaneを終了させます。")}) << "once";
}

TEST_F(KernelWindowTest, MissingProcessLibrary)
{
    BoxAnswerer answerer("Lumivane 2", IDOK);
    InjectFault(Fault::Library);
    if (GetPlatformId() == PLATFORM_WIN95) {
        EXPECT_TRUE(Start()) << "that family needs no such library";
        EXPECT_EQ(g_hPsapi, nullptr);
        return;
    }
    ASSERT_EQ(Init(), 1) << "the thread itself was started";
    ASSERT_TRUE(answerer.WaitForBoxes(1));
    Stop();
    EXPECT_EQ(answerer.Boxes(), Lines{Ansi(noMonitorText)});
    EXPECT_EQ(g_hKernelWnd, nullptr);
    EXPECT_EQ(PluginOpenPanel(nullptr), 0);
}

TEST_F(KernelWindowTest, ATimerThatCannotBeArmedEndsTheWindow)
{
    const struct {
        int nth; // of the timers armed at creation
        Lines boxes;
    } cases[] = {
        // The creation goes on without its window, so the second timer fails with the first.
        {2, {"x OK: Fore Ground Window can't check", "x OK: On Timer can't set"}},
        {3, {"x OK: On Timer can't set"}},
    };
    for (const auto &c : cases) {
        BoxAnswerer answerer("Lumivane 2", IDOK);
        InjectFault(Fault::Timer, c.nth);
        g_bAbort = 0;
        ASSERT_EQ(Init(), 1);
        ASSERT_TRUE(answerer.WaitForBoxes(c.boxes.size()));
        Stop();
        EXPECT_EQ(g_hKernelWnd, nullptr);
        EXPECT_EQ(answerer.Boxes(), c.boxes);
    }
}

TEST_F(KernelWindowTest, ClosingTheWindowShutsDown)
{
    ASSERT_TRUE(Start());
    StartUp();
    host.TakeLog();
    PutLauncher("EndFlag", 1);
    EXPECT_EQ(SendMessageA(g_hKernelWnd, WM_CLOSE, 0, 0), 1);
    EXPECT_EQ(g_hKernelWnd, nullptr);
    EXPECT_EQ(host.TakeLog(), (Lines{"directlink 0 = 0", "set 0 F2 = 0", "set 1 F2 = 0", "edid 0", "edid 1"}));
    EXPECT_EQ(LauncherValue("EndFlag"), 0u);
}

TEST_F(KernelWindowTest, DisplayControlPanelIsStartedAndSearchedFor)
{
    ASSERT_TRUE(Start());
    TakeRecordedCalls();
    EXPECT_EQ(SendMessageA(g_hKernelWnd, WM_COMMAND, COMMAND_DISPLAY_CPL + 1, 0), 1);
    EXPECT_EQ(TakeRecordedCalls(), Lines{});
    EXPECT_EQ(SendMessageA(g_hKernelWnd, WM_COMMAND, MAKEWPARAM(COMMAND_DISPLAY_CPL, 5), 0), 1);
    EXPECT_EQ(TakeRecordedCalls(), Lines{"WinExec control.exe desk.cpl 1"});

    // A property sheet belongs to the common controls library: here one whose instance is that library's.
    s_SelectedPage = 0;
    const HWND sheet = host.MakeWindow("lvkernel_tests_sheet", SheetProc, GetModuleHandleA("comctl32.dll"));
    Tick(TIMER_DISPLAY_CPL);
    EXPECT_EQ(s_SelectedPage, 0) << "not while it is hidden";
    host.Run([&] { ShowWindow(sheet, SW_SHOWNA); });
    Tick(TIMER_DISPLAY_CPL);
    EXPECT_EQ(s_SelectedPage, 800);
    EXPECT_FALSE(KillTimer(g_hKernelWnd, TIMER_DISPLAY_CPL)) << "the search has ended";
    host.DropWindow(sheet);

    BoxAnswerer answerer("MainPanelProc", IDOK);
    InjectFault(Fault::Timer);
    EXPECT_EQ(SendMessageA(g_hKernelWnd, WM_COMMAND, COMMAND_DISPLAY_CPL, 0), 1);
    EXPECT_EQ(answerer.Boxes(), Lines{"- OK: Fail to set timer"});
    EXPECT_EQ(TakeRecordedCalls(), Lines{"WinExec control.exe desk.cpl 1"});
}

TEST_F(HostTest, ColorChangeQuestion)
{
    BoxAnswerer answerer("Lumivane 2", IDYES);
    EXPECT_EQ(AskColorChange(nullptr), 1);
    EXPECT_EQ(answerer.Boxes(), Lines{Ansi("- YES NO: 登録されたアプリケーションが起動されました。\n"
                                           "画面の配色を変更しますか?")});
    PutDword(HKEY_CURRENT_USER, "Lumivane2", "NoAskDialog", 0);
    EXPECT_EQ(AskColorChange(nullptr), 1);
    EXPECT_EQ(answerer.Boxes().size(), 2u);
    PutDword(HKEY_CURRENT_USER, "Lumivane2", "NoAskDialog", 1);
    EXPECT_EQ(AskColorChange(nullptr), 1);
    EXPECT_EQ(answerer.Boxes().size(), 2u) << "not asked";
}

TEST_F(HostTest, ColorChangeRefused)
{
    BoxAnswerer answerer("Lumivane 2", IDNO);
    EXPECT_EQ(AskColorChange(nullptr), 0);
}
