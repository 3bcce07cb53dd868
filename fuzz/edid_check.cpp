// An EDID as the host gives it, in the buffer whose tail is zero.
#include "fuzz/fuzz.h"
#include "monitor/edid_header.h"

static bool Contains(const uint8_t *edid, const char *model)
{
    const size_t length = strlen(model);
    for (size_t offset = 0; offset + length <= EDID_SIZE; ++offset)
        if (memcmp(edid + offset, model, length) == 0)
            return true;
    return false;
}

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    // A block of its own size: a search that does not end at the zeros leaves it.
    std::vector<uint8_t> edid(EDID_BUFFER_SIZE);
    if (size > 0)
        memcpy(edid.data(), data, size < EDID_SIZE ? size : EDID_SIZE);
    const std::vector<uint8_t> before = edid;

    const bool needed = NeedsEdidRepair(edid.data());
    FUZZ_CHECK(edid == before);
    if (needed) {
        FUZZ_CHECK(!HasEdidHeader(edid.data()));
        FUZZ_CHECK(Contains(edid.data(), "NRV-PA") || Contains(edid.data(), "NRV-PT"));
    }

    // Once repaired it is left alone.
    memcpy(edid.data(), g_EdidHeader, EDID_HEADER_SIZE);
    FUZZ_CHECK(!NeedsEdidRepair(edid.data()));
    // One wrong byte in the header of a listed model is enough.
    if (needed) {
        edid[size % EDID_HEADER_SIZE] ^= 0x10;
        FUZZ_CHECK(NeedsEdidRepair(edid.data()));
    }
    return 0;
}
