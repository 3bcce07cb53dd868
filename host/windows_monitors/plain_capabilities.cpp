// Which capability string may be kept, and what the plug-in gets of it.
#include "host/windows_monitors/plain_capabilities.h"

#include <algorithm>
#include <array>

#include "host/base/capability_text.h"
#include "host/base/text.h"
#include "kernel/link/host_sizes.h"

constexpr BYTE COLOR_PRESET = 0x14, INPUT_SOURCE = 0x60;
constexpr BYTE VALUE_LIMIT = 16;    // the plug-in's tables of presets and inputs
constexpr size_t VERSION_LIMIT = 7; // characters that it keeps

const char *CapabilityFault(std::string_view raw)
{
    int depth = 0;
    for (const char c : raw) {
        if (c < ' ' || c > '~')
            return "it has bytes that are no text";
        depth += c == '(' ? 1 : c == ')' ? -1 : 0;
        if (depth < 0)
            break;
    }
    if (depth != 0)
        return "its parentheses do not match";
    return CapabilityCodes(raw).empty() ? "it lists no code" : nullptr;
}

// ---- The plain form -------------------------------------------------------------------------------------------------

struct LISTEDCODE {
    bool listed;
    std::array<bool, VALUE_LIMIT> values;
};

// A code that is listed twice has the values of both.
static std::array<LISTEDCODE, 256> ListedCodes(std::string_view raw)
{
    std::array<LISTEDCODE, 256> table = {};
    for (const CAPABILITYCODE &code : CapabilityCodes(raw)) {
        table[code.code].listed = true;
        for (const BYTE value : code.values)
            if (value < VALUE_LIMIT)
                table[code.code].values[value] = true;
    }
    return table;
}

static bool HasList(BYTE code)
{
    return code == COLOR_PRESET || code == INPUT_SOURCE;
}

// "14(05 08) " or "10 "
static std::string CodeText(BYTE code, const LISTEDCODE &listed)
{
    if (!HasList(code))
        return Format("%02X ", code);
    std::string values;
    for (BYTE value = 0; value < VALUE_LIMIT; value++)
        if (listed.values[value])
            values += Format(values.empty() ? "%02X" : " %02X", value);
    return Format("%02X(%s) ", code, values.c_str());
}

// Digits and points alone: anything else would end the item early, or never.
static std::string Version(std::string_view raw)
{
    const std::string item = CapabilityItem(raw, "mccs_ver");
    const std::string_view text = Trim(item);
    const std::string version(text.substr(0, std::min(text.find_first_not_of("0123456789."), VERSION_LIMIT)));
    return version.empty() ? "" : "mccs_ver(" + version + ")";
}

// The codes that the plug-in uses, and behind them all others.
static std::string CodeList(const std::array<LISTEDCODE, 256> &table, size_t room)
{
    static constexpr BYTE used[] = {0x10, 0x12, 0x14, 0x16, 0x18, 0x1A, 0x1E, 0x60, 0xE0, 0xE8, 0xF0, 0xF2, 0xF4};
    std::string text;
    const auto add = [&](BYTE code) {
        const std::string entry = table[code].listed ? CodeText(code, table[code]) : "";
        if (text.size() + entry.size() <= room)
            text += entry;
    };
    for (const BYTE code : used)
        add(code);
    for (unsigned code = 0; code < table.size(); code++)
        if (std::find(std::begin(used), std::end(used), code) == std::end(used))
            add(static_cast<BYTE>(code));
    return std::string(Trim(text));
}

std::string PlainCapabilities(std::string_view raw)
{
    constexpr size_t frame = sizeof "(vcp())"; // with the terminator
    const std::array<LISTEDCODE, 256> table = ListedCodes(raw);
    const bool any = std::any_of(table.begin(), table.end(), [](const LISTEDCODE &code) { return code.listed; });
    std::string text = "(" + Version(raw);
    if (any)
        text += "vcp(" + CodeList(table, HOST_CAPABILITIES_SIZE - frame - text.size()) + ")";
    return text + ")";
}
