// The EDID base block of a monitor: made from a few facts, read from hexadecimal digits, and what a block says.
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
    unsigned widthCm, heightCm; // 1 to 255; 0 in a block that does not say
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

// Why a block cannot be trusted: the fixed first eight bytes or the checksum is wrong. Null when it can.
const char *EdidFault(const EDIDBLOCK &block);

// What a good block says. A name without a descriptor is empty.
EDIDFACTS ReadEdidFacts(const EDIDBLOCK &block);

// The serial number in words, which need not be the one in the facts; empty when the block has none.
std::string EdidSerialText(const EDIDBLOCK &block);

// Maker and product, such as ABC1234.
std::string EdidProduct(const EDIDBLOCK &block);

// Maker, product, and 16 digits that another block has not: what a monitor is known by in files.
std::string EdidKey(const EDIDBLOCK &block);

// The block without what may tell one monitor from another of its model: serial number, descriptors of it and of free
// text, week of manufacture. The checksum is right again.
EDIDBLOCK BlankEdidSerial(const EDIDBLOCK &block);
