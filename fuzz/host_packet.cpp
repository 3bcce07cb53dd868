// A block of the host, as a reply (slot 2) and as a command (slot 16), with a size by its header that is true: the
// plug-in lives in the host's process and has no other measure.
#include "fuzz/fuzz.h"
#include "kernel/link/packet_check.h"

constexpr uint32_t LIMIT = 2000;

static uint32_t Word(const std::vector<uint8_t> &block, size_t offset)
{
    uint32_t word;
    memcpy(&word, block.data() + offset, sizeof word);
    return word;
}

static void CheckReply(const std::vector<uint8_t> &block, uint32_t payload, uint32_t room)
{
    const uint32_t size = static_cast<uint32_t>(block.size());
    HOSTREPLY reply = {LIMIT, nullptr, 0};
    if (!ReadReply(&reply, block.empty() ? nullptr : block.data(), size, payload, LIMIT)) {
        FUZZ_CHECK(reply.dwRequestID == LIMIT && !reply.lpPayload);
        return;
    }
    FUZZ_CHECK(Word(block, 0) == size && size >= PACKET_HEAD_SIZE + payload);
    FUZZ_CHECK(reply.dwRequestID == Word(block, 4) && reply.dwRequestID < LIMIT);
    FUZZ_CHECK(reply.lpPayload == block.data() + PACKET_HEAD_SIZE && reply.cbPayload == payload);

    std::vector<uint8_t> buffer(room + 1); // never empty, so that there is an address
    buffer[room] = 0xA5;
    const uint32_t copied = CopyReply(buffer.data(), room, &reply);
    FUZZ_CHECK(copied == (payload < room ? payload : room) && buffer[room] == 0xA5);
    FUZZ_CHECK(memcmp(buffer.data(), reply.lpPayload, copied) == 0);
}

static void CheckCommand(const std::vector<uint8_t> &block, uint32_t payload)
{
    const uint32_t size = static_cast<uint32_t>(block.size());
    if (!IsWholeBlock(block.data(), size))
        return;
    FUZZ_CHECK(Word(block, 0) == size);
    if (HoldsPayload(size, payload))
        FUZZ_CHECK(size >= PACKET_HEAD_SIZE && size - PACKET_HEAD_SIZE >= payload);
}

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const uint32_t payloads[] = {0, 4, 8, 12, 18, 128, 512, 0x7FFFFFFF, 0xFFFFFFF6, 0xFFFFFFFF};
    FuzzInput input(data, size);
    const uint32_t payload = payloads[input.Number<uint8_t>() % (sizeof payloads / sizeof payloads[0])];
    const uint32_t room = input.Number<uint16_t>() % 513U;
    const bool honest = input.Number<uint8_t>() & 1;
    std::vector<uint8_t> block = input.Rest();
    // Most sizes that a fuzzer makes up are wrong, so half of the blocks get the right one.
    if (honest && block.size() >= sizeof(uint32_t)) {
        const uint32_t right = static_cast<uint32_t>(block.size());
        memcpy(block.data(), &right, sizeof right);
    }
    CheckReply(block, payload, room);
    CheckCommand(block, payload);
    return 0;
}
