// The profile that follows the program in front, with real programs in front.
#include "profiles/foreground.h"

#include "kernel/base/platform.h"
#include "profiles/profile_store.h"
#include "support/front_programs.h"
#include "support/plugin_session.h"

namespace {

// Two monitors and DirectLink on. The timer of the checks is held; the tests tick.
class ForegroundTest : public PluginTest {
protected:
    ForegroundTest()
    {
        host.monitors = {ColorMonitor("NRV-PA1"), ColorMonitor("NRV-PA2")};
        PutDword(HKEY_CURRENT_USER, "Lumivane2", "DirectLink", 1);
    }

    void SetUp() override
    {
        ASSERT_TRUE(Start());
        StartUp();
        KillTimer(g_hKernelWnd, TIMER_FOREGROUND);
        g_DefSetting[0] = {0, 1, 2, 3, 4, 5, 6, 5, 0};
        g_DefSetting[1] = {1, 11, 12, 13, 14, 15, 16, 11, 0};
        host.TakeLog();
    }

    static void DontAsk() { PutDword(HKEY_CURRENT_USER, "Lumivane2", "NoAskDialog", 1); }

    // A program's profile: ECO off, contrast 10 + slot, brightness 20 + slot, preset 5.
    static void Register(int slot, const std::string &path)
    {
        g_AppProfile[slot] = {"", 0, 10 + slot, 20 + slot, 30, 5, 41, 42, 43, "", ""};
        strcpy(g_AppProfile[slot].szName, path.c_str());
    }

    // The requests of one check.
    Lines Check()
    {
        host.TakeLog();
        Tick(TIMER_FOREGROUND);
        return host.TakeLog();
    }
};

const Lines restored = {"set 0 E0 = 0", "set 0 10 = 2", "set 0 12 = 3", "set 0 14 = 5"};
const Lines restoredSecond = {"set 1 E0 = 1",  "set 1 10 = 11", "set 1 12 = 13", "set 1 14 = 11",
                              "set 1 16 = 14", "set 1 18 = 15", "set 1 1A = 16"};

// The requests that apply the profile of Register to a monitor.
Lines Applied(int slot, int monitor = 0)
{
    const std::string set = "set " + std::to_string(monitor) + " ";
    return {"get " + std::to_string(slot) + " 60", set + "E0 = 0", set + "10 = " + std::to_string(20 + slot),
            set + "12 = " + std::to_string(10 + slot), set + "14 = 5"};
}

} // namespace

TEST_F(ForegroundTest, AppliesTheProfileOfTheProgramInFront)
{
    DontAsk();
    FrontProgram one("front_one.exe"), two("front_two.exe"), other("front_other.exe");
    std::string upper = one.KnownPath();
    CharUpperA(upper.data());
    Register(0, upper); // the letter case does not matter
    Register(1, two.KnownPath());

    ASSERT_TRUE(one.BringToFront());
    EXPECT_EQ(Check(), Applied(0));
    EXPECT_EQ(Check(), Lines{}) << "once, while it stays in front";
    ASSERT_TRUE(two.BringToFront());
    EXPECT_EQ(Check(), Applied(1));
    ASSERT_TRUE(one.BringDialogToFront());
    EXPECT_EQ(Check(), Applied(0)) << "a dialog stands for the window that owns it";
    EXPECT_EQ(Check(), Lines{});

    // Also where another program made the dialog: here this one.
    ASSERT_TRUE(other.BringToFront());
    EXPECT_EQ(Check(), restored);
    const HWND guest =
        CreateWindowA("STATIC", "", WS_POPUP | WS_VISIBLE, 0, 0, 50, 50, one.Window(), nullptr, nullptr, nullptr);
    ASSERT_TRUE(MoveToFront(guest));
    EXPECT_EQ(Check(), Applied(0));
    DestroyWindow(guest);

    ASSERT_TRUE(other.BringToFront());
    for (int round = 0; round < 3; ++round)
        EXPECT_EQ(Check(), restored) << "again on every tick";
    EXPECT_EQ(g_CurSetting[0].wContrast, 3) << "the defaults are the current settings now";
    ASSERT_TRUE(one.BringToFront());
    EXPECT_EQ(Check(), Applied(0)) << "the same program as last time, but it was gone between";
    EXPECT_EQ(g_CurSetting[0].wContrast, 3) << "a profile that is applied does not change the current settings";

    g_bDirectLink = 0;
    ASSERT_TRUE(two.BringToFront());
    EXPECT_EQ(Check(), Lines{});
}

TEST_F(ForegroundTest, AsksOnceEachTimeAProgramComesToTheFront)
{
    FrontProgram one("front_one.exe"), two("front_two.exe"), other("front_other.exe");
    Register(0, one.KnownPath());
    Register(1, two.KnownPath());
    FrontProgram *programs[] = {&one, &two, &other};
    for (const int answer : {IDYES, IDNO}) {
        Tick(TIMER_FOREGROUND); // some other window is in front
        BoxAnswerer answerer("Lumivane 2", answer);
        size_t asked = 0;
        const struct {
            int program;
            bool asks;
        } steps[] = {{0, true}, {0, false}, {1, true}, {0, true}, {2, false}, {0, true}, {0, false}, {2, false}};
        for (size_t step = 0; step < std::size(steps); ++step) {
            SCOPED_TRACE("answer " + std::to_string(answer) + ", step " + std::to_string(step));
            const int program = steps[step].program;
            ASSERT_TRUE(programs[program]->BringToFront());
            asked += steps[step].asks;
            const Lines applied = steps[step].asks && answer == IDYES ? Applied(program) : Lines{};
            EXPECT_EQ(Check(), program == 2 ? restored : applied);
            EXPECT_EQ(answerer.Boxes().size(), asked);
        }
    }
}

TEST_F(ForegroundTest, TicksBehindAnOpenQuestionAreSkipped)
{
    FrontProgram one("front_one.exe");
    Register(0, one.KnownPath());
    ASSERT_TRUE(one.BringToFront());
    host.TakeLog();
    std::thread first([&] { Tick(TIMER_FOREGROUND); });
    EXPECT_NE(WaitForDialog("Lumivane 2"), nullptr);
    EXPECT_EQ(Check(), Lines{}) << "the box's own message loop delivers it";
    EXPECT_EQ(g_bForeIdle, 0);
    BoxAnswerer answerer("Lumivane 2", IDYES);
    first.join();
    EXPECT_EQ(answerer.Boxes().size(), 1u);
    EXPECT_EQ(host.TakeLog(), Applied(0));
    EXPECT_EQ(g_bForeIdle, 1);
}

TEST_F(ForegroundTest, MonitorsAndInputs)
{
    // The input that counts is that of the monitor with the slot's number.
    const struct {
        int slot, allMonitors, selected;
        LONG input0, input1;
        Lines requests;
    } cases[] = {
        {0, 0, 0, 3, 9, Applied(0, 0)},
        {0, 0, 1, 3, 9, Applied(0, 1)},
        {0, 0, 0, 5, 3, {"get 0 60"}},
        {1, 0, 0, 5, 3, Applied(1, 0)},
        {1, 0, 0, 3, 7, {"get 1 60"}},
        {1, 0, 0, 3, 9, {"get 1 60"}},
        {3, 0, 0, 9, 9, Applied(3, 0)}, // no such monitor: its input cannot be read
        {239, 0, 0, 9, 9, Applied(239, 0)},
        {0, 1, 1, 3, 9, Applied(0, 0) + Applied(0, 1)},
        {1, 1, 0, 3, 9, {"get 1 60", "get 1 60"}},
        {0, 0, -1, 3, 3, {"get 0 60"}},
    };
    for (size_t i = 0; i < std::size(cases); ++i) {
        SCOPED_TRACE(i);
        const auto &c = cases[i];
        Register(c.slot, "C:\\x.exe");
        g_bAllMonitors = c.allMonitors;
        g_nCurMonitor = c.selected;
        host.monitors[0].features[VCP_INPUT_SOURCE].current = c.input0;
        host.monitors[1].features[VCP_INPUT_SOURCE].current = c.input1;
        ApplyAppProfile(c.slot);
        EXPECT_EQ(host.TakeLog(), c.requests);
    }
    g_nCurMonitor = 0;
    g_bAllMonitors = 0;
    for (const int slot : {-1, 240})
        ApplyProfileToMonitor(slot, 0);
    EXPECT_EQ(host.TakeLog(), Lines{});

    // ECO on takes its own brightness, a user preset its gains, the low 16 bits of each value.
    g_AppProfile[0] = {"", 1, 70, 0, 0x10050, 11, 72, 88, 100, "", ""};
    ApplyProfileToMonitor(0, 1);
    EXPECT_EQ(host.TakeLog(), (Lines{"set 1 E0 = 1", "set 1 10 = 80", "set 1 12 = 70", "set 1 14 = 11", "set 1 16 = 72",
                                     "set 1 18 = 88", "set 1 1A = 100"}));
}

TEST_F(ForegroundTest, DefaultsAreRestoredToOneMonitorOrAll)
{
    RestoreDefaultColor();
    EXPECT_EQ(host.TakeLog(), restored);
    g_nCurMonitor = 1;
    RestoreDefaultColor();
    EXPECT_EQ(host.TakeLog(), restoredSecond);
    EXPECT_EQ(g_CurSetting[1].wRed, 14);
    g_bAllMonitors = 1;
    RestoreDefaultColor();
    EXPECT_EQ(host.TakeLog(), restored + restoredSecond);
    g_bAllMonitors = 0;
    for (const LONG monitor : {-1L, MAX_MONITOR}) {
        g_nCurMonitor = monitor;
        RestoreDefaultColor();
    }
    EXPECT_EQ(host.TakeLog(), Lines{});
    g_nCurMonitor = 0;
    g_DefSetting[0] = {}; // the colour page was never opened
    RestoreDefaultColor();
    EXPECT_EQ(host.TakeLog(), (Lines{"set 0 E0 = 0", "set 0 10 = 0", "set 0 12 = 0", "set 0 14 = 0"}));
}

TEST_F(ForegroundTest, DirectLinkAtStartReadsTheFirstProfileAgain)
{
    IniFolder::Write("profile.ini", "[User0]\r\nname=C:\\a.exe\r\nred=7\r\n");
    StartDirectLink();
    EXPECT_STREQ(g_AppProfile[0].szName, "C:\\a.exe");
    EXPECT_EQ(g_AppProfile[0].nRed, 7);
    EXPECT_EQ(host.TakeLog(), Lines{"directlink 0 = 1"});
}

TEST_F(ForegroundTest, AStopTakesAwayTheOpenQuestion)
{
    FrontProgram program("lvkernel_front.exe");
    Register(0, program.KnownPath());
    ASSERT_TRUE(program.BringToFront());
    PostMessageA(g_hKernelWnd, WM_TIMER, TIMER_FOREGROUND, 0);
    ASSERT_NE(WaitForDialog("Lumivane 2"), nullptr);
    EXPECT_EQ(Stop(), 1);
    EXPECT_EQ(FindDialog("Lumivane 2"), nullptr);
    EXPECT_EQ(host.TakeLog(),
              (Lines{"directlink 0 = 0", "set 0 F2 = 0", "set 1 F2 = 0", "edid 0", "edid 1", "notice 3"}))
        << "shut down in order, and nothing applied";
}
