// What a DDC/CI capability string says, read by its grammar.
#include "host/base/capability_text.h"

#include "host/base/text.h"

// The inside of the parenthesis that opens before `at`, up to its closing one or the end of the text.
static std::string_view Inside(std::string_view text, size_t at)
{
    int depth = 1;
    for (size_t i = at; i < text.size(); i++) {
        depth += text[i] == '(' ? 1 : text[i] == ')' ? -1 : 0;
        if (depth == 0)
            return text.substr(at, i - at);
    }
    return text.substr(at);
}

std::string CapabilityItem(std::string_view capabilities, std::string_view name)
{
    for (size_t open = capabilities.find('('); open != std::string_view::npos; open = capabilities.find('(', open + 1))
        if (open >= name.size() && EqualNoCase(capabilities.substr(open - name.size(), name.size()), name))
            return std::string(Inside(capabilities, open + 1));
    return {};
}

static bool ReadHexPair(std::string_view text, size_t at, BYTE *value)
{
    unsigned number = 0;
    if (at + 2 > text.size() || !ParseNumber(text.substr(at, 2), 16, 0xFF, &number))
        return false;
    *value = static_cast<BYTE>(number);
    return true;
}

std::vector<CAPABILITYCODE> CapabilityCodes(std::string_view capabilities)
{
    const std::string list = CapabilityItem(capabilities, "vcp");
    std::vector<CAPABILITYCODE> codes;
    int depth = 0;
    for (size_t i = 0; i < list.size(); i++) {
        BYTE value = 0;
        if (list[i] == '(') {
            depth++;
            if (depth == 1 && !codes.empty())
                codes.back().hasValues = true;
        } else if (list[i] == ')') {
            depth--;
        } else if (ReadHexPair(list, i, &value)) {
            if (depth == 0)
                codes.push_back({value, false, {}});
            else if (depth == 1 && !codes.empty())
                codes.back().values.push_back(value);
            i++;
        }
    }
    return codes;
}

const CAPABILITYCODE *FindCapabilityCode(const std::vector<CAPABILITYCODE> &codes, BYTE code)
{
    for (const CAPABILITYCODE &entry : codes)
        if (entry.code == code)
            return &entry;
    return nullptr;
}
