// Which EDIDs are repaired. Free of Windows, so that it can be compiled and fuzzed anywhere. Any thread.
#pragma once

#include <cstdint>

constexpr uint32_t EDID_SIZE = 128;        // the base block
constexpr uint32_t EDID_BUFFER_SIZE = 256; // the rest stays zero, which ends every search for a text in the block
constexpr uint32_t EDID_HEADER_SIZE = 8;

extern const uint8_t g_EdidHeader[EDID_HEADER_SIZE]; // what every EDID begins with

bool HasEdidHeader(const uint8_t *lpEdid);

// Whether an EDID is one to be repaired: of a listed model, with a broken header.
// lpEdid: EDID_BUFFER_SIZE bytes, zero from EDID_SIZE on.
bool NeedsEdidRepair(const uint8_t *lpEdid);
