// What a call that fails, or an end at a bad moment, must not take away from the user.
#include "launcher/launcher_settings.h"
#include "monitor/enumeration.h"
#include "monitor/vcp.h"
#include "panel/tooltips.h"
#include "server/identity_setup.h"
#include "settings/ini.h"
#include "settings/ini_copy.h"
#include "settings/registry.h"
#include "support/plugin_session.h"
#include "timer/reservation_store.h"
#include "timer/scheduler.h"

#include <commctrl.h>

namespace {

class FaultTest : public HostTest {
protected:
    FaultTest()
    {
        host.monitors = {ColorMonitor("NRV-PA1"), ColorMonitor("NRV-PA2")};
        InitMonitors();
    }
};

const char file[] = "profile.ini";

std::string IniPath()
{
    return IniFolder::Path(file);
}

// Dates a file so many seconds from now.
void AgeFile(const std::string &path, int seconds)
{
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    ULARGE_INTEGER time = {{now.dwLowDateTime, now.dwHighDateTime}};
    time.QuadPart += static_cast<ULONGLONG>(seconds) * 10000000;
    const FILETIME then = {time.LowPart, time.HighPart};
    const HANDLE opened = CreateFileA(path.c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_TRUE(SetFileTime(opened, nullptr, nullptr, &then));
    CloseHandle(opened);
}

} // namespace

// ---- The registry -------------------------------------------------------------------------------------------------

TEST_F(FaultTest, ARegistryThatCannotBeReadIsNoFirstRun)
{
    PutDword(HKEY_CURRENT_USER, SUBKEY_GENERAL, "IiF", 1);
    PutText(HKEY_CURRENT_USER, SUBKEY_GENERAL, "LocalUserName", "chosen");
    PutLauncher("InitFlag", 1);
    PutLauncher("Launcher_0_Enable_1", BUTTON_LAUNCHER);
    PutLauncher("dwLTimer", 2);
    // The user's value is looked for first: opening its key, then reading it.
    for (const int nth : {1, 2}) {
        InjectFault(Fault::Registry, nth);
        SetupIdentity();
        EXPECT_EQ(TextAt(HKEY_CURRENT_USER, SUBKEY_GENERAL, "LocalUserName"), "chosen") << nth;
        // Two values are written before, by three calls each.
        InjectFault(Fault::Registry, 4 + nth);
        EXPECT_EQ(InitLauncherSettings(), 1);
        EXPECT_EQ(FailedCalls(), 1);
        EXPECT_EQ(LauncherValue("Launcher_0_Enable_1"), BUTTON_LAUNCHER) << nth;
        InjectFault(Fault::Registry, nth);
        EXPECT_EQ(StepLauncherCount(1), 0);
        EXPECT_EQ(LauncherValue("dwLTimer"), 2u) << nth;
    }
    InjectFault(Fault::None);
    EXPECT_EQ(StepLauncherCount(1), 1);
    EXPECT_EQ(LauncherValue("dwLTimer"), 3u);
}

TEST_F(FaultTest, AHostNameThatIsNotKnownIsNotStored)
{
    HKEY key;
    RegCreateKeyA(HKEY_LOCAL_MACHINE, "System\\CurrentControlSet\\Services\\Tcpip\\Parameters", &key);
    RegSetValueExA(key, "Domain", 0, REG_SZ, reinterpret_cast<const BYTE *>("office.example"), 15);
    RegCloseKey(key);
    InjectFault(Fault::Socket, 1, 2);
    SetupIdentity();
    EXPECT_EQ(TextAt(HKEY_CURRENT_USER, SUBKEY_GENERAL, "LocalUserName"), std::nullopt);
    EXPECT_EQ(TextAt(HKEY_CURRENT_USER, SUBKEY_GENERAL, "LocalGroupName"), "office.example") << "that is known";
}

TEST_F(FaultTest, ALockThatCannotBeReadIsNotStored)
{
    PutLauncher("ButtonLockStatus_0", 5);
    const FaultsOfThisThread aim;
    InjectFault(Fault::Event, 1, 2);
    SaveButtonLockStatus();
    EXPECT_EQ(LauncherValue("ButtonLockStatus_0"), 5u);
    EXPECT_EQ(LauncherValue("ButtonLockStatus_1"), 0u) << "there was none: without one the restoring would end there";
}

// ---- INI files ----------------------------------------------------------------------------------------------------

TEST_F(FaultTest, AnIniFileIsPutBackWhereItIsDamagedAlone)
{
    const std::string path = IniPath(), before = "[A]\r\nname=1\r\nred=2\r\n\r\n[B]\r\nname=3\r\n";
    constexpr int soon = 1, muchLater = 100; // seconds behind the copy
    const struct {
        const char *what;
        std::optional<std::string> left; // by an end in a write to section A; without it the file is gone
        int written;
        bool putBack;
    } cases[] = {
        {"before the write", before, soon, false},
        {"behind it", "[A]\r\nname=4\r\nred=2\r\n[B]\r\nname= 3\r\n", soon, false},
        {"behind a deletion", "[A]\r\n[B]\r\nname=3\r\n", soon, false},
        {"at its beginning", "", soon, true},
        {"in the first name", "[", soon, true},
        {"in the section", "[A]\r\nname=4\r\n", soon, true},
        {"in the section, with what follows", "[A]\r\nna\r\n[B]\r\nname=3\r\n", soon, true},
        {"behind the section", "[A]\r\nname=4\r\nred=2\r\n", soon, true},
        {"in another", "[A]\r\nname=4\r\nred=2\r\n[B]\r\nna", soon, true},
        {"while what follows is moved", "[A]\r\nname=4\r\nred=2\r\n[B]\r\nname=3\r\n3\r\n", soon, true},
        {"and a user wrote since", "[A]\r\nname=4\r\n", muchLater, false},
        {"and a user deleted it since", std::nullopt, 0, false},
    };
    for (const auto &c : cases) {
        IniFolder::Write(file, before);
        CloseHandle(TakeIniCopy(path.c_str(), "A")); // as an end of the process does
        IniFolder::Remove(file);
        if (c.left) {
            IniFolder::Write(file, *c.left);
            AgeFile(path, c.written);
        }
        RepairIniFile(path.c_str());
        EXPECT_EQ(IniFolder::Read(file), c.putBack ? before : c.left.value_or("")) << c.what;
        EXPECT_FALSE(IniFolder::Exists("profile.ini.lvkeep")) << c.what;
    }
    // Whoever reads the reservations puts them back first.
    const std::string reservations = IniFolder::Path("ontimer.ini");
    for (const bool load : {false, true}) {
        IniFolder::Write("ontimer.ini", before);
        CloseHandle(TakeIniCopy(reservations.c_str(), "A"));
        IniFolder::Write("ontimer.ini", "[A]\r\nna");
        AgeFile(reservations, soon);
        load ? LoadReservations(g_Reservation, "ontimer.ini") : CheckPassedReservations(nullptr);
        EXPECT_EQ(IniFolder::Read("ontimer.ini"), before) << load;
    }
    CloseReservationFiles();
    // A copy that its writer had not finished says nothing.
    IniFolder::Write(file, "[A");
    IniFolder::Write("profile.ini.lvkeep", before);
    EXPECT_EQ(WriteIniKey(path.c_str(), "B", "name", "5"), 1);
    EXPECT_EQ(IniFolder::Read(file).find("[B]"), IniFolder::Read(file).rfind("[B]"));
    EXPECT_EQ(IniFolder::Read(file).find("red"), std::string::npos);
    EXPECT_FALSE(IniFolder::Exists("profile.ini.lvkeep"));
}

TEST_F(FaultTest, AnotherProgramsWriteIsNotRepaired)
{
    const std::string path = IniPath(), before = "[A]\r\nname=1\r\n";
    IniFolder::Write(file, before);
    const HANDLE copy = TakeIniCopy(path.c_str(), "A"); // the other program, in the middle of its write
    IniFolder::Write(file, "[A");
    RepairIniFile(path.c_str());
    EXPECT_EQ(IniFolder::Read(file), "[A");
    // One that does not come to an end, or a scanner, holds up nobody's write for good.
    EXPECT_EQ(WriteIniKey(path.c_str(), "B", "name", "2"), 1);
    EXPECT_NE(IniFolder::Read(file).find("[B]"), std::string::npos);
    IniFolder::Write(file, before);
    EndIniCopy(copy, path.c_str(), true);
    EXPECT_FALSE(IniFolder::Exists("profile.ini.lvkeep"));
}

TEST_F(FaultTest, AWriteNeedsNoCopyAndNoneUndoesALaterWrite)
{
    const std::string path = IniPath();
    for (int nth = 1; nth <= 10; ++nth) {
        const std::string before = "[A]\r\nname=1\r\n[B]\r\nname=1\r\n";
        IniFolder::Write(file, before);
        InjectFault(Fault::File, nth);
        const int written = WriteIniSection(path.c_str(), "A", "name=2\r\n\0");
        InjectFault(Fault::None);
        EXPECT_EQ(IniFolder::Read("profile.ini.lvkeep"), "") << nth << ": one that could not be deleted is empty";
        // By another program, which needs no copy.
        EXPECT_TRUE(WritePrivateProfileStringA("B", "name", nullptr, path.c_str()));
        RepairIniFile(path.c_str());
        char name[16] = "";
        GetPrivateProfileStringA("A", "name", "", name, sizeof name, path.c_str());
        EXPECT_STREQ(name, written ? "2" : "1") << nth;
        GetPrivateProfileStringA("B", "name", "", name, sizeof name, path.c_str());
        EXPECT_STREQ(name, "") << nth;
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
