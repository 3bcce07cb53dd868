// The slots, and the life of the kernel thread behind them.
#include "kernel/plugin.h"

#include "kernel/kernel_thread.h"
#include "support/plugin_session.h"

namespace {

const PLUGINSLOT *Slots()
{
    PLUGINFUNC function = {};
    EXPECT_EQ(GetPluginFunc(&function), 1);
    EXPECT_EQ(function.nCount, 18u);
    return function.lpFuncTable;
}

bool IsJapanese()
{
    return GetSystemDefaultLangID() == 1041;
}

} // namespace

TEST_F(PluginTest, UnusedSlotsReturnOneAndTouchNothing)
{
    const PLUGINSLOT *slots = Slots();
    for (const int slot : {4, 5, 6, 7, 8, 9, 11, 12, 13, 14})
        EXPECT_EQ(slots[slot](reinterpret_cast<void *>(1)), 1) << slot;
    EXPECT_EQ(slots[17], nullptr);
    EXPECT_EQ(slots[3](nullptr), 0) << "no kernel window to ask";
}

TEST_F(PluginTest, InfoBlock)
{
    HOSTPACKET packet = {};
    ASSERT_EQ(Slots()[1](&packet), 1);
    EXPECT_EQ(packet.dwDataSize, 16u);
    const auto *info = reinterpret_cast<const PLUGININFO *>(packet.lpData);
    EXPECT_STREQ(info->lpszTitle, "") << "before slot 0";
    EXPECT_STREQ(info->lpszVersion, "1.00");
    EXPECT_EQ(info->lpszDescription, Sjis("マウス操作でモニタの設定を変更できるアプリケーションです。\r\n"
                                          "アプリケーションごとの色設定呼び出し、画面切り替えタイマー、\r\n"
                                          "LCDボタンによる、アプリケーションの起動などを実行できます。"));
    ASSERT_TRUE(Start());
    EXPECT_STREQ(info->lpszTitle, "Lumivane2") << "on a system of either language";
}

TEST_F(PluginTest, InitRefusesAPacketWithoutAWindow)
{
    HWND window = host.Window();
    HOSTPACKET packet = InitPacket(&window);
    packet.dst = {9, 8, 7};
    packet.dwDataSize = 3;
    EXPECT_EQ(PluginInit(&packet), 0);
    EXPECT_EQ(packet.dst.bClass, 8);
    packet.dwDataSize = 4;
    packet.lpData = nullptr;
    EXPECT_EQ(PluginInit(&packet), 0);
    EXPECT_EQ(PluginInit(nullptr), 0);
    EXPECT_EQ(g_MyAddr.wID, 7) << "nothing has changed";
}

TEST_F(PluginTest, InitReportsAThreadThatCannotBeStarted)
{
    HWND window = host.Window();
    HOSTPACKET packet = InitPacket(&window);
    packet.dst.wID = 9;
    InjectFault(Fault::Thread);
    EXPECT_EQ(PluginInit(&packet), 0);
    EXPECT_EQ(packet.dst.bClass, ENDPOINT_CLASS);
    EXPECT_EQ(packet.dst.bSubClass, ENDPOINT_SUBCLASS_PLUGIN);
    EXPECT_EQ(g_wHostID, ENDPOINT_ID_UNKNOWN);
    EXPECT_EQ(StopKernelThread(), 0);
}

TEST_F(PluginTest, OneThreadAtATime)
{
    HoldTimer(ALL_TIMERS); // a tick would start a listener
    host.monitors = {ColorMonitor("A")};
    ASSERT_TRUE(Start());
    const HWND kernel = g_hKernelWnd;
    const int threads = PluginThreads(); // with a watcher that the test framework may have started
    HWND another = GetDesktopWindow();
    HOSTPACKET packet = InitPacket(&another);
    packet.dst.wID = 9;
    EXPECT_EQ(PluginInit(&packet), 0);
    EXPECT_EQ(g_hHostWnd, host.Window());
    EXPECT_EQ(g_MyAddr.wID, 7);
    EXPECT_EQ(PluginThreads(), threads);
    Stop();
    EXPECT_FALSE(IsWindow(kernel)) << "the thread that runs is the one that is ended";

    // A thread that has ended by itself is in nobody's way.
    InjectFault(Fault::Window);
    ASSERT_EQ(StartKernelThread(host.Window()), 1);
    while (IsKernelThreadRunning())
        Sleep(1);
    EXPECT_EQ(StartKernelThread(host.Window()), 1);
    EXPECT_EQ(StopKernelThread(), 1);
}

TEST_F(PluginTest, TheStopClosesABoxThatIsNotYetThere)
{
    // The thread has no queue at first, and shows two boxes, one behind the other, before its window is there.
    for (int round = 0; round < 3; ++round) {
        InjectFault(Fault::Timer, 2, 2);
        ASSERT_EQ(StartKernelThread(host.Window()), 1);
        EXPECT_EQ(StopKernelThread(), 1);
        InjectFault(Fault::None);
    }
}

TEST_F(PluginTest, KernelWindowIsHiddenAndFoundByItsClass)
{
    ASSERT_TRUE(Start());
    EXPECT_EQ(g_bNotJapanese, IsJapanese() ? 0 : 1);
    EXPECT_EQ(FindWindowA("NRV_LVKERNEL_Class", "Lumivane 2 Kernel Plugin"), g_hKernelWnd);
    EXPECT_FALSE(IsWindowVisible(g_hKernelWnd));
    RECT rect;
    GetWindowRect(g_hKernelWnd, &rect);
    EXPECT_EQ(rect.right - rect.left, 480);
    EXPECT_EQ(rect.bottom - rect.top, 80);
}

TEST_F(PluginTest, StopTellsTheHostAndMayComeTwice)
{
    host.monitors = {ColorMonitor("A")};
    ASSERT_TRUE(Start());
    const HWND window = g_hKernelWnd;
    EXPECT_EQ(Stop(), 1);
    EXPECT_FALSE(IsWindow(window));
    EXPECT_EQ(g_hKernelWnd, nullptr);
    EXPECT_EQ(g_bAbort, 1);
    EXPECT_EQ(host.TakeLog().back(), "notice 3");
    EXPECT_EQ(host.Requests().back().packet.dst.bSubClass, ENDPOINT_SUBCLASS_DDCCI) << "unlike the other notices";
    EXPECT_EQ(Stop(), 1);
    EXPECT_EQ(host.TakeLog(), Lines{"notice 3"});
    while (NewUniqueID(&host.address) != REQUEST_NONE) {
    }
    EXPECT_EQ(Stop(), 0);
    EXPECT_EQ(host.TakeLog(), Lines{});
}

TEST_F(PluginTest, StopEndsSoonWhenTheHostNoLongerAnswers)
{
    host.monitors = {ColorMonitor("A"), ColorMonitor("B")};
    ASSERT_TRUE(Start());
    StartUp();
    host.plan = [](const TestRequest &) { return Answer{Answer::Never}; };
    SkipWaits(true);
    EXPECT_EQ(Stop(), 1);
    EXPECT_EQ(SkipWaits(false), 5) << "five requests, each ended by the stop after a wait instead of ten";
}

TEST_F(PluginTest, StartAndStopLeaveNothingBehind)
{
    host.monitors = {ColorMonitor("A")};
    ExpectNothingLeft(5, [this] {
        g_bAbort = 0;
        ASSERT_TRUE(Start());
        PluginOpenPanel(nullptr); // a deferral that the stop has to end
        StartUp();
        PluginOpenPanel(nullptr);
        Stop();
    });
}
