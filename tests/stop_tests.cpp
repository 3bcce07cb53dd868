// A stop of the plug-in while the user is being asked something: nobody has answered, and nothing follows from it.
#include "kernel/base/plugin_state.h"
#include "launcher/launcher_settings.h"
#include "monitor/vcp.h"
#include "support/clock.h"
#include "support/launcher_session.h"
#include "support/reservation_session.h"

namespace {

class StopTest : public LauncherPagesTest {
protected:
    StopTest()
    {
        for (const char *name : {"InitFlag", "PowerSwitch_0"})
            Put(name, 1);
        Put("MaxMonitor", 2);
        Put("EndFlag", DWORD{0});
    }

    // Posts what makes a box or file dialog appear, and stops the plug-in while that is open.
    void StopWhileOpen(const std::string &caption, HWND window, UINT message, WPARAM wParam)
    {
        PostMessageA(window, message, wParam, 0);
        ASSERT_NE(WaitForDialog(caption), nullptr);
        EXPECT_EQ(Stop(), 1);
        EXPECT_EQ(FindDialog(caption), nullptr);
    }
};

} // namespace

TEST_F(StopTest, ThePcStaysOn)
{
    IniFolder::Write("lvcap.ini", "[NRV-PA1]\r\nCapability=F4\r\n");
    ASSERT_TRUE(Start());
    StartUp();
    constexpr LONG POWER = 128;
    host.monitors[0].features[VCP_BUTTON_PRESSED] = {0, POWER << 8};
    StopWhileOpen("Lumivane 2", g_hKernelWnd, WM_TIMER, TIMER_BUTTON_POLL);
    EXPECT_EQ(TakeRecordedCalls(), Lines{});
}

TEST_F(StopTest, AssignmentsStay)
{
    const std::pair<const char *, std::string> values[] = {
        {"exe_0_1", "a.exe"}, {"exe_0_1_Path", "C:\\a.exe"}, {"exe_0_1_Param", "a text"}};
    for (const auto &[name, text] : values)
        Put(name, text);
    constexpr int BROWSE_PROGRAM = 1119, BROWSE_PARAMETER = 1144;
    ShowRealFileDialog(true);
    for (const int control : {BROWSE_PROGRAM, BROWSE_PARAMETER}) {
        g_bAbort = 0;
        OpenPanel();
        const HWND page = OpenPage(TREE_BUTTON_1);
        StopWhileOpen(Sjis("実行ファイルの選択"), page, WM_COMMAND, static_cast<WPARAM>(control));
        for (const auto &[name, text] : values)
            EXPECT_EQ(Text(name), text) << control;
    }
}

TEST_F(StopTest, ReservationsStay)
{
    SetClock(2006, 6, 10, 20, 0);
    for (const char *end :
         {"2006/06/10 19:30", "2006/06/10 20:30"}) { // told that it is deleted, asked whether to start
        g_bAbort = 0;
        const std::string file = Section(0, "2006/06/10 19:00", end, "3");
        IniFolder::Write("ontimer.ini", file);
        ASSERT_TRUE(Start());
        StartUp();
        StopWhileOpen("Lumivane 2", g_hKernelWnd, WM_KERNEL_OPEN_PANEL, 0);
        EXPECT_EQ(IniFolder::Read("ontimer.ini"), file);
    }
}

TEST_F(StopTest, AnOlderVersionStays)
{
    const HWND older = host.MakeWindow("LumVanClass");
    ASSERT_TRUE(Start());
    StopWhileOpen("Lumivane 2", g_hKernelWnd, WM_TIMER, TIMER_RESERVATION);
    EXPECT_TRUE(IsWindow(older));
    host.DropWindow(older);
}
