// What a call that fails, or an end at a bad moment, must not take away from the user.
#include "kernel/identity_setup.h"
#include "launcher/launcher_settings.h"
#include "monitor/monitor_table.h"
#include "monitor/vcp.h"
#include "panel/tooltips.h"
#include "settings/ini.h"
#include "settings/registry.h"
#include "support/plugin_session.h"
#include "support/replaced_imports.h"

#include <commctrl.h>

namespace {

class FaultTest : public HostTest {
protected:
    FaultTest()
    {
        host.monitors = {ColorMonitor("NRV-PA1"), ColorMonitor("NRV-PA2")};
        InitMonitors();
    }

    static void Put(const char *name, DWORD value) { PutDword(HKEY_CURRENT_USER, SUBKEY_LAUNCHER, name, value); }
    static std::optional<DWORD> Value(const char *name) { return DwordAt(HKEY_CURRENT_USER, SUBKEY_LAUNCHER, name); }
};

const char file[] = "profile.ini";

std::string PathOf(const char *suffix)
{
    return IniFolder::Path(file + std::string(suffix));
}

} // namespace

// ---- The registry -------------------------------------------------------------------------------------------------

TEST_F(FaultTest, ARegistryThatCannotBeReadIsNoFirstRun)
{
    PutDword(HKEY_CURRENT_USER, SUBKEY_GENERAL, "IiF", 1);
    PutText(HKEY_CURRENT_USER, SUBKEY_GENERAL, VALUE_USER_NAME, "chosen");
    Put("InitFlag", 1);
    Put("Launcher_0_Enable_1", BUTTON_LAUNCHER);
    Put("dwLTimer", 2);
    // The user's value is looked for first: opening its key, then reading it.
    for (const int nth : {1, 2}) {
        InjectFault(Fault::Registry, nth);
        SetupIdentity();
        EXPECT_EQ(TextAt(HKEY_CURRENT_USER, SUBKEY_GENERAL, VALUE_USER_NAME), "chosen") << nth;
        // Two values are written before, by three calls each.
        InjectFault(Fault::Registry, 4 + nth);
        EXPECT_EQ(InitLauncherSettings(), 1);
        EXPECT_EQ(FailedCalls(), 1);
        EXPECT_EQ(Value("Launcher_0_Enable_1"), BUTTON_LAUNCHER) << nth;
        InjectFault(Fault::Registry, nth);
        EXPECT_EQ(StepLauncherCount(1), 0);
        EXPECT_EQ(Value("dwLTimer"), 2u) << nth;
    }
    InjectFault(Fault::None);
    EXPECT_EQ(StepLauncherCount(1), 1);
    EXPECT_EQ(Value("dwLTimer"), 3u);
}

TEST_F(FaultTest, AHostNameThatIsNotKnownIsNotStored)
{
    HKEY key;
    RegCreateKeyA(HKEY_LOCAL_MACHINE, "System\\CurrentControlSet\\Services\\Tcpip\\Parameters", &key);
    RegSetValueExA(key, "Domain", 0, REG_SZ, reinterpret_cast<const BYTE *>("office.example"), 15);
    RegCloseKey(key);
    InjectFault(Fault::Socket, 1, 2);
    SetupIdentity();
    EXPECT_EQ(TextAt(HKEY_CURRENT_USER, SUBKEY_GENERAL, VALUE_USER_NAME), std::nullopt);
    EXPECT_EQ(TextAt(HKEY_CURRENT_USER, SUBKEY_GENERAL, VALUE_GROUP_NAME), "office.example") << "that is known";
}

TEST_F(FaultTest, ALockThatCannotBeReadIsNotStored)
{
    Put("ButtonLockStatus_0", 5);
    const FaultsOfThisThread aim;
    InjectFault(Fault::Event, 1, 2);
    SaveButtonLockStatus();
    EXPECT_EQ(Value("ButtonLockStatus_0"), 5u);
    EXPECT_EQ(Value("ButtonLockStatus_1"), 0u) << "there was none: without one the restoring would end there";
}

// ---- INI files ----------------------------------------------------------------------------------------------------

TEST_F(FaultTest, AnIniFileSurvivesAnEndInTheMiddleOfAWrite)
{
    const std::string path = PathOf("");
    const std::string before = "[A]\r\nname=1\r\n";
    const struct {
        const char *what;
        const char *ini, *copy; // as the end has left them; null = not there
        std::string repaired;
    } cases[] = {
        {"in the copying", before.c_str(), nullptr, before},
        {"in the write", "[A", before.c_str(), before},
        {"before the write", before.c_str(), before.c_str(), before},
        {"with an empty file", "", before.c_str(), before},
    };
    for (const auto &c : cases) {
        IniFolder::Write(file, c.ini);
        IniFolder::Write("profile.ini.lvcopy", "[half a copy");
        if (c.copy)
            IniFolder::Write("profile.ini.lvkeep", c.copy);
        RepairIniFile(path.c_str());
        EXPECT_EQ(IniFolder::Read(file), c.repaired) << c.what;
        EXPECT_FALSE(IniFolder::Exists("profile.ini.lvkeep")) << c.what;
        EXPECT_EQ(WriteIniKey(path.c_str(), "A", "name", "2"), 1);
        EXPECT_EQ(IniFolder::Read(file), "[A]\r\nname=2\r\n") << c.what;
        EXPECT_FALSE(IniFolder::Exists("profile.ini.lvkeep") || IniFolder::Exists("profile.ini.lvcopy")) << c.what;
    }
}

TEST_F(FaultTest, AWriteNeedsNoCopyAndLeavesNone)
{
    const std::string path = PathOf("");
    for (int nth = 1; nth <= 6; ++nth) {
        IniFolder::Write(file, "[A]\r\nname=1\r\n");
        InjectFault(Fault::File, nth);
        const int written = WriteIniSection(path.c_str(), "A", "name=2\r\n\0");
        InjectFault(Fault::None);
        RepairIniFile(path.c_str());
        char name[16] = "";
        GetPrivateProfileStringA("A", "name", "", name, sizeof name, path.c_str());
        EXPECT_STREQ(name, written ? "2" : "1") << nth;
    }
}

// ---- The tooltip window -------------------------------------------------------------------------------------------

TEST_F(FaultTest, ThePageTakesItsTooltipsAlong)
{
    const HWND panel = CreateWindowA("STATIC", "", WS_POPUP, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
    CreateToolTip(panel);
    HWND tip = nullptr;
    while ((tip = FindWindowExA(nullptr, tip, TOOLTIPS_CLASSA, nullptr)) && GetWindow(tip, GW_OWNER) != panel) {
    }
    ASSERT_NE(tip, nullptr);
    const HWND page = CreateWindowA("STATIC", "", WS_CHILD, 0, 0, 9, 9, panel, nullptr, nullptr, nullptr);
    for (INT_PTR id = 1; id <= 3; ++id) {
        // cppcheck-suppress ignoredReturnValue ; found by its identifier
        CreateWindowA("BUTTON", "", WS_CHILD, 0, 0, 3, 3, page, reinterpret_cast<HMENU>(id), nullptr, nullptr);
        EXPECT_EQ(AddToolTip(page, static_cast<int>(id), 0, 0, "tip"), 1);
    }
    EXPECT_EQ(SendMessageA(tip, TTM_GETTOOLCOUNT, 0, 0), 3);
    RemoveToolTips(page);
    EXPECT_EQ(SendMessageA(tip, TTM_GETTOOLCOUNT, 0, 0), 0);
    DestroyToolTip();
    DestroyWindow(panel);
}
