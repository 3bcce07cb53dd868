// The server's answer to the request for all settings, read into a record.
#include "fuzz/fuzz.h"
#include "server/server_datagram.h"

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzInput input(data, size);
    SERVERCOLORS before;
    const std::vector<uint8_t> current = input.Bytes(sizeof before);
    memset(&before, 0xA5, sizeof before);
    if (!current.empty())
        memcpy(&before, current.data(), current.size());
    const std::vector<uint8_t> answer = input.Bytes(SERVER_ANSWER_SIZE);

    // Between two guards: neither is touched.
    struct {
        uint64_t front;
        SERVERCOLORS colors;
        uint64_t behind;
    } record = {0x1122334455667788, before, 0x8877665544332211};
    const void *bytesSent = answer.empty() ? "" : static_cast<const void *>(answer.data());
    const size_t filled = ReadServerColors(&record.colors, bytesSent, answer.size());
    FUZZ_CHECK(filled <= answer.size() && (filled == answer.size() || filled == sizeof before));
    FUZZ_CHECK(record.front == 0x1122334455667788 && record.behind == 0x8877665544332211);

    // Byte by byte either the answer's or, behind its end, what was there.
    uint8_t bytes[sizeof before], old[sizeof before];
    memcpy(bytes, &record.colors, sizeof bytes);
    memcpy(old, &before, sizeof old);
    for (size_t i = 0; i < sizeof bytes; ++i)
        FUZZ_CHECK(bytes[i] == (i < answer.size() ? answer[i] : old[i]));
    return 0;
}
