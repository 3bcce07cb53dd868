// The plain form of a capability string, and what the plug-in reads in it.
#include "host/windows_monitors/plain_capabilities.h"

#include "fuzz/fuzz.h"
#include "host/base/capability_text.h"
#include "kernel/link/host_sizes.h"
#include "monitor/capabilities.h"

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const std::string raw(reinterpret_cast<const char *>(data), size);
    const bool isSound = !CapabilityFault(raw);
    CapabilityModel(raw);
    const std::vector<CAPABILITYCODE> codes = CapabilityCodes(raw);
    FUZZ_CHECK(!isSound || !codes.empty());

    const std::string plain = PlainCapabilities(raw);
    FUZZ_CHECK(plain.size() < HOST_CAPABILITIES_SIZE);
    FUZZ_CHECK(PlainCapabilities(plain) == plain);
    FUZZ_CHECK(codes.empty() || !CapabilityFault(plain));

    MONITORENTRY entry = {};
    std::vector<char> text(plain.begin(), plain.end());
    FUZZ_CHECK(ParseCapabilityText(&entry, text.data(), text.size()) == (codes.empty() ? 0 : 1));
    unsigned listed = 0, read = 0;
    bool isListed[256] = {};
    for (const CAPABILITYCODE &code : codes) {
        listed += !isListed[code.code];
        isListed[code.code] = true;
    }
    for (unsigned code = 0; code < 256; ++code) {
        read += entry.bVcpCode[code];
        FUZZ_CHECK(!entry.bVcpCode[code] || isListed[code]);
    }
    constexpr unsigned ROOM = 120; // codes for which there is room in any case
    FUZZ_CHECK(read == listed || listed > ROOM);
    for (const CAPABILITYCODE &code : codes)
        for (const uint8_t value : code.values)
            if (value < VCP_VALUE_COUNT)
                FUZZ_CHECK(code.code == 0x14   ? entry.bColorPreset[value] == 1
                           : code.code == 0x60 ? entry.bInputSource[value] == 1
                                               : true);
    return 0;
}
