// What the management server sends by UDP, and the messages that it gets.
#include "server/server_datagram.h"
#include "fuzz/fuzz.h"

static void CheckCommand(const std::vector<uint8_t> &datagram)
{
    SERVERCMD command;
    memset(&command, 0xA5, sizeof command);
    const SERVERCMD before = command;
    if (!ParseServerCommand(&command, datagram.data(), datagram.size())) {
        FUZZ_CHECK(datagram.size() < SERVER_COMMAND_LENGTH && memcmp(&command, &before, sizeof command) == 0);
        return;
    }
    FUZZ_CHECK(memcmp(&command, datagram.data(), SERVER_COMMAND_LENGTH) == 0 && command.wReserved == 0);
    FUZZ_CHECK(IsForClient(&command, command.dwTargetAddr));
    FUZZ_CHECK(IsForClient(&command, ~command.dwTargetAddr) == (command.dwTargetAddr == 0));
}

static void CheckMessage(const std::vector<uint8_t> &datagram, size_t room)
{
    std::vector<char> text(room, 'x');
    ParseServerMessage(text.data(), text.size(), datagram.data(), datagram.size());
    FUZZ_CHECK(memchr(text.data(), '\0', text.size()));
    const size_t length = strlen(text.data());
    FUZZ_CHECK(length == 0 || SERVER_MESSAGE_OFFSET + length <= datagram.size());
    for (size_t i = length + 1; i < text.size(); ++i)
        FUZZ_CHECK(text[i] == 'x');
}

static void CheckReply(const std::vector<uint8_t> &data, uint32_t length, size_t room)
{
    SERVERREPLY header = {};
    header.dwLength = length;
    std::vector<uint8_t> buffer(room);
    // Never more than there is to send, as the callers promise.
    const void *payload = length > 0 && length <= data.size() ? data.data() : nullptr;
    const size_t sent = BuildServerReply(buffer.data(), buffer.size(), &header, payload);
    FUZZ_CHECK(sent <= room && (sent == 0 || sent == sizeof header + (payload ? length : 0)));
    if (sent > sizeof header)
        FUZZ_CHECK(memcmp(buffer.data() + sizeof header, payload, length) == 0);
    if (sent == 0)
        for (const uint8_t byte : buffer)
            FUZZ_CHECK(byte == 0);
}

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzInput input(data, size);
    const size_t messageRoom = 1 + input.Below(256);
    const size_t replyRoom = input.Below(300);
    const uint32_t length = input.Number<uint16_t>() % 300U;
    const std::vector<uint8_t> datagram = input.Rest();
    CheckCommand(datagram);
    CheckMessage(datagram, messageRoom);
    CheckReply(datagram, length, replyRoom);
    return 0;
}
