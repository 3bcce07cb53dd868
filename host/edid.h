// The EDID base block of a monitor that is only described: made from a few facts, or read from hexadecimal digits.
#pragma once

#include <windows.h>

#include <array>
#include <string>
#include <string_view>

typedef std::array<BYTE, 128> EDIDBLOCK;

struct EDIDFACTS {
    std::string maker;          // three capital letters
    unsigned product;           // 16 bits
    unsigned serial;            // 32 bits
    unsigned year;              // 1990 to 2245
    unsigned widthCm, heightCm; // 1 to 255
    std::string name;           // up to 13 printable ASCII characters
};

// An EDID 1.3 block with the checksum right: 1280 x 1024 at 60 Hz as preferred timing, sRGB colours, and descriptors
// for serial number, range limits and, as the last one, the name. The facts must be within their ranges.
EDIDBLOCK MakeEdid(const EDIDFACTS &facts);

// The sum of all bytes, which is 0 in a good block.
BYTE EdidSum(const EDIDBLOCK &block);

// Reads hexadecimal digit pairs, blanks between them allowed. Returns null, or the reason why they are no EDID block:
// not 128 bytes, the fixed first eight bytes or the checksum wrong.
const char *ReadEdidHex(std::string_view text, EDIDBLOCK *block);
