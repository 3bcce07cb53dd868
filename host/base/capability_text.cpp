// What a DDC/CI capability string says, read by its grammar.
#include "host/base/capability_text.h"

#include <algorithm>
#include <initializer_list>

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

// Whether a text ends with a name, without regard to case.
static bool EndsWith(std::string_view text, std::string_view name)
{
    return text.size() >= name.size() && EqualNoCase(text.substr(text.size() - name.size()), name);
}

// Some makers put a blank before the parenthesis.
std::string CapabilityItem(std::string_view capabilities, std::string_view name)
{
    for (size_t open = capabilities.find('('); open != std::string_view::npos; open = capabilities.find('(', open + 1))
        if (EndsWith(Trim(capabilities.substr(0, open)), name))
            return std::string(Inside(capabilities, open + 1));
    return {};
}

// Between "type(lcd)" and the name of the item that follows.
static std::string_view BareModel(std::string_view capabilities)
{
    for (size_t open = capabilities.find('('); open != std::string_view::npos;
         open = capabilities.find('(', open + 1)) {
        if (!EndsWith(Trim(capabilities.substr(0, open)), "type"))
            continue;
        std::string_view rest = capabilities.substr(open + 1);
        rest = rest.substr(std::min(Inside(rest, 0).size() + 1, rest.size()));
        rest = Trim(rest.substr(0, rest.find('(')));
        for (const std::string_view next : {"cmds", "vcp"})
            if (EndsWith(rest, next))
                return Trim(rest.substr(0, rest.size() - next.size()));
    }
    return {};
}

std::string CapabilityModel(std::string_view capabilities)
{
    const std::string model(Trim(CapabilityItem(capabilities, "model")));
    return model.empty() ? std::string(BareModel(capabilities)) : model;
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
