// The whole host on real monitors: RunHost with the plug-in as it ships, its panel used while monitors are slow, fail,
// hang and vanish.
#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <memory>

#include "host/base/program_path.h"
#include "host/base/resource.h"
#include "host/base/text.h"
#include "host/host_app.h"
#include "panel/resources/resource.h"
#include "tests/dxva2_stand_in/tests/stand_in_control.h"
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
        thread = std::thread([this] { status = RunHost(app.get()); });
        ASSERT_TRUE(WaitUntil([this] { return HasNotice(&app->plugin.router, HOST_NOTICE_STARTED); }, LONG_ENOUGH));
        WaitUntilQuiet();
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

    static void ChooseColorPage()
    {
        const HWND tree = GetDlgItem(FindPanel(), IDC_PANEL_TREE);
        LRESULT item = SendMessageW(tree, TVM_GETNEXTITEM, TVGN_ROOT, 0);
        for (int level = 0; level < 2; level++)
            item = SendMessageW(tree, TVM_GETNEXTITEM, TVGN_CHILD, item);
        SendMessageW(tree, TVM_SELECTITEM, TVGN_CARET, item);
        ASSERT_TRUE(
            WaitUntil([] { return FindPage() && GetDlgItem(FindPage(), IDC_COLOR_PROFILE_COMBO); }, LONG_ENOUGH));
    }

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
};

// First a monitor of which only every third access succeeds. Then it is unplugged in the middle of a profile's values:
// the brightness is read, and with the contrast it is gone, while the other one answers nonsense for a
// time. Last a driver that does not come back: the request that is in it fails after eight seconds, all others at once.
TEST_F(HostOnRealMonitors, KeepThePanelUsableWhateverTheyDo)
{
    OpenTestMonitors({{"ALPHA", "", ""}, {"BETA", "", ""}});
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

// The cable of the second one is plugged, and pulled again later: then the user does not wait for the host to notice.
TEST_F(HostOnRealMonitors, AreTakenUpAnewWithThePanelOpen)
{
    OpenTestMonitors({{"ALPHA", "", ""}, {"BETA", "", ""}});
    g_StandIn.set(1, STANDIN_GONE, 1);
    Start();
    EXPECT_EQ(Command("count"), "1 monitors");
    OpenColorPage();
    const HWND host = app->window.hWnd, panel = FindPanel();
    g_StandIn.set(1, STANDIN_GONE, 0);
    PostMessageW(host, WM_DISPLAYCHANGE, 0, 0);
    EXPECT_TRUE(WaitForAnotherPanel(panel)) << "it comes by itself";
    EXPECT_EQ(app->window.hWnd, host);
    WaitUntilQuiet();
    EXPECT_EQ(Command("count"), "2 monitors");
    ChooseColorPage();
    ChooseMonitor(1);
    TypeContrast(31);
    EXPECT_EQ(Seen(1, 0x12), 31);

    g_StandIn.set(1, STANDIN_GONE, 1);
    const HWND former = FindPanel();
    PostMessageW(host, WM_COMMAND, IDM_DETECT_MONITORS, 0);
    EXPECT_TRUE(WaitForAnotherPanel(former));
    EXPECT_EQ(Command("count"), "1 monitors");
}
