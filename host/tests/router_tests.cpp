// The router: every request's answer, copies that outlive the message, monitors that hold up no other, malformed
// packets, and who knows what afterwards.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstring>
#include <mutex>
#include <regex>

#include "host/base/packet_log.h"
#include "host/base/text.h"
#include "host/router.h"
#include "host/tests/support/fake_plugin.h"

// The clock that the router sees: the real one, and what a test has put it ahead by, in ms.
static std::atomic<DWORD> s_clockAhead;

static DWORD WINAPI ClockOfTests()
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<DWORD>(std::chrono::duration_cast<std::chrono::milliseconds>(now).count()) + s_clockAhead;
}

extern "C" {
void *clockOfTests asm("__imp__GetTickCount@0") = reinterpret_cast<void *>(ClockOfTests);
}

// A backend whose calls the test can hold up and make fail.
struct SCRIPTEDBACKEND {
    std::atomic<MONITORRESULT> result{MONITOR_OK};
    HANDLE hGate = CreateEventW(nullptr, TRUE, TRUE, nullptr);   // calls about monitor 0 wait for it
    HANDLE hHeld = CreateEventW(nullptr, FALSE, FALSE, nullptr); // such a call has come
    std::mutex mutex;                                            // guards what follows
    std::string calls;
    std::vector<DWORD> patience; // that the reads were given

    std::string Calls()
    {
        std::lock_guard lock(mutex);
        return calls;
    }
};

static MONITORRESULT Enter(void *context, int monitor, const std::string &call)
{
    SCRIPTEDBACKEND *script = static_cast<SCRIPTEDBACKEND *>(context);
    if (monitor == 0) {
        SetEvent(script->hHeld);
        WaitForSingleObject(script->hGate, 5000);
    }
    std::lock_guard lock(script->mutex);
    script->calls += call + ";";
    return script->result;
}

static MONITORRESULT Read(void *context, int monitor, DWORD patience, BYTE code, WORD *value, WORD *maximum)
{
    const MONITORRESULT result = Enter(context, monitor, Format("get %d %02X", monitor, code));
    SCRIPTEDBACKEND *script = static_cast<SCRIPTEDBACKEND *>(context);
    std::lock_guard lock(script->mutex);
    script->patience.push_back(patience);
    if (result == MONITOR_OK) {
        *value = 0xFFFE;
        *maximum = 0xFFFF;
    }
    return result;
}

static MONITORBACKEND MakeBackend(SCRIPTEDBACKEND *script)
{
    return {
        script,
        [](void *context) {
            Enter(context, -1, "count");
            return 3;
        },
        [](void *context, int monitor, DWORD, char text[HOST_NAME_SIZE]) {
            const MONITORRESULT result = Enter(context, monitor, Format("name %d", monitor));
            if (result == MONITOR_OK)
                memcpy(text, "ABCDEFGHIJKL", HOST_NAME_SIZE);
            return result;
        },
        [](void *context, int monitor, DWORD, char text[HOST_CAPABILITIES_SIZE]) {
            const MONITORRESULT result = Enter(context, monitor, Format("capabilities %d", monitor));
            if (result == MONITOR_OK)
                memset(text, 'c', HOST_CAPABILITIES_SIZE);
            return result;
        },
        [](void *context, int monitor, BYTE block[HOST_EDID_SIZE]) {
            const MONITORRESULT result = Enter(context, monitor, Format("edid %d", monitor));
            if (result == MONITOR_OK)
                memset(block, 0xED, HOST_EDID_SIZE);
            return result;
        },
        Read,
        [](void *context, int monitor, DWORD, BYTE code, WORD value) {
            return Enter(context, monitor, Format("set %d %02X %u", monitor, code, value));
        },
        [](void *context, int monitor, const DWORD flags[HOST_INPUT_COUNT]) {
            return Enter(context, monitor, Format("inputs %d %lu %lu", monitor, flags[3], flags[15]));
        },
        [](void *context, int monitor, bool on) { return Enter(context, monitor, Format("link %d %d", monitor, on)); }};
}

static std::vector<BYTE> Words(std::initializer_list<DWORD> values)
{
    std::vector<BYTE> bytes;
    for (const DWORD value : values)
        AppendDword(&bytes, value);
    return bytes;
}

class Router : public testing::Test {
protected:
    void SetUp() override
    {
        ResetFakePlugin();
        StartRouter(&router, g_FakePlugin.slots, MakeBackend(&script));
    }

    void TearDown() override
    {
        SetEvent(script.hGate);
        StopRouter(&router);
        CloseHandle(script.hGate);
        CloseHandle(script.hHeld);
    }

    // Has monitor 0 take a read and not answer it until the gate opens.
    void HoldMonitor0(DWORD request)
    {
        ResetEvent(script.hGate);
        Send(HOST_GET_VCP, 0x10, request, Words({0}));
        ASSERT_EQ(WaitForSingleObject(script.hHeld, 5000), WAIT_OBJECT_0);
    }

    // Sends as the plug-in does, and spoils the packet as soon as the message is over.
    LRESULT Send(WORD command, WORD code, DWORD request, const std::vector<BYTE> &payload)
    {
        PACKET packet = MakePacket({PLUGIN_ENDPOINT_ID, 2, 1}, HostEndpoint(), command, code, request, payload);
        packet.header.lpData = PacketData(&packet);
        const LRESULT result = RouterTakePacket(&router, &packet.header);
        memset(packet.data.data(), 0xDD, packet.data.size());
        memset(&packet.header, 0xDD, sizeof packet.header);
        return result;
    }

    bool RouterStops()
    {
        std::lock_guard lock(router.mutex);
        return router.stopping;
    }

    SCRIPTEDBACKEND script;
    ROUTER router = {};
};

static std::vector<BYTE> InputFlags(DWORD monitor)
{
    std::vector<BYTE> bytes = Words({monitor});
    for (DWORD n = 0; n < HOST_INPUT_COUNT; n++)
        AppendDword(&bytes, n == 3 || n == 15);
    return bytes;
}

static std::vector<BYTE> PayloadOf(const PACKET &packet)
{
    return std::vector<BYTE>(packet.data.begin() + sizeof(HOSTDATA), packet.data.end());
}

TEST_F(Router, AnswersEveryRequest)
{
    const std::vector<BYTE> none(HOST_NAME_SIZE, 0);
    const std::string name = "ABCDEFGHIJKL";
    const struct {
        WORD command, code;
        std::vector<BYTE> payload, answer, failed;
        const char *call;
    } cases[] = {
        {HOST_GET_MONITOR_COUNT, 0, {}, Words({3}), Words({3}), "count"},
        {HOST_GET_MONITOR_NAME, 0, Words({1}), {name.begin(), name.end()}, none, "name 1"},
        {HOST_GET_CAPABILITIES, 0, Words({1}), std::vector<BYTE>(512, 'c'), std::vector<BYTE>(512, 0),
         "capabilities 1"},
        {HOST_GET_EDID, 0, Words({2}), std::vector<BYTE>(128, 0xED), std::vector<BYTE>(128, 0), "edid 2"},
        {HOST_GET_VCP, 0x10, Words({0}), Words({0xFFFE, 0xFFFF}), Words({0xFFFFFFFF, 0xFFFFFFFF}), "get 0 10"},
        {HOST_SET_VCP, 0xF4, Words({3, 255}), Words({1}), Words({0}), "set 3 F4 255"},
        {HOST_SET_INPUT_LIST, 0, InputFlags(1), Words({1}), Words({0}), "inputs 1 1 1"},
        {HOST_SET_DIRECTLINK, 0, Words({0xFFFFFFFF, 1}), Words({1}), Words({0}), "link -1 1"},
    };
    for (const bool fails : {false, true}) {
        ResetFakePlugin();
        script.calls.clear(); // nothing is in hand
        script.result = fails ? MONITOR_FAILED : MONITOR_OK;
        DWORD request = 100;
        std::string calls;
        std::vector<PACKET> answers;
        for (const auto &one : cases) {
            EXPECT_EQ(Send(one.command, one.code, request++, one.payload), 1);
            calls += std::string(one.call) + ";";
            answers = WaitForReceived(answers.size() + 1);
        }
        ASSERT_EQ(answers.size(), std::size(cases));
        for (size_t i = 0; i < answers.size(); i++) {
            const HOSTPACKET &header = answers[i].header;
            EXPECT_EQ(header.src.wID, HOST_ENDPOINT_ID);
            EXPECT_EQ(header.src.bClass, 2);
            EXPECT_EQ(header.src.bSubClass, 0x40);
            EXPECT_EQ(header.dst.wID, PLUGIN_ENDPOINT_ID);
            EXPECT_EQ(header.wCommand, cases[i].command);
            EXPECT_EQ(PacketData(&answers[i])->dwRequestID, 100 + i);
            EXPECT_EQ(PayloadOf(answers[i]), fails ? cases[i].failed : cases[i].answer) << cases[i].call;
        }
        EXPECT_EQ(script.Calls(), calls);
    }
}

static std::vector<DWORD> RequestsOf(const std::vector<PACKET> &answers)
{
    std::vector<DWORD> requests;
    for (const PACKET &answer : answers)
        requests.push_back(PacketData(&answer)->dwRequestID);
    return requests;
}

// None of this comes to an end while monitor 0 holds up the thread that does it.
TEST_F(Router, HeldUpByOneMonitorServesTheOthersAndTheSender)
{
    HoldMonitor0(1);
    for (DWORD request = 2; request <= 4; request++)
        EXPECT_EQ(Send(HOST_SET_VCP, 0x10, request, Words({0, request})), 1);
    s_clockAhead += 1000;
    EXPECT_FALSE(IsLinkQuiet(&router, 10)) << "a request in hand is no quiet, however long it takes";
    const struct {
        WORD command;
        std::vector<BYTE> payload;
        const char *what;
    } others[] = {{HOST_GET_VCP, Words({1}), "another monitor"},
                  {HOST_GET_VCP, Words({9}), "the last that has a thread of its own"},
                  {HOST_GET_VCP, Words({0x7FFFFFFF}), "none that there is"},
                  {HOST_GET_MONITOR_COUNT, {}, "the count"},
                  {HOST_SET_DIRECTLINK, Words({0xFFFFFFFF, 1}), "all of them"}};
    DWORD request = 100;
    for (const auto &other : others) {
        Send(other.command, 0x12, request++, other.payload);
        ASSERT_EQ(WaitForReceived(request - 100).size(), request - 100) << other.what;
    }
    SetEvent(script.hGate);
    const std::vector<PACKET> answers = WaitForReceived(4 + std::size(others));
    EXPECT_EQ(RequestsOf(answers), (std::vector<DWORD>{100, 101, 102, 103, 104, 1, 2, 3, 4}));
    EXPECT_NE(script.Calls().find("get 0 10;set 0 10 2;set 0 10 3;set 0 10 4;"), std::string::npos) << script.Calls();
    while (!IsLinkQuiet(&router, 0))
        Sleep(5);
    EXPECT_FALSE(IsLinkQuiet(&router, 60000));
}

TEST_F(Router, CountsTheTimeInTheQueue)
{
    HoldMonitor0(1);
    Send(HOST_GET_VCP, 0x10, 2, Words({0}));
    s_clockAhead += 2000;
    Send(HOST_GET_VCP, 0x10, 3, Words({0}));
    s_clockAhead += ACCESS_PATIENCE - 2000; // too late for 2, in time for 3
    SetEvent(script.hGate);
    const std::vector<PACKET> answers = WaitForReceived(3);
    ASSERT_EQ(RequestsOf(answers), (std::vector<DWORD>{1, 2, 3}));
    EXPECT_EQ(PayloadOf(answers[1]), Words({0xFFFFFFFF, 0xFFFFFFFF})) << "answered like a failed read";
    ASSERT_EQ(script.patience.size(), 2u) << "and not asked of the monitor";
    EXPECT_LE(script.patience[0], ACCESS_PATIENCE);
    EXPECT_GT(script.patience[0], 2000u);
    EXPECT_LE(script.patience[1], 2000u);
}

TEST_F(Router, LeavesUnansweredWhatTheMonitorLeaves)
{
    script.result = MONITOR_SILENT;
    HoldMonitor0(7);
    Send(HOST_GET_VCP, 0x10, 8, Words({0}));
    SetEvent(script.hGate);
    while (!IsLinkQuiet(&router, 0))
        Sleep(5);
    EXPECT_EQ(ReceivedCount(), 0u);
    script.result = MONITOR_OK;
    Send(HOST_GET_VCP, 0x10, 9, Words({0}));
    const std::vector<PACKET> answers = WaitForReceived(1);
    ASSERT_EQ(answers.size(), 1u);
    EXPECT_EQ(PacketData(answers.data())->dwRequestID, 9u) << "the silent ones are passed over, the next is answered";
}

TEST_F(Router, AnswersNothingToMalformedPackets)
{
    EXPECT_EQ(RouterTakePacket(&router, nullptr), 0);
    EXPECT_EQ(RouterTakeReply(&router, nullptr), 0);
    HOSTPACKET empty = {};
    EXPECT_EQ(RouterTakePacket(&router, &empty), 0);
    // Any program may send the message, with any number.
    BYTE *const pages = static_cast<BYTE *>(VirtualAlloc(nullptr, 0x2000, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
    DWORD before = 0;
    VirtualProtect(pages + 0x1000, 0x1000, PAGE_NOACCESS, &before);
    HOSTPACKET wild = {};
    wild.dwDataSize = 40;
    for (BYTE *block : {pages + 0x1000, pages + 0xFFE, pages + 0xFFC, reinterpret_cast<BYTE *>(0x10)}) {
        EXPECT_EQ(RouterTakePacket(&router, reinterpret_cast<HOSTPACKET *>(block)), 0);
        if (block == pages + 0xFFC)
            memcpy(block, &wild.dwDataSize, sizeof wild.dwDataSize); // a block that ends before its size
        wild.lpData = reinterpret_cast<HOSTDATA *>(block);
        EXPECT_EQ(RouterTakePacket(&router, &wild), 0);
    }
    VirtualFree(pages, 0, MEM_RELEASE);
    const struct {
        const char *why;
        WORD command;
        DWORD headerSize, blockSize;
    } cases[] = {
        {"sizes disagree", HOST_GET_VCP, 15, 14},
        {"shorter than the head", HOST_GET_VCP, 9, 9},
        {"far too large", HOST_GET_VCP, 0xFFFFFFF0, 0xFFFFFFF0},
        {"payload missing", HOST_GET_VCP, 10, 10},
        {"payload cut", HOST_GET_VCP, 13, 13},
        {"payload too long", HOST_GET_VCP, 18, 18},
        {"cut input list", HOST_SET_INPUT_LIST, 74, 74},
        {"unknown command", 25, 14, 14},
        {"unknown command", 0, 10, 10},
        {"negative command", 0xFFFF, 14, 14},
    };
    for (const auto &one : cases) {
        BYTE block[128] = {};
        reinterpret_cast<HOSTDATA *>(block)->dwSize = one.blockSize;
        HOSTPACKET packet = {};
        packet.wCommand = one.command;
        packet.dwDataSize = one.headerSize;
        packet.lpData = reinterpret_cast<HOSTDATA *>(block);
        EXPECT_EQ(RouterTakePacket(&router, &packet), 0) << one.why;
    }
    Send(HOST_GET_MONITOR_COUNT, 0, 9, {});
    ASSERT_EQ(WaitForReceived(1).size(), 1u);
    EXPECT_EQ(ReceivedCount(), 1u) << "only the good one is answered";
    EXPECT_EQ(script.Calls(), "count;");
}

TEST_F(Router, FailsWideCodesAndUnknownMonitorsWithoutHarm)
{
    Send(HOST_GET_VCP, 0x110, 1, Words({0}));
    Send(HOST_SET_VCP, 0x110, 2, Words({0, 1}));
    WaitForReceived(2);
    Send(HOST_GET_VCP, 0x10, 3, Words({0x7FFFFFFF}));
    const std::vector<PACKET> answers = WaitForReceived(3);
    ASSERT_EQ(answers.size(), 3u);
    EXPECT_EQ(PayloadOf(answers[0]), Words({0xFFFFFFFF, 0xFFFFFFFF}));
    EXPECT_EQ(PayloadOf(answers[1]), Words({0}));
    EXPECT_EQ(script.Calls(), "get 2147483647 10;") << "the backend decides about monitors";
    EXPECT_TRUE(CopyWireMonitors(&router).size() <= 1);
}

TEST_F(Router, NotesWhatThePluginHasLearnt)
{
    Send(HOST_GET_MONITOR_NAME, 0, 1, Words({1}));
    Send(HOST_SET_INPUT_LIST, 0, 2, InputFlags(1));
    Send(HOST_GET_VCP, 0x12, 3, Words({1}));
    WaitForReceived(3);
    const std::vector<WIREMONITOR> monitors = CopyWireMonitors(&router);
    ASSERT_EQ(monitors.size(), 2u);
    EXPECT_FALSE(monitors[0].hasName);
    EXPECT_EQ(monitors[1].name, "ABCDEFGHIJKL");
    EXPECT_FALSE(monitors[1].hasCapabilities);
    EXPECT_TRUE(monitors[1].hasInputs && monitors[1].inputs[3] && !monitors[1].inputs[4]);
    EXPECT_TRUE(monitors[1].readings[0x12].done);
    EXPECT_EQ(monitors[1].readings[0x12].value, 0xFFFE);
    EXPECT_FALSE(monitors[1].readings[0x10].done);
}

TEST_F(Router, TellsOfNoticesAndGreets)
{
    static std::vector<WORD> told;
    told.clear();
    router.noticed = [](void *, WORD notice) { told.push_back(notice); };
    Send(HOST_NOTICE, HOST_NOTICE_STARTING, 1, {});
    Send(HOST_NOTICE, HOST_NOTICE_STARTED, 2, {});
    EXPECT_EQ(told, (std::vector<WORD>{HOST_NOTICE_STARTING, HOST_NOTICE_STARTED}));
    EXPECT_TRUE(HasNotice(&router, HOST_NOTICE_STARTED));
    EXPECT_FALSE(HasNotice(&router, HOST_NOTICE_STOPPED));
    GreetPlugin(&router);
    const std::vector<PACKET> received = WaitForReceived(1);
    ASSERT_EQ(received.size(), 1u) << "notices get no answer";
    EXPECT_EQ(received[0].header.src.wID, HOST_ENDPOINT_ID);
    EXPECT_EQ(received[0].header.src.bSubClass, 0x40);
}

TEST_F(Router, StopDropsWhatWaitsAndAStartBeginsAnew)
{
    Send(HOST_NOTICE, HOST_NOTICE_STARTED, 0, {});
    HoldMonitor0(1);
    for (DWORD request = 2; request <= 50; request++)
        Send(HOST_GET_VCP, 0x10, request, Words({0}));
    std::thread opener([this] {
        while (!RouterStops())
            Sleep(5);
        SetEvent(script.hGate);
    });
    StopRouter(&router);
    opener.join();
    Send(HOST_GET_VCP, 0x10, 51, Words({1}));
    EXPECT_EQ(RequestsOf(WaitForReceived(1)), (std::vector<DWORD>{1})) << "the one in hand was ended";

    StartRouter(&router, g_FakePlugin.slots, MakeBackend(&script));
    EXPECT_FALSE(HasNotice(&router, HOST_NOTICE_STARTED));
    EXPECT_TRUE(CopyWireMonitors(&router).empty());
    Send(HOST_GET_VCP, 0x10, 52, Words({0}));
    EXPECT_EQ(RequestsOf(WaitForReceived(2)), (std::vector<DWORD>{1, 52}));
}

TEST_F(Router, LogsLinesThatAProgramCanRead)
{
    wchar_t folder[MAX_PATH];
    GetTempPathW(MAX_PATH, folder);
    const std::string path = Narrow(folder) + "trayhub tests.log";
    std::string error, log;
    ASSERT_TRUE(OpenPacketLog(path, &error)) << error;
    Send(HOST_GET_VCP, 0x10, 1, Words({0}));
    Send(HOST_GET_MONITOR_NAME, 0, 2, Words({0}));
    WaitForReceived(2);
    StopRouter(&router);
    LogEvent("a \"quoted\" text with a \\ and a \n");
    ClosePacketLog();
    ASSERT_TRUE(ReadWholeFile(path, 65536, &log, &error)) << error;
    DeleteFileW(Widen(path).c_str());

    const char *const expected[] = {
        "plugin>host request command=24 name=get-vcp id=1 monitor=0 code=0x10 feature=brightness",
        "host>monitor read monitor=0 code=0x10 feature=brightness value=65534 max=65535 result=ok ms=",
        "host>plugin reply command=24 name=get-vcp id=1 code=0x10 feature=brightness value=65534 max=65535",
        "plugin>host request command=27 name=get-name id=2 monitor=0",
        "host>plugin reply command=27 name=get-name id=2 text=\"ABCDEFGHIJKL\"",
        "host event text=\"a \\\"quoted\\\" text with a \\\\ and a \\x0A\"",
    };
    for (const char *line : expected)
        EXPECT_NE(log.find(line), std::string::npos) << line << "\n" << log;
    const std::regex form(
        R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3} [a-z>]+ [a-z-]+( [a-z-]+=("([^"\\]|\\.)*"|[^ "]+))*\r)");
    for (const std::string &line : SplitAt(log, '\n'))
        EXPECT_TRUE(line.empty() || std::regex_match(line, form)) << line;
}
