// What a DDC/CI capability string says, read by its grammar: nested parentheses, with or without blanks between codes.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

struct CAPABILITYCODE {
    BYTE code;
    bool hasValues;           // a list of values stood behind the code
    std::vector<BYTE> values; // in their order
};

// The text of an item, as "2.1" of "mccs_ver(2.1)"; empty when the string has none. The name is compared without case.
std::string CapabilityItem(std::string_view capabilities, std::string_view name);

// The model: of "model(27MU68)", or of "type(lcd)27mu68cmds(", as some makers write it; empty without one.
std::string CapabilityModel(std::string_view capabilities);

// The codes of the item vcp(...), in their order. What is not hexadecimal is skipped; a list that is never closed ends
// with the string.
std::vector<CAPABILITYCODE> CapabilityCodes(std::string_view capabilities);

// The entry of one code; null when it is not listed.
const CAPABILITYCODE *FindCapabilityCode(const std::vector<CAPABILITYCODE> &codes, BYTE code);
