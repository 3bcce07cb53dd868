// The backend of real monitors, from the displays to a value, over a driver that the tests script: one that fails,
// hangs, loses its handles and shows two monitors behind one display.
#include <gtest/gtest.h>

#include <cstring>
#include <thread>

#include "host/base/text.h"
#include "host/tests/support/fake_monitor_api.h"
#include "host/windows_monitors/monitor_description.h"

static std::vector<BYTE> EdidBytes(const char *maker, unsigned product, unsigned serial, const char *name)
{
    const EDIDBLOCK block = MakeEdid({maker, product, serial, 2012, 60, 34, name});
    return std::vector<BYTE>(block.begin(), block.end());
}

static DRIVERDISPLAY OneBehind(size_t monitor, const std::vector<BYTE> &edid)
{
    return {{monitor}, {{Format("DISPLAY\\X\\%u", static_cast<unsigned>(monitor)), "Generic PnP Monitor", edid}}, 0};
}

class WindowsMonitors : public testing::Test {
protected:
    void SetUp() override
    {
        wchar_t temp[MAX_PATH];
        GetTempPathW(MAX_PATH, temp);
        options = {"", Narrow(temp) + "trayhub tests store", true, FakeMonitorApi(), FakeDisplays};
        monitor.capabilities = "(model(ABC)vcp(10 12 60(0F 11)))";
    }

    void TearDown() override
    {
        Close();
        ReleaseHangs();
        EXPECT_TRUE(WaitForNoHandle()) << "a thread that was left behind would go on in the next test";
        CAPABILITYSTORE store;
        store.folder = options.storeFolder;
        ForgetCapabilities(&store);
        RemoveDirectoryW(Widen(store.folder).c_str());
    }

    // Finds what the desktop has.
    void Open()
    {
        Close();
        monitors = OpenWindowsMonitors(options);
        FindWindowsMonitors(monitors);
        backend = WindowsBackend(monitors);
        options.fresh = false;
    }

    bool Close()
    {
        const bool ended = !monitors || CloseWindowsMonitors(monitors);
        monitors = nullptr;
        return ended;
    }

    std::string Name(int index)
    {
        char text[HOST_NAME_SIZE + 1] = {};
        return backend.name(backend.context, index, ACCESS_PATIENCE, text) == MONITOR_OK ? text : "failed";
    }

    std::string Capabilities(int index)
    {
        char text[HOST_CAPABILITIES_SIZE] = {};
        return backend.capabilities(backend.context, index, ACCESS_PATIENCE, text) == MONITOR_OK ? text : "failed";
    }

    int Read(int index, BYTE code, DWORD patience = ACCESS_PATIENCE)
    {
        WORD value = 0, maximum = 0;
        const bool done = backend.getVcp(backend.context, index, patience, code, &value, &maximum) == MONITOR_OK;
        return done ? value : -1;
    }

    MONITORRESULT Write(int index, BYTE code, WORD value)
    {
        return backend.setVcp(backend.context, index, ACCESS_PATIENCE, code, value);
    }

    // Begins a read that hangs in the driver; its result is there when the thread has ended.
    std::thread ReadOfHanging(int index, int *value)
    {
        ChangeMonitor(static_cast<size_t>(index), [](DRIVERMONITOR &driver) { driver.hangs = 1; });
        std::thread thread([=, this] { *value = Read(index, 0x10, 60 * 1000); });
        EXPECT_TRUE(WaitForHang());
        return thread;
    }

    WINDOWSMONITOROPTIONS options;
    DRIVERMONITOR monitor;
    const std::string plain = "(vcp(10 12 60(0F)))"; // its capability string as the plug-in gets it
    WINDOWSMONITORS *monitors = nullptr;
    MONITORBACKEND backend = {};
};

TEST_F(WindowsMonitors, AreCountedNamedAndKnownByTheirEdid)
{
    DRIVERMONITOR nameless;
    nameless.capabilities = "(vcp(10))";
    DRIVERMONITOR left, right;
    left.description = "Left One With Long Name";
    right.description = "Right";
    left.capabilities = right.capabilities = "(vcp(10))";
    const std::vector<BYTE> first = EdidBytes("DEL", 0x4014, 7, "DELL U3011");
    const std::vector<BYTE> second = EdidBytes("DEL", 0x4014, 8, "DELL U3011"), third = EdidBytes("ABC", 1, 2, "R");
    // Two monitors behind the last display; Windows knows the device of one of them only by its description.
    SetDesktop({monitor, nameless, left, right},
               {OneBehind(0, first),
                OneBehind(1, second),
                {{}, {}, 0xC02625E3},
                {{2, 3}, {{"A", "Generic PnP Monitor", first}, {"B", "Right", third}}, 0}});
    Open();
    ASSERT_EQ(backend.count(backend.context), 4);
    EXPECT_EQ(Name(0), "ABC");
    EXPECT_EQ(Name(1), "DELL U3011");
    EXPECT_EQ(Name(2), "Left One Wit");
    EXPECT_EQ(Name(3), "R");
    BYTE block[HOST_EDID_SIZE] = {1, 2, 3};
    EXPECT_EQ(backend.edid(backend.context, 2, block), MONITOR_FAILED) << "never another monitor's";
    EXPECT_EQ(block[0], 1);
    ASSERT_EQ(backend.edid(backend.context, 3, block), MONITOR_OK);
    EXPECT_EQ(memcmp(block, third.data(), sizeof block), 0);
    EXPECT_NE(FindingTrouble(monitors).find("DISPLAY3"), std::string::npos);
    EXPECT_EQ(WindowsMonitorsTrouble(monitors), "");
    for (const int index : {-1, 4}) {
        WORD value = 0;
        EXPECT_EQ(Name(index) + Capabilities(index), "failedfailed");
        EXPECT_EQ(backend.getVcp(backend.context, index, 100, 0x10, &value, &value), MONITOR_FAILED);
        EXPECT_EQ(Write(index, 0x10, 1), MONITOR_FAILED);
    }
}

TEST_F(WindowsMonitors, NoneIsToldWithItsReason)
{
    SetDesktop({}, {{{}, {}, GRAPHICS_CONSOLE_SESSION_ONLY}});
    Open();
    EXPECT_EQ(backend.count(backend.context), 0);
    EXPECT_NE(WindowsMonitorsTroubleInEnglish(monitors).find("0xC02625E0"), std::string::npos);
    EXPECT_NE(WindowsMonitorsTrouble(monitors).find("リモート"), std::string::npos);
}

TEST_F(WindowsMonitors, MoreThanThePluginHoldsAreLeftOut)
{
    DRIVERDISPLAY display;
    for (size_t i = 0; i < 12; i++)
        display.monitors.push_back(i);
    SetDesktop(std::vector<DRIVERMONITOR>(12, monitor), {display});
    Open();
    EXPECT_EQ(backend.count(backend.context), 10);
    EXPECT_EQ(OpenHandleCount(), 10u);
    EXPECT_TRUE(Close());
    EXPECT_EQ(OpenHandleCount(), 0u);
}

// A code whose writes all go to the monitor, whatever it has.
constexpr BYTE LOUDNESS = 0x62;

TEST_F(WindowsMonitors, PassingErrorsAreTriedAgainAndOthersAreNot)
{
    constexpr DWORD passing = 0xC0262583, never = GRAPHICS_VCP_NOT_SUPPORTED;
    const struct {
        std::deque<DWORD> errors;
        bool done;
        size_t tries;
    } cases[] = {
        {{passing, passing}, true, 3},
        {{passing, passing, passing, passing, passing}, false, 5},
        {{never}, false, 1},
        {{passing, never}, false, 2},
    };
    monitor.values[LOUDNESS] = {30, 100};
    SetDesktop({monitor}, {OneBehind(0, {})});
    Open();
    ASSERT_EQ(Name(0), "ABC");
    for (const auto &one : cases) {
        for (const bool write : {false, true}) {
            const size_t before = DriverAccesses().size();
            ChangeMonitor(0, [&](DRIVERMONITOR &driver) { driver.errors = one.errors; });
            EXPECT_EQ(write ? Write(0, LOUDNESS, 30) == MONITOR_OK : Read(0, LOUDNESS) == 30, one.done);
            EXPECT_EQ(DriverAccesses().size() - before, one.tries);
        }
    }
}

TEST_F(WindowsMonitors, AreLeftAloneAfterAWriteAndBeforeARead)
{
    monitor.values[LOUDNESS] = {30, 100};
    SetDesktop({monitor}, {OneBehind(0, {})});
    Open();
    ASSERT_EQ(Name(0), "ABC");
    EXPECT_EQ(Read(0, LOUDNESS), 30);
    EXPECT_EQ(Write(0, LOUDNESS, 0x1234), MONITOR_OK);
    EXPECT_EQ(Read(0, LOUDNESS), 0x1234) << "both bytes";
    EXPECT_EQ(Read(0, LOUDNESS), 0x1234);
    EXPECT_EQ(Write(0, LOUDNESS, 5), MONITOR_OK);
    EXPECT_EQ(Write(0, LOUDNESS, 6), MONITOR_OK);
    const std::vector<DRIVERACCESS> accesses = DriverAccesses();
    for (size_t i = 1; i < accesses.size(); i++) {
        const LONG pause = static_cast<LONG>(accesses[i].startTick - accesses[i - 1].endTick);
        const LONG least = accesses[i - 1].kind == 'w' ? 50 : accesses[i].kind == 'r' ? 40 : 0;
        EXPECT_GE(pause, least - 16) << i; // a tick may be 16 ms
    }
}

TEST_F(WindowsMonitors, OnlyWritesThatAreMeantAndChangeSomethingReachAMonitor)
{
    monitor.values = {{0x10, {30, 100}}, {0x60, {0x0F, 3}}, {0xF2, {0, 63}}};
    SetDesktop({monitor, monitor},
               {OneBehind(0, EdidBytes("ABC", 1, 1, "A")), OneBehind(1, EdidBytes("NRV", 1, 1, "B"))});
    Open();
    ASSERT_EQ(Capabilities(0), plain);
    const auto writes = [](size_t index) {
        size_t count = 0;
        for (const DRIVERACCESS &access : DriverAccesses())
            count += access.kind == 'w' && access.monitor == index;
        return count;
    };
    EXPECT_EQ(Write(0, 0x10, 0), MONITOR_FAILED) << "what a start restores that has read nothing";
    EXPECT_EQ(Read(0, 0x10), 30);
    EXPECT_EQ(Write(0, 0x10, 101), MONITOR_FAILED);
    EXPECT_EQ(Write(0, 0x60, 0x12), MONITOR_FAILED);
    EXPECT_EQ(Write(0, 0xF2, 1), MONITOR_FAILED);
    EXPECT_EQ(writes(0), 0u);
    EXPECT_EQ(Write(1, 0xF2, 1), MONITOR_OK) << "of our make";
    for (int time = 0; time < 3; time++)
        EXPECT_EQ(Write(0, 0x10, 30), MONITOR_OK);
    EXPECT_EQ(writes(0), 0u) << "it had that already";
    EXPECT_EQ(Write(0, 0x10, 31), MONITOR_OK);
    EXPECT_EQ(Write(0, 0x10, 31), MONITOR_OK);
    EXPECT_EQ(writes(0), 1u);
    // A monitor that was away may have any value.
    InvalidateHandles();
    EXPECT_EQ(Read(0, 0x60), 0x0F);
    EXPECT_EQ(Write(0, 0x10, 31), MONITOR_OK);
    EXPECT_EQ(writes(0), 2u);
}

TEST_F(WindowsMonitors, OneThatHangsHoldsNobodyUp)
{
    SetDesktop({monitor, monitor}, {OneBehind(0, {}), OneBehind(1, {})});
    Open();
    ASSERT_EQ(Name(0) + Name(1), "ABCABC");
    int value = 0;
    std::thread waiting = ReadOfHanging(0, &value);
    EXPECT_EQ(Read(1, 0x10), 30) << "the other one goes on";
    EXPECT_EQ(Read(0, 0x10, 50), -1) << "its thread is still in the driver";
    ReleaseHangs();
    waiting.join();
    EXPECT_EQ(value, 30) << "the driver has come back in time";

    // Finding anew and closing leave a hanging thread behind, which frees the handle when it comes back.
    waiting = ReadOfHanging(0, &value);
    FindWindowsMonitors(monitors);
    waiting.join();
    EXPECT_EQ(value, -1);
    EXPECT_EQ(backend.count(backend.context), 2);
    EXPECT_EQ(Read(1, 0x10), 30);
    EXPECT_EQ(OpenHandleCount(), 3u);
    EXPECT_FALSE(Close()) << "the process has to be ended by force";
    EXPECT_EQ(OpenHandleCount(), 1u);
    ReleaseHangs();
    EXPECT_TRUE(WaitForNoHandle());
}

TEST_F(WindowsMonitors, SearchThatHangsIsLeftBehindAndCleansUp)
{
    SetDesktop({monitor}, {OneBehind(0, {})});
    HangSearch();
    std::shared_ptr<MONITORSEARCH> search;
    const FINDING finding = SearchMonitors(*FakeMonitorApi(), FakeDisplays, 50, &search);
    EXPECT_EQ(finding.error, OUR_ERROR_STUCK);
    EXPECT_TRUE(finding.monitors.empty());
    ASSERT_TRUE(WaitForHang());
    EXPECT_TRUE(IsSearching(search.get()));
    EXPECT_EQ(OpenHandleCount(), 1u);
    ReleaseHangs();
    EXPECT_TRUE(WaitForNoHandle());
}

TEST_F(WindowsMonitors, StopCutsTheWaitAndStillWrites)
{
    SetDesktop({monitor, monitor}, {OneBehind(0, {}), OneBehind(1, {})});
    Open();
    ASSERT_EQ(Name(0) + Name(1), "ABCABC");
    int value = 0;
    std::thread waiting = ReadOfHanging(0, &value);
    const DWORD start = GetTickCount();
    StopWindowsMonitorAccesses(monitors);
    waiting.join();
    EXPECT_EQ(value, -1);
    EXPECT_LT(GetTickCount() - start, ACCESS_PATIENCE) << "half a second, and some for a busy machine";
    EXPECT_EQ(Write(1, 0x10, 77), MONITOR_OK) << "the plug-in releases button locks at its stop";
    EXPECT_EQ(Read(1, 0x10), 77);
    ReleaseHangs();
    FindWindowsMonitors(monitors);
    EXPECT_EQ(Read(0, 0x10), 30) << "finding anew ends the stop";
}

TEST_F(WindowsMonitors, InvalidHandleIsReplacedOnceTheMonitorIsThere)
{
    SetDesktop({monitor, monitor},
               {OneBehind(0, EdidBytes("ABC", 1, 1, "A")), OneBehind(1, EdidBytes("ABC", 1, 2, "A"))});
    Open();
    ASSERT_EQ(Name(0) + Name(1), "ABCABC");
    EXPECT_EQ(Write(1, 0x10, 99), MONITOR_OK);
    InvalidateHandles();
    EXPECT_EQ(Read(1, 0x10), 99) << "the same monitor as before";
    EXPECT_EQ(Read(0, 0x10), 30);
    EXPECT_EQ(OpenHandleCount(), 2u);
    EXPECT_EQ(LookForWindowsMonitors(monitors), FoundWindowsMonitors(monitors)) << "nothing has changed";
    EXPECT_EQ(OpenHandleCount(), 2u);

    const std::vector<MONITORIDENTITY> both = FoundWindowsMonitors(monitors);
    ChangeMonitor(0, [](DRIVERMONITOR &driver) { driver.isGone = true; });
    EXPECT_EQ(Read(0, 0x10), -1);
    EXPECT_EQ(Read(1, 0x10), 99);
    EXPECT_EQ(LookForWindowsMonitors(monitors), std::vector<MONITORIDENTITY>{both[1]});
    FindWindowsMonitors(monitors, true);
    EXPECT_EQ(FoundWindowsMonitors(monitors), both) << "it keeps its place while it is away";
    EXPECT_EQ(Read(0, 0x10), -1);
    EXPECT_EQ(Read(1, 0x10), 99);
    EXPECT_EQ(OpenHandleCount(), 1u);
    ChangeMonitor(0, [](DRIVERMONITOR &driver) { driver.isGone = false; });
    EXPECT_EQ(LookForWindowsMonitors(monitors), both);
    EXPECT_EQ(Read(0, 0x10), 30) << "opened anew at once";
    ChangeMonitor(0, [](DRIVERMONITOR &driver) { driver.isGone = true; });
    FindWindowsMonitors(monitors);
    EXPECT_EQ(FoundWindowsMonitors(monitors), std::vector<MONITORIDENTITY>{both[1]});
    EXPECT_EQ(Read(0, 0x10), 99);
}

TEST_F(WindowsMonitors, CapabilityStringIsReadOncePerEdid)
{
    SetDesktop({monitor, monitor}, {OneBehind(0, EdidBytes("ABC", 1, 1, "A")), OneBehind(1, {})});
    const auto reads = [](size_t index) {
        size_t count = 0;
        for (const DRIVERACCESS &access : DriverAccesses())
            count += access.kind == 'c' && access.monitor == index;
        return count;
    };
    CAPABILITYSTORE store;
    store.folder = options.storeFolder;
    const std::string key = EdidKey(MakeEdid({"ABC", 1, 1, 2012, 60, 34, "A"}));
    const auto waitUntil = [](const auto &isSo) {
        for (int look = 0; look < 500 && !isSo(); look++)
            Sleep(10);
        EXPECT_TRUE(isSo());
    };
    ChangeMonitor(0, [](DRIVERMONITOR &driver) { driver.disturbances = 1; });
    Open();
    EXPECT_EQ(Capabilities(0), "(vcp(10 12 60(0E)))");
    waitUntil([&] { return reads(0) == 2; });
    Close();
    EXPECT_EQ(FindKeptCapabilities(&store, key), "") << "the two were not the same";
    Open();
    EXPECT_EQ(Capabilities(0), plain);
    EXPECT_EQ(Capabilities(1), plain);
    waitUntil([&] { return FindKeptCapabilities(&store, key) == monitor.capabilities; });
    const size_t before = reads(1);
    Open();
    EXPECT_EQ(Capabilities(0), plain);
    EXPECT_EQ(Capabilities(1), plain);
    EXPECT_EQ(reads(0), 4u);
    EXPECT_GT(reads(1), before) << "without an EDID nothing is kept";
    options.fresh = true;
    ChangeMonitor(0, [](DRIVERMONITOR &driver) { driver.capabilities = ""; });
    Open();
    EXPECT_EQ(Capabilities(0), "failed");
    ChangeMonitor(0, [](DRIVERMONITOR &driver) { driver.capabilities = "(vcp(10))"; });
    EXPECT_EQ(Capabilities(0), "(vcp(10))") << "what failed is not kept, and is read again when it is asked for";
}

TEST_F(WindowsMonitors, StringWhoseReadTookTheProcessDownIsSkipped)
{
    SetDesktop({monitor}, {OneBehind(0, EdidBytes("ABC", 1, 1, "NAME"))});
    Open();
    ASSERT_EQ(Name(0), "ABC");
    const std::string key = CopyWindowsMonitors(monitors)[0].worker->key;
    Close();
    CAPABILITYSTORE store;
    store.folder = options.storeFolder;
    ForgetCapabilities(&store);
    const HANDLE marker = CreateFileW(Widen(store.folder + "\\reading " + key).c_str(), GENERIC_WRITE, 0, nullptr,
                                      CREATE_ALWAYS, 0, nullptr);
    ASSERT_NE(marker, INVALID_HANDLE_VALUE);
    DWORD written = 0;
    WriteFile(marker, "1 0000000000000001\n1 0000000000000002\n", 38, &written, nullptr);
    CloseHandle(marker);
    Open();
    EXPECT_EQ(Capabilities(0), "failed");
    EXPECT_EQ(Name(0), "NAME");
    EXPECT_EQ(Read(0, 0x10), 30);
    EXPECT_NE(WindowsMonitorsTroubleInEnglish(monitors).find("--fresh"), std::string::npos);
    options.fresh = true;
    Open();
    EXPECT_EQ(Capabilities(0), plain);
}

// A user who ends the program while a string is being read has done nothing wrong; a driver that dies has.
TEST_F(WindowsMonitors, MarkerStandsWhileAStringIsRead)
{
    monitor.hangs = 1;
    SetDesktop({monitor}, {OneBehind(0, EdidBytes("ABC", 1, 1, "A"))});
    Open();
    ASSERT_TRUE(WaitForHang());
    const std::string marker = options.storeFolder + "\\reading " + CopyWindowsMonitors(monitors)[0].worker->key;
    EXPECT_NE(GetFileAttributesW(Widen(marker).c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_FALSE(Close());
    EXPECT_EQ(GetFileAttributesW(Widen(marker).c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST_F(WindowsMonitors, MonitorsIniHasTheLastWord)
{
    const std::string path = options.storeFolder + ".ini";
    const HANDLE file = CreateFileW(Widen(path).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    const char text[] = "[ABC0001]\nmodel = MINE\ncapabilities = (vcp(10))\nmaximum 10 = 80\nnever = 12\ncolour = 1\n"
                        "[model ABC]\nmodel = NAMED\ncapabilities = (vcp(12))\n";
    DWORD written = 0;
    WriteFile(file, text, sizeof text - 1, &written, nullptr);
    CloseHandle(file);
    options.overrides = path;
    SetDesktop({monitor, monitor},
               {OneBehind(0, EdidBytes("ABC", 1, 1, "A")), OneBehind(1, EdidBytes("ABC", 2, 1, "B"))});
    Open();
    DeleteFileW(Widen(path).c_str());
    EXPECT_EQ(Name(0), "MINE");
    EXPECT_EQ(Capabilities(0), "(vcp(10))");
    EXPECT_EQ(Write(0, 0x12, 1), MONITOR_FAILED);
    EXPECT_EQ(Read(0, 0x12), -1);
    for (const DRIVERACCESS &access : DriverAccesses())
        EXPECT_NE(access.monitor, 0u) << "nothing of that asks the monitor";
    EXPECT_EQ(Name(1), "NAMED") << "by the name in its capability string";
    EXPECT_EQ(Capabilities(1), "(vcp(12))");
    WORD value = 0, maximum = 0;
    ASSERT_EQ(backend.getVcp(backend.context, 0, ACCESS_PATIENCE, 0x10, &value, &maximum), MONITOR_OK);
    EXPECT_EQ(value, 30);
    EXPECT_EQ(maximum, 80);
    EXPECT_NE(WindowsMonitorsTroubleInEnglish(monitors).find("monitors.ini:6: "), std::string::npos);
    EXPECT_NE(WindowsMonitorsTrouble(monitors).find("6 行目"), std::string::npos);
}

TEST_F(WindowsMonitors, DescriptionTellsAllAndTheReportNoSerialNumber)
{
    monitor.capabilities = "(model(ABC)vcp(10 60(0F 11))mccs_ver(2.1))";
    SetDesktop({monitor}, {OneBehind(0, EdidBytes("ABC", 0x12AB, 8765432, "A"))});
    Open();
    const MONITORANSWERS answers = AskMonitor(monitors, 0);
    const std::string list = DescribeMonitor(1, answers, false), report = DescribeMonitor(1, answers, true);
    for (const char *fact : {"Monitor 1: ABC", "DISPLAY1, 1920 x 1080", "ABC12AB, 2012, 60 x 34 cm",
                             "[ABC12AB 8765432]", "read from the monitor", "MCCS version \"2.1\"",
                             "60 input source: 0F 11", "30 of 100", "0xC0262584 the monitor does not know the code"})
        EXPECT_NE(list.find(fact), std::string::npos) << fact << "\n" << list;
    EXPECT_EQ(report.find("8765432"), std::string::npos);
    EXPECT_NE(report.find("00 FF FF FF FF FF FF 00 04 43 AB 12 00 00 00 00"), std::string::npos) << report;
    EXPECT_EQ(report.find("38 37 36 35"), std::string::npos) << "nor as bytes";
}
