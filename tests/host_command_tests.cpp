// The host's commands through slot 16, and the identity through slot 10: what the monitors get, what the settings hold
// afterwards, and each reply byte by byte.
#include "kernel/host_command.h"

#include "kernel/plugin.h"
#include "monitor/color_features.h"
#include "support/plugin_session.h"

#include <algorithm>

namespace {

using Bytes = std::vector<BYTE>;

// "01 FF00" as bytes.
Bytes Hex(std::string text)
{
    std::erase(text, ' ');
    Bytes bytes;
    for (size_t i = 0; i < text.size(); i += 2)
        bytes.push_back(static_cast<BYTE>(std::stoi(text.substr(i, 2), nullptr, 16)));
    return bytes;
}

constexpr DWORD requestID = 0x01020304;
const ENDPOINT sender = {0x55, 3, 9};

// Three monitors, of which the second is selected.
class HostCommandTest : public HostTest {
protected:
    HostCommandTest()
    {
        host.monitors = {ColorMonitor("A"), ColorMonitor("B"), ColorMonitor("C")};
        g_nMonitor = 3;
        g_nCurMonitor = 1;
        m_page = static_cast<BYTE *>(VirtualAlloc(nullptr, 2 * pageSize, MEM_RESERVE, PAGE_NOACCESS));
        // cppcheck-suppress leakReturnValNotUsed ; only the access changes, the address is m_page
        VirtualAlloc(m_page, pageSize, MEM_COMMIT, PAGE_READWRITE);
    }
    ~HostCommandTest() override { VirtualFree(m_page, 0, MEM_RELEASE); }

    int CallSlot(int slot, void *argument)
    {
        PLUGINFUNC function = {};
        GetPluginFunc(&function);
        int result = -1;
        host.Run([&] { result = function.lpFuncTable[slot](argument); });
        return result;
    }

    // The header's command is another one than the block's, which is the one that counts.
    static HOSTPACKET Packet(HOSTDATA *data) { return {sender, g_MyAddr, 0x8421, 0, data->dwSize, data, 2, 0}; }

    // Slot 16 on the host's thread. The block ends where the accessible memory ends, so that a byte too many faults.
    int Command(WORD code, const Bytes &payload = {}, int sizeError = 0)
    {
        const size_t size = sizeof(HOSTDATA) + payload.size();
        auto *data = reinterpret_cast<HOSTDATA *>(m_page + pageSize - size);
        *data = {static_cast<DWORD>(size), requestID, code};
        std::copy(payload.begin(), payload.end(), HostPayload(data));
        HOSTPACKET packet = Packet(data);
        packet.dwDataSize += static_cast<DWORD>(sizeError);
        const int result = CallSlot(PLUGIN_SLOT_COMMAND, &packet);
        m_block.assign(HostPayload(data), HostPayload(data) + payload.size());
        return result;
    }

    // The one reply since the last call of this. The defaults are those of Command.
    void ExpectReply(WORD code, const Bytes &payload, DWORD id = requestID, const ENDPOINT &receiver = sender,
                     WORD command = 2, WORD flags = 0x8421)
    {
        const auto replies = host.Replies();
        ASSERT_EQ(replies.size(), m_seen + 1);
        const TestReply &reply = replies[m_seen++];
        EXPECT_EQ(memcmp(&reply.dst, &receiver, sizeof receiver), 0);
        EXPECT_EQ(reply.command, command);
        EXPECT_EQ(reply.flags, flags);
        EXPECT_EQ(reply.id, id);
        EXPECT_EQ(reply.code, code);
        EXPECT_EQ(reply.payload, payload);
    }

    void ExpectNoReply() { EXPECT_EQ(host.Replies().size(), m_seen); }

    // What went to the monitors, without the replies.
    Lines Traffic()
    {
        Lines lines = host.TakeLog();
        std::erase_if(lines, [](const std::string &line) { return line.starts_with("reply"); });
        return lines;
    }

    static constexpr DWORD pageSize = 4096;
    BYTE *m_page = nullptr;
    Bytes m_block; // the host's payload after the command
    size_t m_seen = 0;
};

// Steps with commas between: "get E0" is the selected monitor's affair, "E0 = 1" is written to it or to all.
Lines OnMonitors(const std::string &steps)
{
    Lines lines;
    for (size_t from = 0, to; from < steps.size(); from = to + 1) {
        to = std::min(steps.find(',', from), steps.size());
        const std::string step = steps.substr(from, to - from);
        for (const std::string monitor : {"0", "1", "2"})
            if (step.starts_with("get") && monitor == "1")
                lines.push_back("get 1" + step.substr(3));
            else if (!step.starts_with("get") && (monitor == "1" || g_bAllMonitors))
                lines.push_back("set " + monitor + " " + step);
    }
    return lines;
}

std::vector<std::pair<WPARAM, LPARAM>> s_Power; // system commands that a top-level window got

LRESULT CALLBACK PowerProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_SYSCOMMAND)
        s_Power.emplace_back(wParam, lParam);
    return DefWindowProcA(window, message, wParam, lParam);
}

} // namespace

TEST_F(HostCommandTest, WhatIsRefusedAndWhatIsIgnored)
{
    auto *head = reinterpret_cast<HOSTDATA *>(m_page + pageSize - 8); // without its command number
    HOSTPACKET packet = {};
    for (const DWORD size : {0, 3, 8}) {
        head->dwSize = size;
        packet = Packet(head);
        EXPECT_EQ(CallSlot(PLUGIN_SLOT_COMMAND, &packet), 1) << size;
    }
    packet.lpData = nullptr;
    EXPECT_EQ(CallSlot(PLUGIN_SLOT_COMMAND, &packet), 0);
    EXPECT_EQ(CallSlot(PLUGIN_SLOT_COMMAND, nullptr), 0);
    for (const int error : {-10, -1, 1, 1000})
        EXPECT_EQ(Command(PLUGIN_COMMAND_MONITOR_COUNT, {}, error), 0) << error;
    for (const int code : {0, 3, 5, 18, 21, 31, 34, 36, 38, 41, 127, 129, 132, 256 + 37, 0x8025, 0xFFFF})
        EXPECT_EQ(Command(static_cast<WORD>(code), Bytes(64)), 1) << code;
    const struct {
        WORD code;
        size_t size;
    } layouts[] = {{1, 18}, {2, 18}, {19, 12}, {20, 12}, {131, 4}};
    for (const auto &layout : layouts)
        for (const size_t size : {size_t{0}, layout.size - 1})
            EXPECT_EQ(Command(layout.code, Bytes(size)), 1) << layout.code;
    ExpectNoReply();
    EXPECT_EQ(Traffic(), Lines{});
}

TEST_F(HostCommandTest, EachCommandOnTheSelectedMonitorAndOnAll)
{
    const char readAll[] = "get E0,get 10,get 12,get 14,get 16,get 18,get 1A";
    const struct {
        const char *what;
        WORD code;
        const char *block, *steps;
        WORD replyCode;    // 0: no reply
        const char *reply; // null: a record of zeros
        const char *after; // the block, null when it stays
        LONG eco = 0;      // of the selected monitor
        DWORD id = requestID;
    } cases[] = {
        {"read", 1, "07000000 1111 2222 3333 4444 5555 6666 7777", readAll, 128, nullptr,
         "00000000 1111 3C00 4600 5100 5200 5300 0500"},
        {"read with ECO on", 1, "00000000 0000 0000 0000 0000 0000 0000 0000 EEEE", readAll, 128, nullptr,
         "02000000 3C00 0000 4600 5100 5200 5300 0500 EEEE", 2},
        {"read, ECO unknown", 1, "00000000 0000 0000 FFFF FFFF FFFF FFFF FFFF", "get E0,get 10", 128, nullptr,
         "FFFFFFFF 3C00 0000 FFFF FFFF FFFF FFFF FFFF", -1},
        {"read some", 1, "FFFFFFFF 0000 FFFF FFFF FFFF 0000 FFFF 0000", "get E0,get 10,get 14,get 18", 128, nullptr,
         "FFFFFFFF 3C00 FFFF FFFF FFFF 5200 FFFF 0500", 1},
        {"read none", 1, "FFFFFFFF 0000 FFFF FFFF FFFF FFFF FFFF FFFF", "get E0", 128, nullptr, nullptr},
        {"write, too bright", 2, "00000000 0A00 C800 3200 0100 0200 0300 0B00",
         "E0 = 0,get 10,10 = 100,get 12,12 = 50,14 = 11", 2, "0000", nullptr},
        {"write with ECO", 2, "01000000 0A00 C800 6500 0100 0200 0300 0100",
         "E0 = 1,get 10,10 = 10,get 12,12 = 100,14 = 1", 2, "0000", nullptr},
        {"write, strange ECO", 2, "02000000 0A00 C800 0000 0100 0200 0300 0500", "get 12,12 = 0,14 = 5", 2, "0000",
         nullptr},
        {"write no brightness", 2, "01000000 FFFF 0A00 FFFF FFFF FFFF FFFF 0500", "E0 = 1,14 = 5", 2, "0000", nullptr},
        {"write, large is not negative", 2, "00000000 0000 FEFF 0080 0000 0000 0000 0080",
         "E0 = 0,get 10,10 = 100,get 12,12 = 100,14 = 32768", 2, "0000", nullptr},
        {"write nothing but the preset", 2, "FFFFFFFF FFFF FFFF FFFF FFFF FFFF FFFF FFFF", "14 = 65535", 2, "0000",
         nullptr},
        {"no work", 4, "", "", 4, nullptr, nullptr},
        {"get", 19, "AAAAAAAA BBBBBBBB 16 CCDDEE", "get 16", 19, "64000000 51000000 16 CCDDEE",
         "64000000 51000000 16 CCDDEE"},
        {"get in vain", 19, "AAAAAAAA BBBBBBBB 42 000000", "get 42", 19, "FFFFFFFF FFFFFFFF 42 000000",
         "FFFFFFFF FFFFFFFF 42 000000"},
        {"set, by the low 16 bits", 20, "02000000 32000100 12 000000", "get 12,12 = 50,get 12", 20,
         "64000000 32000000 12 000000", "64000000 32000000 12 000000"},
        {"set what cannot be read", 20, "02000000 32000000 42 000000", "get 42", 20, "FFFFFFFF FFFFFFFF 42 000000",
         "FFFFFFFF FFFFFFFF 42 000000"},
        {"count, with the block's size as its number", 37, "000000", "", 37, "03000000", nullptr, 0, 13},
        {"nothing", 40, "", "", 0, nullptr, nullptr},
        {"allow name change", 130, "", "", 2, "0100", nullptr},
    };
    // The user chooses the third monitor as soon as a command has begun: it goes on with the second.
    host.plan = [](const TestRequest &) {
        g_nCurMonitor = 2;
        return Answer{};
    };
    for (const LONG all : {0, 1})
        for (const auto &c : cases) {
            SCOPED_TRACE(c.what);
            g_nCurMonitor = 1;
            g_bAllMonitors = all;
            host.monitors = {ColorMonitor("A"), ColorMonitor("B"), ColorMonitor("C")};
            host.monitors[0].features[VCP_BRIGHTNESS].maximum = 80; // that of the selected monitor limits all
            host.monitors[1].features[VCP_ECO_MODE].current = c.eco;
            EXPECT_EQ(Command(c.code, Hex(c.block)), 1);
            EXPECT_EQ(m_block, Hex(c.after ? c.after : c.block));
            EXPECT_EQ(Traffic(), OnMonitors(c.steps));
            if (c.replyCode)
                ExpectReply(c.replyCode, c.reply ? Hex(c.reply) : Bytes(c.code == 4 ? 256 : 140), c.id);
            ExpectNoReply();
        }
    for (const LONG *maxima : {g_nMaxBright, g_nMaxBrightEco, g_nMaxContrast})
        EXPECT_EQ(maxima[1], 100);
    EXPECT_EQ(DwordAt(HKEY_CURRENT_USER, "Lumivane2", "EnableChangeName"), 1u);
}

TEST_F(HostCommandTest, AMaximumThatCannotBeReadIsTheSmallerOne)
{
    g_nMaxContrast[1] = 70; // of an earlier read
    host.monitors[1].features.erase(VCP_CONTRAST);
    Command(2, Hex("FFFFFFFF FFFF FFFF 3200 FFFF FFFF FFFF 0500"));
    EXPECT_EQ(Traffic(), (Lines{"get 1 12", "set 1 12 = 65535", "set 1 14 = 5"}));
    EXPECT_EQ(g_nMaxContrast[1], -1);

    g_nMaxContrast[1] = 70;
    InjectFault(Fault::Event); // the read is not even sent
    Command(2, Hex("FFFFFFFF FFFF FFFF 3200 FFFF FFFF FFFF 0500"));
    EXPECT_EQ(Traffic(), (Lines{"set 1 12 = 65535", "set 1 14 = 5"}));
}

TEST_F(HostCommandTest, ASelectionThatIsNoMonitor)
{
    for (const LONG nowhere : {-1L, MAX_MONITOR, 999L}) {
        g_nCurMonitor = nowhere;
        EXPECT_EQ(Command(1, Bytes(18)), 1);
        ExpectReply(128, Bytes(140));
        EXPECT_EQ(m_block, Hex("FFFFFFFF FFFF 0000 FFFF FFFF FFFF FFFF FFFF"));
        EXPECT_EQ(Command(2, Hex("01000000 0A00 0A00 0A00 0000 0000 0000 0000")), 1);
        ExpectReply(2, Hex("0000"));
        EXPECT_EQ(Command(20, Hex("01000000 07000000 F2 000000")), 1);
        ExpectReply(20, Hex("01000000 07000000 F2 000000"));
        EXPECT_EQ(LauncherValue("ButtonLockStatus_" + std::to_string(nowhere)), std::nullopt);
    }
}

TEST_F(HostCommandTest, ButtonLock)
{
    const struct {
        const char *payload; // operation, mask
        LONG before, after;  // of the monitor's mask
        const char *modes;   // of the six buttons, which were 0 1 2 0 1 2 before
    } cases[] = {
        {"01000000 07000000", 0x80, 0x87, "112012"}, {"01000000 80000000", 0x01, 0x81, "012012"},
        {"01000000 03000000", 0x04, 0x07, "012012"}, {"00000000 07000000", 0x87, 0x80, "000012"},
        {"00000000 07000000", 0x00, 0x07, "000012"}, {"00000000 80000000", 0x80, 0x00, "012010"},
        {"00000000 FF000000", 0x0F, 0xF0, "012012"}, {"02000000 FF000000", 0x03, 0xFF, "112112"},
        {"02000000 00000000", 0x03, 0x00, "000000"}, {"02000000 07000000", 0xF0, 0x07, "012012"},
    };
    for (const LONG all : {0, 1}) // makes no difference: the lock is the selected monitor's
        for (const auto &c : cases) {
            SCOPED_TRACE(c.payload);
            g_bAllMonitors = all;
            host.monitors[1].features[VCP_BUTTON_LOCK].current = c.before;
            for (DWORD button = 1; button <= 6; ++button)
                PutLauncher("Launcher_1_Enable_" + std::to_string(button), (button - 1) % 3);
            const Bytes payload = Hex(c.payload + std::string("F2 000000"));
            EXPECT_EQ(Command(20, payload), 1);
            ExpectReply(20, payload);
            EXPECT_EQ(Traffic(), (Lines{"get 1 F2", "set 1 F2 = " + std::to_string(c.after)}));
            EXPECT_EQ(LauncherValue("ButtonLockStatus_1"), c.after);
            std::string modes;
            for (int button = 1; button <= 6; ++button)
                modes += std::to_string(LauncherValue("Launcher_1_Enable_" + std::to_string(button)).value_or(9));
            EXPECT_EQ(modes, c.modes);
        }
    EXPECT_EQ(LauncherValue("ButtonLockStatus_0"), std::nullopt);
    EXPECT_EQ(LauncherValue("Launcher_0_Enable_1"), std::nullopt);
}

TEST_F(HostCommandTest, ButtonLockAtItsLimits)
{
    const Bytes lockPower = Hex("01000000 80000000 F2 000000"), noOperation = Hex("03000000 FF000000 F2 000000");
    Command(20, noOperation);
    ExpectReply(20, noOperation);
    EXPECT_EQ(LauncherValue("ButtonLockStatus_1"), std::nullopt);
    Command(20, lockPower);
    EXPECT_EQ(LauncherValue("Launcher_1_Enable_6"), 1u) << "an absent mode is that of a normal button";
    Traffic();

    PutLauncher("Launcher_1_Enable_6", 0);
    host.monitors[1].features.erase(VCP_BUTTON_LOCK);
    g_nMonitor = 0;
    Command(20, lockPower);
    EXPECT_EQ(Traffic(), (Lines{"get 1 F2", "set 1 F2 = 65535"})) << "an unreadable mask is -1";
    EXPECT_EQ(LauncherValue("ButtonLockStatus_1"), 0x80u) << "but not at every start from now on";
    Command(20, Hex("02000000 03000000 F2 000000"));
    EXPECT_EQ(LauncherValue("ButtonLockStatus_1"), 3u) << "a whole mask needs no other";
    EXPECT_EQ(LauncherValue("Launcher_1_Enable_6"), 0u) << "once per monitor: without one, never";
}

TEST_F(HostCommandTest, MonitorPowerIsBroadcast)
{
    const HWND window = host.MakeWindow("lvkernel_tests_power", PowerProc);
    // What a broadcast returns is the system's affair; the reply is 1 when that is 0.
    const Bytes result = {static_cast<BYTE>(SendMessageA(HWND_BROADCAST, WM_NULL, 0, 0) == 0), 0};

    // A window that hangs, until the first command is through or ten seconds have passed.
    const HANDLE hangs = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    const HANDLE through = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    bool inTime = false;
    std::thread other([&] {
        const HWND hung = CreateWindowA("STATIC", "", WS_POPUP, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
        SetEvent(hangs);
        inTime = WaitForSingleObject(through, 10000) == WAIT_OBJECT_0;
        DestroyWindow(hung);
    });
    WaitForSingleObject(hangs, INFINITE);
    s_Power.clear();
    for (const WORD code : {PLUGIN_COMMAND_POWER_OFF, PLUGIN_COMMAND_POWER_ON}) {
        EXPECT_EQ(Command(code), 1);
        ExpectReply(2, result);
        SetEvent(through);
    }
    other.join();
    EXPECT_TRUE(inTime) << "the host waits for nobody's window";
    CloseHandle(hangs);
    CloseHandle(through);
    const std::vector<std::pair<WPARAM, LPARAM>> expected = {{SC_MONITORPOWER, 2}, {SC_MONITORPOWER, -1}};
    EXPECT_EQ(s_Power, expected);
    host.DropWindow(window);
}

// A freed block is none of the heap's any more. Under the heap checks, which keep it for a while, it is filled.
static bool IsReleased(const HOSTDATA *block)
{
    constexpr DWORD filling = 0xFEEEFEEE;
    return !HeapValidate(GetProcessHeap(), 0, block) || block->dwSize == filling;
}

TEST_F(HostCommandTest, ShutDown)
{
    const struct {
        std::vector<BOOL> results;
        size_t tries;
        DWORD endFlag;
    } cases[] = {{{TRUE}, 1, 0}, {{FALSE, TRUE}, 2, 0}, {{FALSE, FALSE, TRUE}, 3, 0}, {{FALSE, FALSE, FALSE}, 3, 1}};
    for (const auto &c : cases) {
        PutLauncher("EndFlag", 1);
        SetExitWindowsResults(c.results);
        HOSTDATA *data = MakeDataBlock(PLUGIN_COMMAND_SHUT_DOWN, nullptr, 0, requestID);
        HOSTPACKET packet = Packet(data);
        ASSERT_TRUE(HeapValidate(GetProcessHeap(), 0, data));
        EXPECT_EQ(CallSlot(PLUGIN_SLOT_COMMAND, &packet), 1);
        EXPECT_TRUE(IsReleased(data)) << "by the plug-in";
        EXPECT_EQ(TakeRecordedCalls().size(), c.tries);
        EXPECT_EQ(LauncherValue("EndFlag"), c.endFlag);
    }
    ExpectNoReply();
}

TEST_F(HostCommandTest, DisplayPolicy)
{
    const char path[] = "SOFTWARE\\MICROSOFT\\WINDOWS\\CURRENTVERSION\\POLICIES\\System";
    const struct {
        DWORD type; // of the stored value; REG_NONE: none is stored
        const char *stored, *request, *after;
        int result;
    } cases[] = {
        {REG_DWORD, "01000000", "01000000", "00000000", 1}, {REG_DWORD, "01000000", "00000000", "01000000", -1},
        {REG_DWORD, "01000000", "02000000", "01000000", 0}, {REG_DWORD, "00000000", "01000000", "00000000", -1},
        {REG_DWORD, "00000000", "00000000", "01000000", 0}, {REG_DWORD, "00000000", "FFFFFFFF", "01000000", 0},
        {REG_DWORD, "05000000", "01000000", "00000000", 1}, {REG_DWORD, "05000000", "00000000", "01000000", 0},
        {REG_NONE, "", "01000000", "00000000", 1},          {REG_NONE, "", "00000000", "01000000", 0},
        {REG_SZ, "00000000", "01000000", "00000000", 1},    {REG_NONE, "", "02000000", "01000000", 0},
    };
    HKEY key;
    RegCreateKeyA(HKEY_CURRENT_USER, path, &key);
    for (const auto &c : cases) {
        SCOPED_TRACE(c.stored + std::string(" ") + c.request);
        const auto expectStored = [&](const char *hex) {
            const Bytes bytes = Hex(hex);
            EXPECT_EQ(BytesAt(HKEY_CURRENT_USER, path, "NoDispCPL"), std::string(bytes.begin(), bytes.end()));
        };
        const Bytes stored = Hex(c.stored), request = Hex(c.request);
        for (const bool direct : {false, true}) {
            RegDeleteValueA(key, "NoDispCPL");
            if (c.type != REG_NONE)
                RegSetValueExA(key, "NoDispCPL", 0, c.type, stored.data(), static_cast<DWORD>(stored.size()));
            if (direct) {
                HOSTDATA *data = MakeDataBlock(131, request.data(), 4, requestID);
                const HOSTPACKET packet = Packet(data);
                EXPECT_EQ(SetDisplayCplPolicy(&packet), c.result);
                FreeDataBlock(data);
            } else {
                EXPECT_EQ(Command(131, request), 1);
                ExpectReply(2, Hex(c.result == -1 ? "0000" : "0100"));
            }
            expectStored(c.after);
        }
    }
    HOSTDATA data = {sizeof data, requestID, 131}; // without its word
    const HOSTPACKET packet = Packet(&data);
    EXPECT_EQ(SetDisplayCplPolicy(&packet), 1);
    RegCloseKey(key);
}

TEST_F(HostCommandTest, Identity)
{
    Bytes netSpec(27, 0x77);
    const auto expectRecord = [&](const std::string &user, const std::string &group, bool net) {
        Bytes record(140);
        memcpy(record.data(), user.data(), user.size());
        memcpy(&record[64], group.data(), group.size());
        memset(&record[128], net ? 0x77 : 0, 10);
        EXPECT_EQ(Command(128), 1);
        ExpectReply(128, record);
        EXPECT_EQ(CallSlot(PLUGIN_SLOT_SEND_IDENTITY, reinterpret_cast<void *>(1)), 1);
        ExpectReply(128, record, 0, {0xFFFF, 4, 1}, 16, 1);
    };
    expectRecord("", "", false);
    // A stored name fills its buffer with what stood behind it; the record carries the name alone.
    PutValue(HKEY_CURRENT_USER, "Lumivane2", "LocalUserName", REG_SZ, "somebody\0behind", 15);
    PutText(HKEY_LOCAL_MACHINE, "Lumivane2", "LocalGroupName", "office.example");
    PutValue(HKEY_CURRENT_USER, "Settings", "MyNetSpec", REG_BINARY, netSpec.data(), 26);
    expectRecord("somebody", "office.example", true);
    // Values that are too long or of another type count as absent.
    PutText(HKEY_CURRENT_USER, "Lumivane2", "LocalUserName", std::string(64, 'x'));
    PutText(HKEY_CURRENT_USER, "Lumivane2", "LocalGroupName", std::string(63, 'y'));
    PutValue(HKEY_CURRENT_USER, "Settings", "MyNetSpec", REG_SZ, netSpec.data(), 26);
    expectRecord("", std::string(63, 'y'), false);
    PutValue(HKEY_CURRENT_USER, "Settings", "MyNetSpec", REG_BINARY, netSpec.data(), 27);
    expectRecord("", std::string(63, 'y'), false);
}

TEST_F(HostCommandTest, WithoutMemoryThereIsNoReply)
{
    BoxAnswerer answerer("Error", IDOK);
    for (const WORD code : {PLUGIN_COMMAND_IDENTITY, PLUGIN_COMMAND_MONITOR_COUNT, PLUGIN_COMMAND_ALLOW_NAME_CHANGE})
        for (const int nth : {1, 2}) { // the block of the reply, then its header
            InjectFault(Fault::Memory, nth);
            EXPECT_EQ(Command(code), 1);
        }
    InjectFault(Fault::Memory);
    EXPECT_EQ(CallSlot(PLUGIN_SLOT_SEND_IDENTITY, nullptr), 0);
    ExpectNoReply();
    EXPECT_EQ(answerer.Boxes(), Lines{"- OK: Memory Set Error"}) << "for the identity, without its header";
}

TEST_F(HostCommandTest, AHostThatAnswersFromAnotherThread)
{
    host.plan = [](const TestRequest &) { return Answer{Answer::Later, 5}; };
    EXPECT_EQ(Command(20, Hex("00000000 28000000 10 000000")), 1);
    ExpectReply(20, Hex("64000000 28000000 10 000000"));
}
