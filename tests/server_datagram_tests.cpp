// Reading and forming the messages of the server link, at the very ends of their buffers.
#include "server/server_datagram.h"

#include "support/guarded_bytes.h"

#include <gtest/gtest.h>

using namespace std::string_literals;

TEST(ServerDatagram, CommandsAreReadFromTheirBytes)
{
    const std::string bytes("\x0A\x01\xA8\xC0\x05\x00\x00\x0A????\x78\x56\x34\x12\x02\xE0", 18);
    for (size_t length = 0; length <= bytes.size(); ++length) {
        const GuardedBytes input(bytes.substr(0, length));
        SERVERCMD command = {};
        ASSERT_EQ(ParseServerCommand(&command, input.data, length), length == 18) << length;
        EXPECT_EQ(command.bCommand, length == 18 ? 2 : 0);
        if (length < 18)
            continue;
        EXPECT_EQ(command.dwServerAddr, 0xC0A8010Au);
        EXPECT_EQ(command.dwTargetAddr, 0x0A000005u);
        EXPECT_EQ(command.dwValue, 0x12345678u);
        EXPECT_EQ(command.bVcpCode, 0xE0);
        EXPECT_TRUE(IsForClient(&command, 0x0A000005));
        EXPECT_FALSE(IsForClient(&command, 0x0A000006));
        EXPECT_FALSE(IsForClient(&command, 0)) << "an address that could not be looked up is nobody's";
        command.dwTargetAddr = 0;
        EXPECT_TRUE(IsForClient(&command, 0x0A000006));
    }
}

TEST(ServerDatagram, RepliesNeverOutgrowTheirBuffer)
{
    SERVERREPLY head = {0x04030201, 0x08070605, 0, 3, 255, 0, 0};
    char buffer[24];
    ASSERT_EQ(BuildServerReply(buffer, sizeof buffer, &head, "ab"), 23u);
    EXPECT_EQ(std::string(buffer, 23), "\1\2\3\4\5\6\7\x08\0\0\0\0\3\0\0\0\xFF\0\0\0ab\0"s);
    head.dwLength = 5;
    EXPECT_EQ(BuildServerReply(buffer, sizeof buffer, &head, "abcd"), 0u);
    head.dwLength = 0xFFFFFFFF;
    EXPECT_EQ(BuildServerReply(buffer, sizeof buffer, &head, "abcd"), 0u);
    head.dwLength = 0;
    EXPECT_EQ(BuildServerReply(buffer, sizeof buffer, &head, nullptr), 20u);
    EXPECT_EQ(BuildServerReply(buffer, 19, &head, nullptr), 0u);
}
