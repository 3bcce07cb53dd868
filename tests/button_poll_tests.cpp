// The poll of the front-panel buttons: scan, acknowledgement, launching, and the POWER button.
#include "launcher/button_poll.h"

#include "kernel/base/platform.h"
#include "launcher/launcher_settings.h"
#include "monitor/enumeration.h"
#include "settings/registry.h"
#include "support/plugin_session.h"

namespace {

constexpr int REFUSED = -1; // in the place of a code: the monitor does not answer, the host says so

void SetMode(int monitor, int button, DWORD mode)
{
    PutLauncher("Launcher_" + std::to_string(monitor) + "_Enable_" + std::to_string(button), mode);
}

// Gives every button of some monitors a program that tells monitor and button.
void AssignAll(int monitors)
{
    for (int monitor = 0; monitor < monitors; ++monitor)
        for (int button = 1; button <= 6; ++button) {
            const std::string name = "exe_" + std::to_string(monitor) + "_" + std::to_string(button);
            PutText(HKEY_CURRENT_USER, SUBKEY_LAUNCHER, name.c_str(), name);
            PutText(HKEY_CURRENT_USER, SUBKEY_LAUNCHER, (name + "_Path").c_str(), name);
        }
}

Lines Started(const std::string &program)
{
    return {"ShellExecute open|" + program + "||(null)|5"};
}

// Monitors 0, 2 and 3 have a button register, monitor 1 has none.
class ButtonPollTest : public HostTest {
protected:
    ButtonPollTest()
    {
        IniFolder::Write("lvcap.ini", "[A]\r\nCapability=F2 F4\r\n[B]\r\nCapability=F2\r\n");
        host.monitors = {ColorMonitor("A"), ColorMonitor("B"), ColorMonitor("A"), ColorMonitor("A")};
        BuildCapIniPath();
        InitMonitors();
        host.TakeLog();
    }

    void Report(size_t monitor, int code)
    {
        if (code == REFUSED)
            host.monitors[monitor].features.erase(VCP_BUTTON_PRESSED);
        else
            host.monitors[monitor].features[VCP_BUTTON_PRESSED] = {0, code << 8};
    }

    void Poll() { PollMonitorButtons(host.Window()); }
};

class PowerButtonTest : public PluginTest {
protected:
    PowerButtonTest()
    {
        IniFolder::Write("lvcap.ini", "[A]\r\nCapability=F4\r\n");
        host.monitors = {ColorMonitor("A"), ColorMonitor("B")};
        for (const char *name : {"InitFlag", "PowerSwitch_0"})
            PutLauncher(name, 1);
        PutLauncher("MaxMonitor", 2);
        PutLauncher("EndFlag", 0);
        AssignAll(2);
    }

    // With nothing pressed, and the log empty.
    bool Run()
    {
        host.monitors[0].features[VCP_BUTTON_PRESSED] = {0, 255 << 8};
        if (!Start())
            return false;
        StartUp();
        host.TakeLog();
        TakeRecordedCalls();
        return true;
    }

    void Press(int code)
    {
        const auto lock = host.Lock();
        host.monitors[0].features[VCP_BUTTON_PRESSED] = {0, code << 8};
    }
};

} // namespace

TEST_F(ButtonPollTest, TheScanEndsAtTheFirstPressAndIsAlwaysAcknowledged)
{
    const struct {
        const char *what;
        int code0, code2, code3;
        int unsentRead; // which read, from 1 on, cannot even be sent; 0: none
        Lines log;
        LONG last;
    } cases[] = {
        {"no press", 255, 255, 255, 0, {"get 0 F4", "get 2 F4", "get 3 F4", "set 4 F4 = 255"}, 255},
        {"first", 4, 1, 1, 0, {"get 0 F4", "set 0 F4 = 255"}, 4},
        {"second", 255, 8, 1, 0, {"get 0 F4", "get 2 F4", "set 2 F4 = 255"}, 8},
        {"last", 255, 255, 128, 0, {"get 0 F4", "get 2 F4", "get 3 F4", "set 3 F4 = 255"}, 128},
        {"no code", 0, 1, 1, 0, {"get 0 F4", "set 0 F4 = 255"}, 0},
        {"two at once", 255, 3, 1, 0, {"get 0 F4", "get 2 F4", "set 2 F4 = 255"}, 3},
        {"failure first", 1, 1, 1, 1, {"set 0 F4 = 255"}, 0},
        {"failure after a good read", 255, 1, 16, 2, {"get 0 F4", "get 3 F4", "set 3 F4 = 255"}, 16},
        {"failure at the end", 255, 255, 1, 3, {"get 0 F4", "get 2 F4", "set 4 F4 = 255"}, 255},
        {"refusal first", REFUSED, 1, 1, 0, {"get 0 F4", "set 0 F4 = 255"}, 0},
        {"refusal after a good read", 255, REFUSED, 2, 0, {"get 0 F4", "get 2 F4", "get 3 F4", "set 3 F4 = 255"}, 2},
    };
    const FaultsOfThisThread aim;
    for (const auto &c : cases) {
        Report(0, c.code0);
        Report(2, c.code2);
        Report(3, c.code3);
        InjectFault(c.unsentRead ? Fault::Event : Fault::None, c.unsentRead);
        Poll();
        EXPECT_EQ(host.TakeLog(), c.log) << c.what;
        EXPECT_EQ(nLastButton, c.last) << c.what;
    }
    EXPECT_EQ(TakeRecordedCalls(), Lines{}) << "no button is a launcher";
}

TEST_F(ButtonPollTest, AButtonLaunchesInItsModeAlone)
{
    AssignAll(4);
    const int codes[] = {1, 2, 4, 8, 16, 128};
    for (int button = 1; button <= 6; ++button) {
        for (const DWORD mode : {0u, 1u, 2u, 3u, 0xFFFFFFFFu}) {
            Report(0, 255);
            Report(2, codes[button - 1]);
            SetMode(2, button, mode);
            Poll();
            EXPECT_EQ(TakeRecordedCalls(), mode == 2 ? Started("exe_2_" + std::to_string(button)) : Lines{})
                << button << " in mode " << mode;
        }
        SetMode(2, button, 2);
        EXPECT_EQ(LastOwner(), host.Window());
    }
    for (const int code : {0, 3, 32, 64, 127, 129, 192, 254, 256, 257, 0x7FFFFF}) {
        Report(2, code);
        Poll();
        EXPECT_EQ(TakeRecordedCalls(), Lines{}) << code;
    }
    PutLauncher("PowerSwitch_2", 2); // neither on nor a reason not to launch
    Report(2, 128);
    BoxAnswerer answerer("Lumivane 2", IDCANCEL);
    Poll();
    EXPECT_EQ(TakeRecordedCalls(), Started("exe_2_6"));
}

TEST_F(ButtonPollTest, APressOnTheFirstMonitorActsOnTheSelectedOnesAssignment)
{
    AssignAll(4);
    SetMode(0, 2, 2); // the mode is the pressed monitor's
    Report(0, 2);
    g_nCurMonitor = 1;
    Poll();
    EXPECT_EQ(TakeRecordedCalls(), Started("exe_1_2"));
}

TEST_F(ButtonPollTest, WithoutARegisterTheLastCodeComesBackForTheIndexPastTheTable)
{
    AssignAll(5);
    for (int monitor = 0; monitor < 4; ++monitor)
        SetMode(monitor, 1, 2);
    IniFolder::Write("lvcap.ini", "[A]\r\nCapability=F2\r\n");
    nLastButton = 1;
    Poll();
    EXPECT_EQ(host.TakeLog(), Lines{"set 4 F4 = 255"});
    EXPECT_EQ(TakeRecordedCalls(), Lines{});
    SetMode(4, 1, 2); // a value left from a time with more monitors
    Poll();
    EXPECT_EQ(TakeRecordedCalls(), Started("exe_4_1"));
    EXPECT_EQ(nLastButton, 1);
    g_nMonitor = -1; // the host never told their number
    host.TakeLog();
    Poll();
    EXPECT_EQ(host.TakeLog(), Lines{});
}

TEST_F(PowerButtonTest, ShutsDownWhenTheUserAgrees)
{
    const std::string exit = GetPlatformId() == PLATFORM_NT ? "ExitWindowsEx C" : "ExitWindowsEx 5";
    host.monitors[1].capabilities = "(vcp(10 12))"; // no button lock
    SetMode(0, 6, 2);                               // the switch comes first
    ASSERT_TRUE(Run());
    Press(128);
    Lines logBefore;
    std::optional<DWORD> endFlagBefore;
    SetExitWindowsResults({FALSE}, [&] { // refused, and not asked for again
        logBefore = host.TakeLog();
        endFlagBefore = LauncherValue("EndFlag");
    });
    BoxAnswerer answerer("Lumivane 2", IDOK);
    Tick(TIMER_BUTTON_POLL);
    EXPECT_EQ(answerer.Boxes(), Lines{Ansi("i OK CANCEL owned: シャットダウンします。\n"
                                           "このまま処理を実行する場合は「OK」を押してください。")});
    EXPECT_EQ(logBefore, (Lines{"get 0 F4", "set 0 F4 = 255", "set 0 F2 = 0", "set 0 F0 = 0", "set 0 F4 = 255",
                                "set 1 F0 = 0", "set 1 F4 = 255"}));
    EXPECT_EQ(endFlagBefore, 0u);
    EXPECT_EQ(host.TakeLog(), Lines{});
    EXPECT_EQ(TakeRecordedCalls(), Lines{exit});
}

TEST_F(PowerButtonTest, NothingHappensWhenTheUserCancels)
{
    ASSERT_TRUE(Run());
    Press(128);
    BoxAnswerer answerer("Lumivane 2", IDCANCEL);
    Tick(TIMER_BUTTON_POLL);
    EXPECT_EQ(answerer.Boxes().size(), 1u);
    EXPECT_EQ(host.TakeLog(), (Lines{"get 0 F4", "set 0 F4 = 255"}));
    EXPECT_EQ(LauncherValue("EndFlag"), 1u);
    EXPECT_EQ(TakeRecordedCalls(), Lines{});
}

TEST_F(PowerButtonTest, WithTheSwitchOffItIsAButtonLikeTheOthers)
{
    PutLauncher("PowerSwitch_0", 0);
    SetMode(0, 6, 2);
    ASSERT_TRUE(Run());
    Press(128);
    Tick(TIMER_BUTTON_POLL);
    EXPECT_EQ(TakeRecordedCalls(), Started("exe_0_6"));
    EXPECT_EQ(LastOwner(), g_hKernelWnd);
    SetMode(0, 6, 0);
    Tick(TIMER_BUTTON_POLL);
    EXPECT_EQ(TakeRecordedCalls(), Lines{});
}

TEST_F(PowerButtonTest, ThePollGoesOnWhileTheQuestionIsOnScreen)
{
    SetMode(0, 5, 2);
    ASSERT_TRUE(Run());
    Press(128);
    PostMessageA(g_hKernelWnd, WM_TIMER, TIMER_BUTTON_POLL, 0);
    ASSERT_NE(WaitForDialog("Lumivane 2"), nullptr);
    Press(16);
    Tick(TIMER_BUTTON_POLL);
    EXPECT_EQ(TakeRecordedCalls(), Started("exe_0_5"));
    Press(255);
    BoxAnswerer answerer("Lumivane 2", IDCANCEL);
    EXPECT_TRUE(answerer.WaitForBoxes(1));
}
