// The host's way to real monitors, from the backend's table down to dxva2.dll: finding, reading and writing monitors
// that are slow, fail, hang and vanish.
#include <gtest/gtest.h>

#include <condition_variable>
#include <mutex>

#include "host/base/edid.h"
#include "host/router.h"
#include "host/windows_monitors/windows_monitors.h"
#include "tests/dxva2_stand_in/tests/stand_in_control.h"

static const HMONITOR s_hFirst = reinterpret_cast<HMONITOR>(1), s_hSecond = reinterpret_cast<HMONITOR>(2);

static std::vector<BYTE> EdidNamed(const char *name)
{
    const EDIDBLOCK block = MakeEdid({"GSM", 0x1234, 77, 2016, 60, 34, name});
    return {block.begin(), block.end()};
}

// Two displays: the first shows its picture on two monitors.
static std::vector<DISPLAY> TwoDisplays()
{
    const DISPLAYMONITOR left = {"DISPLAY\\GSM1234\\1", "Generic PnP Monitor", EdidNamed("LEFT")},
                         right = {"DISPLAY\\GSM1234\\2", "Generic PnP Monitor", EdidNamed("RIGHT")},
                         alone = {"DISPLAY\\GSM1234\\3", "Generic PnP Monitor", EdidNamed("ALONE")};
    return {{s_hFirst, "\\\\.\\DISPLAY1", "card", {0, 0, 1280, 1024}, true, {left, right}},
            {s_hSecond, "\\\\.\\DISPLAY2", "card", {1280, 0, 2560, 1024}, false, {alone}}};
}

static std::vector<DISPLAY> OneDisplay()
{
    return {TwoDisplays()[0]};
}

class RealMonitors : public testing::Test {
protected:
    void TearDown() override { Close(); }

    void Find(std::vector<DISPLAY> (*displays)() = OneDisplay)
    {
        monitors = OpenWindowsMonitors({"", "", false, nullptr, displays});
        FindWindowsMonitors(monitors);
        backend = WindowsBackend(monitors);
    }

    bool Close()
    {
        const bool ended = !monitors || CloseWindowsMonitors(monitors);
        monitors = nullptr;
        return ended;
    }

    // The capability strings are read first, so that what follows is about values alone.
    void WaitForCapabilities()
    {
        char text[HOST_CAPABILITIES_SIZE];
        for (int i = 0; i < backend.count(backend.context); i++)
            backend.capabilities(backend.context, i, ACCESS_PATIENCE, text);
    }

    int Read(int monitor, BYTE code, DWORD patience = ACCESS_PATIENCE)
    {
        WORD value = 0, maximum = 0;
        const MONITORRESULT result = backend.getVcp(backend.context, monitor, patience, code, &value, &maximum);
        return result == MONITOR_OK ? value : -1;
    }

    bool Write(int monitor, BYTE code, WORD value)
    {
        return backend.setVcp(backend.context, monitor, ACCESS_PATIENCE, code, value) == MONITOR_OK;
    }

    WINDOWSMONITORS *monitors = nullptr;
    MONITORBACKEND backend = {};
};

TEST_F(RealMonitors, AreFoundBehindTheirDisplays)
{
    OpenTestMonitors({{"SPACED", "", ""},
                      {"DENSE", "capabilities = (vcp(020310121416181A60(01 03)E0)mccs_ver(2.1)model(MP76))\n", ""},
                      {"UNNAMED", "capabilities = (type(lcd)unnamedvcp(10 12))\n", ""},
                      {"NOTEXT", "", ""}});
    g_StandIn.set(2, STANDIN_DISPLAY, 2);
    g_StandIn.set(3, STANDIN_NO_CAPABILITIES, 1);
    Find(TwoDisplays);
    ASSERT_EQ(backend.count(backend.context), 4) << "physical monitors are counted, not displays";
    const struct {
        const char *name, *capabilities; // null: failed
        const char *edid;                // its name; null: nobody knows which of the display's EDIDs is its own
    } expected[] = {{"SPACED", "(mccs_ver(2.1)vcp(10 12 14(05 08 0B) 16 18 1A 60(01 03) 02))", nullptr},
                    {"MP76", "(mccs_ver(2.1)vcp(10 12 14() 16 18 1A 60(01 03) E0 02 03))", nullptr},
                    {"Generic PnP", nullptr, nullptr},
                    {"unnamed", "(vcp(10 12))", "ALONE"}};
    for (int i = 0; i < 4; i++) {
        char name[HOST_NAME_SIZE + 1] = "", text[HOST_CAPABILITIES_SIZE] = "";
        EDIDBLOCK edid = {};
        EXPECT_EQ(backend.name(backend.context, i, ACCESS_PATIENCE, name), MONITOR_OK);
        EXPECT_STREQ(name, expected[i].name);
        const MONITORRESULT result = backend.capabilities(backend.context, i, ACCESS_PATIENCE, text);
        EXPECT_EQ(result, expected[i].capabilities ? MONITOR_OK : MONITOR_FAILED) << i;
        EXPECT_EQ(std::string(text).find(expected[i].capabilities ? expected[i].capabilities : ""), 0u) << text;
        EXPECT_EQ(backend.edid(backend.context, i, edid.data()), expected[i].edid ? MONITOR_OK : MONITOR_FAILED);
        EXPECT_EQ(ReadEdidFacts(edid).name, expected[i].edid ? expected[i].edid : "") << i;
    }
    // The last one's own display, or the wrong monitor would be set.
    EXPECT_TRUE(Write(3, 0x10, 11));
    EXPECT_EQ(Seen(2, 0x10), 11);
}

TEST_F(RealMonitors, AreAskedAgainWhereItHelps)
{
    const struct {
        const char *what;
        STANDINFAULT fault;
        DWORD n;
        BYTE code;
        int value;
        DWORD accesses;
    } cases[] = {{"all is well", STANDIN_ANSWERS_EVERY, 0, 0x10, 40, 1},
                 {"every third succeeds", STANDIN_ANSWERS_EVERY, 3, 0x10, 40, 3},
                 {"it fails for good", STANDIN_FAILS, 1, 0x10, -1, 5},
                 {"silent about one code", STANDIN_FAILS, 0, 0x12, -1, 5},
                 {"it has not the code", STANDIN_FAILS, 0, 0xE0, -1, 1},
                 {"a value beyond the maximum", STANDIN_READS_AS, 0xFF64, 0x10, 0xFF64, 1}};
    for (const auto &one : cases) {
        OpenTestMonitors({{"ALPHA", "", "12 = 50 / 100, fails\n"}, {"BETA", "", ""}});
        Find();
        WaitForCapabilities();
        g_StandIn.set(0, one.fault, one.n);
        const DWORD before = g_StandIn.accesses(0);
        EXPECT_EQ(Read(0, one.code), one.value) << one.what;
        EXPECT_EQ(g_StandIn.accesses(0) - before, one.accesses) << one.what;
        EXPECT_EQ(Read(1, 0x10), 40) << one.what;
        Close();
    }
}

TEST_F(RealMonitors, TakeWhatIsWrittenWhenOnlyEveryThirdAccessSucceeds)
{
    OpenTestMonitors({{"ALPHA", "", ""}});
    Find();
    WaitForCapabilities();
    g_StandIn.set(0, STANDIN_ANSWERS_EVERY, 3);
    for (const WORD value : {WORD{7}, WORD{93}, WORD{21}}) {
        EXPECT_TRUE(Write(0, 0x10, value));
        EXPECT_EQ(Seen(0, 0x10), value);
        EXPECT_EQ(Read(0, 0x10), value);
    }
    EXPECT_TRUE(Write(0, 0x62, 1)) << "a monitor does not acknowledge, so nobody knows that it has not the code";
    g_StandIn.set(0, STANDIN_ANSWERS_EVERY, 0);
    g_StandIn.set(0, STANDIN_FAILS, 1);
    EXPECT_FALSE(Write(0, 0x10, 50));
    EXPECT_EQ(Seen(0, 0x10), 21);
}

TEST_F(RealMonitors, VanishAndComeBack)
{
    OpenTestMonitors({{"ALPHA", "", ""}, {"BETA", "", ""}});
    g_StandIn.set(1, STANDIN_DISPLAY, 2);
    Find(TwoDisplays);
    WaitForCapabilities();
    EXPECT_EQ(LookForWindowsMonitors(monitors), FoundWindowsMonitors(monitors));

    g_StandIn.set(0, STANDIN_GONE_AFTER, 2);
    EXPECT_TRUE(Write(0, 0x10, 70));
    EXPECT_FALSE(Write(0, 0x12, 70)) << "unplugged by this one";
    EXPECT_EQ(Read(0, 0x10), -1);
    EXPECT_EQ(Read(1, 0x10), 40) << "the other one is as before";
    EXPECT_NE(LookForWindowsMonitors(monitors), FoundWindowsMonitors(monitors));
    const DWORD before = g_StandIn.accesses(0);
    for (int i = 0; i < 10; i++)
        Read(0, 0x10);
    EXPECT_LE(g_StandIn.accesses(0) - before, 3u) << "nobody knocks all the time where nobody is";

    g_StandIn.set(0, STANDIN_GONE, 0);
    EXPECT_EQ(LookForWindowsMonitors(monitors), FoundWindowsMonitors(monitors));
    FindWindowsMonitors(monitors);
    EXPECT_EQ(Read(0, 0x10), 70);
    EXPECT_TRUE(Write(0, 0x12, 71));
    EXPECT_EQ(Seen(0, 0x12), 71);

    g_StandIn.set(1, STANDIN_GONE, 1);
    FindWindowsMonitors(monitors);
    EXPECT_EQ(backend.count(backend.context), 1);
    EXPECT_EQ(Read(1, 0x10), -1) << "an index beyond the count";
}

// The handle of every monitor becomes invalid when the display's mode changes; the monitors stay.
TEST_F(RealMonitors, SurviveAChangeOfTheDisplaysMode)
{
    OpenTestMonitors({{"ALPHA", "", ""}});
    Find();
    WaitForCapabilities();
    g_StandIn.set(0, STANDIN_GONE, 1);
    g_StandIn.set(0, STANDIN_GONE, 0);
    EXPECT_TRUE(Write(0, 0x10, 33));
    EXPECT_EQ(Seen(0, 0x10), 33);
}

// ---- With the router in front of them -------------------------------------------------------------------------------

static std::mutex s_mutex;
static std::condition_variable s_arrived;
static std::vector<DWORD> s_answered; // the requests' numbers, in the order of their answers
static std::vector<int> s_values;     // what the reads gave, in the same order

static int TakeAnswer(void *packet)
{
    const HOSTDATA *data = static_cast<HOSTPACKET *>(packet)->lpData;
    int value = 0;
    memcpy(&value, HostPayload(data), sizeof value);
    std::lock_guard lock(s_mutex);
    s_answered.push_back(data->dwRequestID);
    s_values.push_back(value);
    s_arrived.notify_all();
    return 1;
}

class RoutedMonitors : public RealMonitors {
protected:
    void Start()
    {
        Find();
        WaitForCapabilities();
        s_answered.clear();
        s_values.clear();
        for (PLUGINSLOT &slot : slots)
            slot = TakeAnswer;
        StartRouter(&router, slots, backend);
    }

    void TearDown() override
    {
        StopRouter(&router);
        RealMonitors::TearDown();
    }

    void Send(DWORD request, DWORD monitor, WORD code)
    {
        std::vector<BYTE> payload;
        AppendDword(&payload, monitor);
        PACKET packet = MakePacket({PLUGIN_ENDPOINT_ID, ENDPOINT_CLASS, ENDPOINT_SUBCLASS_PLUGIN}, HostEndpoint(),
                                   HOST_GET_VCP, code, request, payload);
        packet.header.lpData = PacketData(&packet);
        EXPECT_EQ(RouterTakePacket(&router, &packet.header), 1);
    }

    std::vector<DWORD> WaitForAnswers(size_t count)
    {
        std::unique_lock lock(s_mutex);
        s_arrived.wait_for(lock, std::chrono::seconds(20), [count] { return s_answered.size() >= count; });
        return s_answered;
    }

    PLUGINSLOT slots[PLUGIN_SLOT_COUNT];
    ROUTER router = {};
};

// A driver that does not come back from monitor 0, and a monitor 1 that takes two seconds. What waits for the driver is
// given up eight seconds after it was asked for, all at the same time; what is asked for later is refused at once.
TEST_F(RoutedMonitors, AreNotSlowedDownByOthersThatHangOrAreSlow)
{
    OpenTestMonitors({{"HANGS", "", ""}, {"SLOW", "", "10 = 41 / 100, delay 2000\n"}, {"QUICK", "", ""}});
    Start();
    const DWORD before = g_StandIn.accesses(1);
    g_StandIn.set(0, STANDIN_HANGS, 1);
    for (DWORD request = 1; request <= 3; request++)
        Send(request, 0, 0x10);
    Send(4, 1, 0x10);
    while (g_StandIn.accesses(1) == before)
        Sleep(5);
    for (DWORD request = 5; request <= 8; request++) {
        Send(request, 2, 0x10);
        WaitForAnswers(request - 4);
    }
    EXPECT_EQ(WaitForAnswers(8), (std::vector<DWORD>{5, 6, 7, 8, 4, 1, 2, 3}));
    Send(9, 1, 0x10);
    Send(10, 0, 0x10);
    EXPECT_EQ(WaitForAnswers(10), (std::vector<DWORD>{5, 6, 7, 8, 4, 1, 2, 3, 10, 9}));
    EXPECT_EQ(s_values, (std::vector<int>{40, 40, 40, 40, 41, -1, -1, -1, -1, 41}));

    for (const ROUTERLANE &lane : router.lanes)
        EXPECT_FALSE(lane.worker.joinable()) << "a monitor has one thread, its own";

    const DWORD begun = g_StandIn.accesses(2), start = GetTickCount();
    g_StandIn.set(2, STANDIN_HANGS, 1);
    Send(11, 2, 0x10);
    while (g_StandIn.accesses(2) == begun)
        Sleep(5);
    StopWindowsMonitorAccesses(monitors);
    StopRouter(&router);
    EXPECT_LT(GetTickCount() - start, ACCESS_PATIENCE) << "half a second, and some for a busy machine";
    EXPECT_EQ(WaitForAnswers(11).back(), 11u);
    EXPECT_EQ(s_values.back(), -1);
    EXPECT_FALSE(Close()) << "a thread is still in the driver, and that is said";
    for (const int monitor : {0, 2})
        g_StandIn.set(monitor, STANDIN_HANGS, 0);
}
