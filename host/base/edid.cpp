// The EDID base block of a monitor. Layout: VESA EDID 1.3, 128 bytes.
#include "host/base/edid.h"

#include <cstring>
#include <numeric>

#include "host/base/text.h"

static const BYTE s_header[8] = {0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00};

// Chromaticity of the sRGB primaries and of white D65, as bytes 25 to 34 hold it.
static const BYTE s_srgb[10] = {0xEE, 0x91, 0xA3, 0x54, 0x4C, 0x99, 0x26, 0x0F, 0x50, 0x54};

// 1280 x 1024 at 60 Hz (pixel clock 108 MHz), without the image size in bytes 12 to 14.
static const BYTE s_timing[18] = {0x30, 0x2A, 0x00, 0x98, 0x51, 0x00, 0x2A, 0x40, 0x30,
                                  0x70, 0x13, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x1E};

// 56 to 76 Hz, 30 to 82 kHz, up to 140 MHz, no secondary timing formula.
static const BYTE s_limits[18] = {0x00, 0x00, 0x00, 0xFD, 0x00, 0x38, 0x4C, 0x1E, 0x52,
                                  0x0E, 0x00, 0x0A, 0x20, 0x20, 0x20, 0x20, 0x20, 0x20};

// A text descriptor: the text, a line feed when it is shorter than 13 characters, blanks to the end.
static void WriteTextDescriptor(BYTE *descriptor, BYTE tag, const std::string &text)
{
    const size_t length = text.size() < 13 ? text.size() : 13;
    memset(descriptor, 0, 5);
    descriptor[3] = tag;
    memset(descriptor + 5, ' ', 13);
    memcpy(descriptor + 5, text.data(), length);
    if (length < 13)
        descriptor[5 + length] = '\n';
}

static void WriteTiming(BYTE *descriptor, const EDIDFACTS &facts)
{
    const unsigned width = facts.widthCm * 10, height = facts.heightCm * 10;
    memcpy(descriptor, s_timing, sizeof s_timing);
    descriptor[12] = static_cast<BYTE>(width);
    descriptor[13] = static_cast<BYTE>(height);
    descriptor[14] = static_cast<BYTE>((width >> 8) << 4 | height >> 8);
}

EDIDBLOCK MakeEdid(const EDIDFACTS &facts)
{
    EDIDBLOCK block = {};
    memcpy(block.data(), s_header, sizeof s_header);
    // The maker's three letters are five bits each, the first letter highest, in big-endian order.
    unsigned maker = 0;
    for (const char letter : facts.maker)
        maker = maker << 5 | static_cast<unsigned>(letter - 'A' + 1);
    block[8] = static_cast<BYTE>(maker >> 8);
    block[9] = static_cast<BYTE>(maker);
    block[10] = static_cast<BYTE>(facts.product);
    block[11] = static_cast<BYTE>(facts.product >> 8);
    memcpy(&block[12], &facts.serial, 4);
    block[16] = 1;
    block[17] = static_cast<BYTE>(facts.year - 1990);
    block[18] = 1;
    block[19] = 3;
    block[20] = 0x80; // digital input
    block[21] = static_cast<BYTE>(facts.widthCm);
    block[22] = static_cast<BYTE>(facts.heightCm);
    block[23] = 120;  // gamma 2.2
    block[24] = 0xEE; // power saving, RGB, sRGB, preferred timing first
    memcpy(&block[25], s_srgb, sizeof s_srgb);
    block[35] = 0x21;             // 640 x 480 and 800 x 600 at 60 Hz
    block[36] = 0x08;             // 1024 x 768 at 60 Hz
    memset(&block[38], 0x01, 16); // no standard timings
    WriteTiming(&block[54], facts);
    WriteTextDescriptor(&block[72], 0xFF, Format("%u", facts.serial));
    memcpy(&block[90], s_limits, sizeof s_limits);
    WriteTextDescriptor(&block[108], 0xFC, facts.name);
    block[127] = static_cast<BYTE>(0x100 - EdidSum(block));
    return block;
}

BYTE EdidSum(const EDIDBLOCK &block)
{
    return static_cast<BYTE>(std::accumulate(block.begin(), block.end(), 0u));
}

const char *ReadEdidHex(std::string_view text, EDIDBLOCK *block)
{
    EDIDBLOCK bytes = {};
    std::string digits;
    for (const std::string &word : SplitWords(text))
        digits += word;
    if (digits.size() != 2 * bytes.size())
        return "an EDID block is 128 bytes, written as 256 hexadecimal digits";
    for (size_t i = 0; i < bytes.size(); i++) {
        unsigned value = 0;
        if (!ParseNumber(std::string_view(digits).substr(2 * i, 2), 16, 0xFF, &value))
            return "an EDID block is written in hexadecimal digits";
        bytes[i] = static_cast<BYTE>(value);
    }
    if (const char *fault = EdidFault(bytes))
        return fault;
    *block = bytes;
    return nullptr;
}

// ---- What a block says ----------------------------------------------------------------------------------------------

constexpr size_t DESCRIPTOR_FIRST = 54, DESCRIPTOR_SIZE = 18, DESCRIPTOR_END = 126;
constexpr BYTE TAG_NAME = 0xFC, TAG_TEXT = 0xFE, TAG_SERIAL = 0xFF;

const char *EdidFault(const EDIDBLOCK &block)
{
    if (memcmp(block.data(), s_header, sizeof s_header) != 0)
        return "an EDID block begins with 00 FF FF FF FF FF FF 00";
    return EdidSum(block) != 0 ? "the EDID block's checksum is wrong" : nullptr;
}

// Whether a text descriptor of this kind begins at `at`; a timing there has a pixel clock in its first two bytes.
static bool IsTextDescriptor(const EDIDBLOCK &block, size_t at, BYTE tag)
{
    return block[at] == 0 && block[at + 1] == 0 && block[at + 2] == 0 && block[at + 3] == tag;
}

// The text ends at a line feed, and is printable ASCII; anything else in it is left out.
static std::string DescriptorText(const EDIDBLOCK &block, BYTE tag)
{
    for (size_t at = DESCRIPTOR_FIRST; at < DESCRIPTOR_END; at += DESCRIPTOR_SIZE) {
        if (!IsTextDescriptor(block, at, tag))
            continue;
        std::string text;
        for (size_t i = at + 5; i < at + DESCRIPTOR_SIZE && block[i] != '\n'; i++)
            if (block[i] >= ' ' && block[i] <= '~')
                text += static_cast<char>(block[i]);
        return std::string(Trim(text));
    }
    return {};
}

EDIDFACTS ReadEdidFacts(const EDIDBLOCK &block)
{
    EDIDFACTS facts = {};
    const unsigned maker = static_cast<unsigned>(block[8] << 8 | block[9]);
    for (int shift = 10; shift >= 0; shift -= 5) {
        const unsigned letter = maker >> shift & 31;
        facts.maker += letter >= 1 && letter <= 26 ? static_cast<char>('A' + letter - 1) : '?';
    }
    facts.product = static_cast<unsigned>(block[10] | block[11] << 8);
    memcpy(&facts.serial, &block[12], 4);
    facts.year = 1990u + block[17];
    facts.widthCm = block[21];
    facts.heightCm = block[22];
    facts.name = DescriptorText(block, TAG_NAME);
    return facts;
}

std::string EdidSerialText(const EDIDBLOCK &block)
{
    return DescriptorText(block, TAG_SERIAL);
}

std::string EdidProduct(const EDIDBLOCK &block)
{
    const EDIDFACTS facts = ReadEdidFacts(block);
    return facts.maker + Format("%04X", facts.product);
}

// FNV-1a of 64 bits over the whole block.
std::string EdidKey(const EDIDBLOCK &block)
{
    unsigned long long hash = 0xCBF29CE484222325ull;
    for (const BYTE byte : block)
        hash = (hash ^ byte) * 0x100000001B3ull;
    return EdidProduct(block) + Format("-%016llX", hash);
}

EDIDBLOCK BlankEdidSerial(const EDIDBLOCK &block)
{
    EDIDBLOCK blank = block;
    memset(&blank[12], 0, 4);
    blank[16] = 0;
    for (size_t at = DESCRIPTOR_FIRST; at < DESCRIPTOR_END; at += DESCRIPTOR_SIZE)
        if (IsTextDescriptor(block, at, TAG_SERIAL) || IsTextDescriptor(block, at, TAG_TEXT))
            memset(&blank[at + 5], ' ', DESCRIPTOR_SIZE - 5);
    blank[127] = static_cast<BYTE>(blank[127] - EdidSum(blank));
    return blank;
}
