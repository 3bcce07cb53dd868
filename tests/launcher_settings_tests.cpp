// Launcher and lock settings over the starts and ends of runs.
#include "launcher/launcher_settings.h"

#include "monitor/enumeration.h"
#include "settings/registry.h"
#include "support/plugin_session.h"

namespace {

const char launcher[] = "LumvanLauncher";

class LauncherSettingsTest : public HostTest {
protected:
    LauncherSettingsTest()
    {
        host.monitors = {ColorMonitor("NRV-PA1"), ColorMonitor("NRV-PA2")};
        InitMonitors();
        host.TakeLog();
    }

    // The calls of a start, in their order.
    void BeginRun()
    {
        ReadButtonLocks();
        CheckLauncherReset();
        InitLauncherSettings();
        RestoreButtonLockStatus();
    }

    // A state with something of everything, as an orderly run leaves it.
    void PutUsedSettings()
    {
        PutLauncher("InitFlag", 1);
        PutLauncher("MaxMonitor", 2);
        PutLauncher("EndFlag", 0);
        PutLauncher("dwLTimer", 2);
        PutLauncher("Launcher_0_Enable_1", 2);
        PutLauncher("Launcher_1_Enable_6", 1);
        PutLauncher("PowerSwitch_1", 1);
        PutLauncher("ButtonLockStatus_0", 7);
        PutLauncher("ButtonLockStatus_1", 128);
        PutText(HKEY_CURRENT_USER, launcher, "exe_0_1", "notepad.exe");
        PutText(HKEY_CURRENT_USER, launcher, "Reservation_0", "calc.exe");
    }
};

} // namespace

TEST_F(LauncherSettingsTest, FirstRun)
{
    BeginRun();
    EXPECT_EQ(host.TakeLog(), (Lines{"get 0 F2", "get 1 F2"})) << "nothing to reset, nothing to restore";
    EXPECT_EQ(LauncherValue("InitFlag"), 1u);
    EXPECT_EQ(LauncherValue("MaxMonitor"), 2u);
    EXPECT_EQ(LauncherValue("EndFlag"), 1u);
    for (int monitor = 0; monitor < 2; ++monitor)
        for (int button = 1; button <= 6; ++button)
            EXPECT_EQ(LauncherValue("Launcher_" + std::to_string(monitor) + "_Enable_" + std::to_string(button)), 0u);
    EXPECT_FALSE(LauncherValue("dwLTimer"));
    EXPECT_EQ(GetLauncherCount(), 0u);
}

TEST_F(LauncherSettingsTest, AfterAnOrderlyEndAllIsAsItWas)
{
    PutUsedSettings();
    BeginRun();
    EXPECT_EQ(host.TakeLog(), (Lines{"get 0 F2", "get 1 F2", "set 0 F2 = 7", "set 1 F2 = 128"}));
    EXPECT_EQ(LauncherValue("Launcher_0_Enable_1"), 2u);
    EXPECT_EQ(LauncherValue("dwLTimer"), 2u);
    EXPECT_EQ(LauncherValue("EndFlag"), 1u);
    WriteEndFlag();
    EXPECT_EQ(LauncherValue("EndFlag"), 0u);
}

TEST_F(LauncherSettingsTest, ACrashOrAnotherNumberOfMonitorsResets)
{
    for (const char *cause : {"EndFlag", "MaxMonitor"}) {
        PutUsedSettings();
        PutLauncher(cause, 1);
        host.TakeLog();
        BeginRun();
        EXPECT_EQ(host.TakeLog(),
                  (Lines{"get 0 F2", "get 1 F2", "set 0 F2 = 0", "set 1 F2 = 0", "set 0 F2 = 0", "set 1 F2 = 0"}))
            << cause;
        for (const char *name : {"Launcher_0_Enable_1", "Launcher_1_Enable_6", "PowerSwitch_0", "PowerSwitch_1",
                                 "ButtonLockStatus_0", "ButtonLockStatus_1", "dwLTimer"})
            EXPECT_EQ(LauncherValue(name), 0u) << cause << " " << name;
        EXPECT_EQ(LauncherValue("MaxMonitor"), 2u);
        EXPECT_EQ(TextAt(HKEY_CURRENT_USER, launcher, "exe_0_1"), "notepad.exe");
        EXPECT_EQ(TextAt(HKEY_CURRENT_USER, launcher, "Reservation_0"), "calc.exe");
    }
}

TEST_F(LauncherSettingsTest, LocksAreSavedRestoredAndReleased)
{
    host.monitors[0].features[VCP_BUTTON_LOCK].current = 5;
    host.monitors[1].features[VCP_BUTTON_LOCK].current = 128;
    SaveButtonLockStatus();
    EXPECT_EQ(LauncherValue("ButtonLockStatus_0"), 5u);
    EXPECT_EQ(LauncherValue("ButtonLockStatus_1"), 128u);
    EXPECT_EQ(RestoreButtonLockStatus(), 128);
    const REGENTRY first = {launcher, "ButtonLockStatus_0", 0, nullptr, 0};
    DeleteSetting(&first);
    host.TakeLog();
    EXPECT_EQ(RestoreButtonLockStatus(), 0) << "ends at the first monitor without a stored mask";
    EXPECT_EQ(host.TakeLog(), Lines{});

    g_Monitor[0].bVcpCode[VCP_BUTTON_LOCK] = 0;
    ReleaseButtonLocks();
    EXPECT_EQ(host.TakeLog(), Lines{"set 1 F2 = 0"});
}

TEST_F(LauncherSettingsTest, TheActiveCountRunsThePoll)
{
    // A real timer on a window of this thread.
    const HWND window = CreateWindowA("STATIC", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    g_hKernelWnd = window;
    const auto polling = [window] {
        // What KillTimer says tells whether the timer ran; it is armed again then.
        if (!KillTimer(window, TIMER_BUTTON_POLL))
            return false;
        SetTimer(window, TIMER_BUTTON_POLL, 2000, nullptr);
        return true;
    };
    const struct {
        int up;
        DWORD count;
        bool polls;
    } steps[] = {{1, 1, true},           {1, 2, true},  {0, 1, true}, {0, 0, false},
                 {0, 0xFFFFFFFF, false}, {1, 0, false}, {1, 1, true}};
    for (const auto &step : steps) {
        UpdateLauncherPoll(step.up);
        EXPECT_EQ(GetLauncherCount(), step.count);
        EXPECT_EQ(polling(), step.polls) << "at " << step.count;
    }
    // A count that cannot be read, at once (two calls a root) or behind the step's four, ends no poll.
    for (const int nth : {1, 5}) {
        PutLauncher("dwLTimer", 2);
        InjectFault(Fault::Registry, nth, 4);
        UpdateLauncherPoll(0);
        InjectFault(Fault::None);
        EXPECT_EQ(GetLauncherCount(), nth == 1 ? 2u : 1u);
        EXPECT_TRUE(polling()) << nth;
    }
    DestroyWindow(window);
    g_hKernelWnd = nullptr;
}
