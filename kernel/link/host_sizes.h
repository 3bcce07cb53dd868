// Sizes in bytes of what the host answers about a monitor, and how many inputs it is told of: for the layouts of the
// link, and for all that makes or checks such texts. Free of Windows.
#pragma once

#include <cstdint>

constexpr uint32_t HOST_NAME_SIZE = 12;          // padded with zeros
constexpr uint32_t HOST_CAPABILITIES_SIZE = 512; // the same
constexpr uint32_t HOST_EDID_SIZE = 128;         // the base block
constexpr uint32_t HOST_INPUT_COUNT = 16;        // flags, one per input source value
