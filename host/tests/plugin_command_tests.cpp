// Commands of the host: what is sent for a line of words, which reply counts, and how it reads.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "host/base/text.h"
#include "host/plugin_command.h"
#include "host/tests/support/fake_plugin.h"

// The block that the plug-in was given, and the reply that it sends from within the slot, as it really does.
struct SCRIPTEDREPLY {
    WORD code;
    std::vector<BYTE> payload;
    int requestOffset;         // 0: the command's own request number
    bool countsBlock;          // the block's size in place of the request number
    std::vector<BYTE> overlay; // written over the command's payload
    bool sends;
};

class PluginCommand : public testing::Test {
protected:
    void SetUp() override
    {
        ResetFakePlugin();
        router.slots = g_FakePlugin.slots;
    }

    PLUGINANSWER Give(const std::string &line, const SCRIPTEDREPLY &script)
    {
        PLUGINCOMMAND command;
        std::string error;
        EXPECT_TRUE(ParsePluginCommand(line, &command, &error)) << error;
        g_FakePlugin.onCommand = [this, script](HOSTPACKET *header) {
            EXPECT_EQ(header->dwDataSize, header->lpData->dwSize);
            CopyPacket(header, &given);
            std::copy(script.overlay.begin(), script.overlay.end(), HostPayload(header->lpData));
            DWORD request = header->lpData->dwRequestID + static_cast<DWORD>(script.requestOffset);
            if (script.countsBlock)
                request = header->dwDataSize;
            PACKET reply = MakePacket(header->dst, header->src, header->wCommand, script.code, request, script.payload);
            reply.header.lpData = PacketData(&reply);
            if (script.sends)
                RouterTakeReply(&router, &reply.header);
            return 1;
        };
        PLUGINANSWER answer = SendPluginCommand(&router, command);
        text = DescribePluginAnswer(command, answer);
        wentWell = WentWell(command, answer);
        return answer;
    }

    ROUTER router = {};
    PACKET given;
    std::string text;
    bool wentWell = false;
};

static std::vector<BYTE> Bytes(std::initializer_list<int> values)
{
    std::vector<BYTE> bytes;
    for (const int value : values)
        bytes.push_back(static_cast<BYTE>(value));
    return bytes;
}

TEST_F(PluginCommand, SendsTheLayoutAndReadsTheReply)
{
    std::vector<BYTE> identity(140, 0);
    memcpy(identity.data(), "user", 4);
    memcpy(&identity[64], "a \"group\"", 9);
    identity[128] = 0xAB;
    const std::vector<BYTE> settings = Bytes({0, 0, 0, 0, 0, 0, 80, 0, 50, 0, 1, 0, 2, 0, 255, 255, 5, 0});
    const struct {
        const char *line;
        WORD code;
        std::vector<BYTE> payload;
        SCRIPTEDREPLY reply;
        const char *text;
    } cases[] = {
        {"get-settings",
         1,
         std::vector<BYTE>(sizeof(HOSTCOLORS), 0),
         {128, std::vector<BYTE>(140, 0), 0, false, settings, true},
         "eco 0, brightness 80, contrast 50, red 1, green 2, blue not read, preset 5"},
        {"set-settings eco=1 brighteco=200 preset=11",
         2,
         Bytes({1, 0, 0, 0, 200, 0, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 11, 0}),
         {2, Bytes({0, 0}), 0, false, {}, true},
         "result 0"},
        {"get-vcp 12",
         19,
         Bytes({0, 0, 0, 0, 0, 0, 0, 0, 0x12, 0, 0, 0}),
         {19, Bytes({100, 0, 0, 0, 50, 0, 0, 0, 0x12, 0, 0, 0}), 0, false, {}, true},
         "contrast (0x12): 50 of 100"},
        {"set-vcp 10 300",
         20,
         Bytes({0, 0, 0, 0, 0x2C, 1, 0, 0, 0x10, 0, 0, 0}),
         {20, Bytes({255, 255, 255, 255, 255, 255, 255, 255, 0x10, 0, 0, 0}), 0, false, {}, true},
         "brightness (0x10): cannot be read"},
        {"lock 7",
         20,
         Bytes({1, 0, 0, 0, 7, 0, 0, 0, 0xF2, 0, 0, 0}),
         {20, Bytes({1, 0, 0, 0, 7, 0, 0, 0, 0xF2, 0, 0, 0}), 0, false, {}, true},
         "button lock: done"},
        {"unlock 128",
         20,
         Bytes({0, 0, 0, 0, 128, 0, 0, 0, 0xF2, 0, 0, 0}),
         {20, {}, 0, false, {}, false},
         "no answer"},
        {"set-lock 255",
         20,
         Bytes({2, 0, 0, 0, 255, 0, 0, 0, 0xF2, 0, 0, 0}),
         {2, {}, 0, false, {}, true},
         "no answer"},
        {"count", 37, {}, {37, Bytes({2, 0, 0, 0}), 0, true, {}, true}, "2 monitors"},
        {"count", 37, {}, {37, Bytes({2, 0, 0, 0}), 1000, false, {}, true}, "no answer"},
        {"identity",
         128,
         {},
         {128, identity, 0, false, {}, true},
         "user \"user\", group \"a \\\"group\\\"\", network AB000000000000000000"},
        {"identity", 128, {}, {128, Bytes({1, 2}), 0, false, {}, true}, "the answer has a wrong size"},
        {"power-off", 32, {}, {2, Bytes({1, 0}), 0, false, {}, true}, "result 1"},
        {"power-on", 33, {}, {2, Bytes({1, 0}), 1, false, {}, true}, "no answer"},
        {"policy allow", 131, Bytes({1, 0, 0, 0}), {2, Bytes({0, 0}), 0, false, {}, true}, "result 0"},
        {"policy forbid", 131, Bytes({0, 0, 0, 0}), {2, Bytes({1, 0}), 0, false, {}, true}, "result 1"},
        {"allow-names", 130, {}, {2, Bytes({1, 0}), 0, false, {}, true}, "result 1"},
        {"nothing", 4, {}, {4, std::vector<BYTE>(256, 0), 0, false, {}, true}, "256 bytes"},
        {"ignore", 40, {}, {0, {}, 0, false, {}, false}, "sent; it has no answer"},
    };
    for (const auto &one : cases) {
        const PLUGINANSWER answer = Give(one.line, one.reply);
        EXPECT_EQ(PacketData(&given)->wCode, one.code) << one.line;
        EXPECT_EQ(std::vector<BYTE>(given.data.begin() + sizeof(HOSTDATA), given.data.end()), one.payload) << one.line;
        EXPECT_EQ(text, one.text) << one.line;
        EXPECT_EQ(wentWell, text != "no answer") << one.line;
    }
}

TEST_F(PluginCommand, RefusedOrLateRepliesAreToldApart)
{
    PLUGINCOMMAND command;
    std::string error;
    ASSERT_TRUE(ParsePluginCommand("count", &command, &error));
    g_FakePlugin.onCommand = [](HOSTPACKET *) { return 0; };
    EXPECT_EQ(DescribePluginAnswer(command, SendPluginCommand(&router, command)), "refused by the plug-in");

    // A reply that came when nobody had asked is not the next command's.
    PACKET stray = MakePacket({}, {}, 16, 37, 10, Bytes({9, 0, 0, 0}));
    stray.header.lpData = PacketData(&stray);
    EXPECT_EQ(RouterTakeReply(&router, &stray.header), 1);
    Give("count", {37, {}, 0, true, {}, false});
    EXPECT_EQ(text, "no answer");
}

TEST_F(PluginCommand, SendIdentityIsASlotOfItsOwn)
{
    PLUGINCOMMAND command;
    std::string error;
    ASSERT_TRUE(ParsePluginCommand("send-identity", &command, &error));
    g_FakePlugin.onSendIdentity = [this] {
        PACKET reply = MakePacket({2, 2, 1}, {0xFFFF, 4, 1}, 16, 128, 0, std::vector<BYTE>(140, 0));
        reply.header.lpData = PacketData(&reply);
        RouterTakeReply(&router, &reply.header);
        return 1;
    };
    const PLUGINANSWER answer = SendPluginCommand(&router, command);
    EXPECT_TRUE(WentWell(command, answer));
    EXPECT_EQ(answer.reply.header.dst.bClass, 4);
}

TEST_F(PluginCommand, ShutdownLeavesTheBlockToThePlugin)
{
    PLUGINCOMMAND command;
    std::string error;
    ASSERT_TRUE(ParsePluginCommand("shutdown-pc", &command, &error));
    BOOL freed = FALSE;
    g_FakePlugin.onCommand = [&](HOSTPACKET *header) {
        EXPECT_EQ(header->lpData->wCode, 39);
        freed = HeapFree(GetProcessHeap(), 0, header->lpData);
        return 1;
    };
    EXPECT_TRUE(WentWell(command, SendPluginCommand(&router, command)));
    EXPECT_TRUE(freed) << "it must come from the heap that the plug-in frees it to";
}

// The plug-in asks for a value while it works on a command, and waits for it: the answer must come meanwhile.
TEST_F(PluginCommand, RequestsAreAnsweredWhileACommandRuns)
{
    MONITORBACKEND backend = {};
    backend.count = [](void *) { return 5; };
    StartRouter(&router, g_FakePlugin.slots, backend);
    size_t answers = 0;
    g_FakePlugin.onCommand = [&](HOSTPACKET *) {
        PACKET request = MakePacket({2, 2, 1}, HostEndpoint(), HOST_GET_MONITOR_COUNT, 0, 1, {});
        request.header.lpData = PacketData(&request);
        RouterTakePacket(&router, &request.header);
        answers = WaitForReceived(1).size();
        return 1;
    };
    PLUGINCOMMAND command;
    std::string error;
    ASSERT_TRUE(ParsePluginCommand("count", &command, &error));
    SendPluginCommand(&router, command);
    StopRouter(&router);
    EXPECT_EQ(answers, 1u);
}

TEST(PluginCommandLine, WrongLinesAreRefusedWithAReason)
{
    for (const char *line : {"",
                             "   ",
                             "sing",
                             "count 1",
                             "get-vcp",
                             "get-vcp 100",
                             "get-vcp xy",
                             "set-vcp 10",
                             "set-vcp 10 65536",
                             "set-vcp 10 -1",
                             "set-vcp F2 1",
                             "lock",
                             "lock 256",
                             "policy",
                             "policy maybe",
                             "set-settings",
                             "set-settings bright",
                             "set-settings bright=x",
                             "set-settings red=1",
                             "shutdown"}) {
        PLUGINCOMMAND command;
        std::string error;
        EXPECT_FALSE(ParsePluginCommand(line, &command, &error)) << line;
        EXPECT_FALSE(error.empty()) << line;
    }
}
