// A capability string as a monitor sends it.
#include "fuzz/fuzz.h"
#include "monitor/capabilities.h"

static bool AreFlags(const uint32_t *flags, size_t count)
{
    for (size_t i = 0; i < count; ++i)
        if (flags[i] > 1)
            return false;
    return true;
}

// In the text, upper case may have become lower case and a closing parenthesis a blank; nothing else changes.
static bool IsAllowedChange(char before, char after)
{
    const bool upper = before >= 'A' && before <= 'Z';
    return after == (upper ? before - 'A' + 'a' : before) || (before == ')' && after == ' ');
}

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const std::vector<char> original(data, data + size);
    std::vector<char> text = original;
    MONITORENTRY entry = {};
    memset(entry.szModel, 'M', sizeof entry.szModel);
    const int complete = ParseCapabilityText(&entry, text.data(), text.size());

    FUZZ_CHECK(complete == 0 || complete == 1);
    FUZZ_CHECK(IsTerminated(entry.szMccsVer));
    FUZZ_CHECK(AreFlags(entry.bVcpCode, 256));
    FUZZ_CHECK(AreFlags(entry.bColorPreset, VCP_VALUE_COUNT) && AreFlags(entry.bInputSource, VCP_VALUE_COUNT));
    const bool tuner = entry.bInputSource[9] || entry.bInputSource[10] || entry.bInputSource[11];
    FUZZ_CHECK(entry.bTuner == (tuner ? 1U : 0U));
    for (const char c : entry.szModel)
        FUZZ_CHECK(c == 'M');
    for (const auto &name : entry.szInputName)
        FUZZ_CHECK(name[0] == '\0');
    for (size_t i = 0; i < text.size(); ++i)
        FUZZ_CHECK(IsAllowedChange(original[i], text[i]));

    // Flags are only ever set: a second string adds to the first.
    const MONITORENTRY first = entry;
    ParseCapabilityText(&entry, text.data(), text.size());
    for (int code = 0; code < 256; ++code)
        FUZZ_CHECK(entry.bVcpCode[code] >= first.bVcpCode[code]);
    return 0;
}
