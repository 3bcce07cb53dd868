// The text of a profile's section: the exact form, the look-up by substring, and texts made by hand or by malice.
#include "profiles/profile_file.h"

#include "support/guarded_bytes.h"

#include <gtest/gtest.h>

namespace {

// Joins lines (separated by '|' here) as they come from the file, with nothing readable behind the buffer, and parses.
PROFILEENTRY ParseLines(std::string lines, size_t size)
{
    for (char &c : lines)
        if (c == '|')
            c = '\0';
    lines.resize(size);
    const GuardedBytes text(lines);
    JoinSectionLines(text.data, size);
    PROFILEENTRY entry = {};
    ParseProfileText(&entry, text.data);
    return entry;
}

PROFILEENTRY ParseLines(const std::string &lines)
{
    return ParseLines(lines + "||", lines.size() + 2);
}

std::string Describe(const PROFILEENTRY &entry)
{
    std::string text = std::string(entry.szName) + "|" + entry.szAlias;
    for (const int32_t value : {entry.nEcoMode, entry.nContrast, entry.nBrightness, entry.nEcoBrightness,
                                entry.nColorTemp, entry.nRed, entry.nGreen, entry.nBlue})
        text += " " + std::to_string(value);
    return text;
}

} // namespace

TEST(ProfileFile, TextOfAnEntry)
{
    const PROFILEENTRY entry = {"", 1, 70, 0, 80, 11, -5, 2147483647, INT32_MIN, "C:\\a.exe", "A b"};
    char text[PROFILE_SECTION_TEXT_SIZE];
    const std::string expected = "name=C:\\a.exe\r\nalias=A b\r\necomode=1\r\ncontrast=70\r\nbrightness=0\r\n"
                                 "ecobrightness=80\r\ncolortemp=11\r\nred=-5\r\ngreen=2147483647\r\n"
                                 "blue=-2147483648\r\n";
    EXPECT_EQ(FormatProfileText(&entry, text), expected.size());
    EXPECT_EQ(std::string(text, expected.size() + 2), expected + std::string(2, '\0'));

    // The longest entry fits and keeps its terminators; a text without a zero of its own ends with its field.
    PROFILEENTRY longest = {"",        INT32_MIN, INT32_MIN, INT32_MIN, INT32_MIN, INT32_MIN,
                            INT32_MIN, INT32_MIN, INT32_MIN, "",        ""};
    memset(longest.szName, 'n', sizeof longest.szName);
    memset(longest.szAlias, 'a', sizeof longest.szAlias);
    const size_t length = FormatProfileText(&longest, text);
    ASSERT_LE(length + 2, sizeof text);
    EXPECT_EQ(std::string(text, length).find("alias=" + std::string(259, 'a') + "\r\n"), 5 + 259 + 2u);
    EXPECT_EQ(text[length + 1], '\0');
}

TEST(ProfileFile, KeysAreFoundBySubstringInTheFirstLine)
{
    const std::string rest = "|ecomode=1|contrast=2|brightness=3|ecobrightness=4|colortemp=5|red=6|green=7|blue=8";
    const struct {
        std::string lines;
        std::string result;
    } cases[] = {
        {"name=a|alias=b" + rest, "a|b 1 2 3 4 5 6 7 8"},
        {"", "| -1 -1 -1 -1 -1 -1 -1 -1"},
        {"name=a|red=9", "a| -1 -1 -1 -1 -1 9 -1 -1"},
        {"name=a||red=9", "a| -1 -1 -1 -1 -1 -1 -1 -1"},       // what lies behind the end does not belong to it
        {"Name=a|ALIAS=b|Red=9", "| -1 -1 -1 -1 -1 -1 -1 -1"}, // in their own letter case only
        // Another order: "brightness" is found in the line of "ecobrightness" when that comes first.
        {"blue=8|ecobrightness=4|brightness=3|alias=b|name=a", "a|b -1 -1 4 4 -1 -1 -1 8"},
        // A path that contains a key: the value is what follows one character later in the path.
        {"name=C:\\Shared\\12.exe|alias=b" + rest, "C:\\Shared\\12.exe|b 1 2 3 4 5 12 7 8"},
        {"name=C:\\Shared\\x.exe|alias=b" + rest, "C:\\Shared\\x.exe|b 1 2 3 4 5 -1 7 8"},
        {"name=C:\\alias\\x.exe|alias=b" + rest, "C:\\alias\\x.exe|x.exe 1 2 3 4 5 6 7 8"},
        {"name=C:\\greenblue77.exe|alias=b" + rest, "C:\\greenblue77.exe|b 1 2 3 4 5 6 -1 7"},
        {"alias=name|name=a" + rest, "|name 1 2 3 4 5 6 7 8"},
        // A key at the end of a line has no value there; the next line is none of its own.
        {"name=a|alias=b|ecomode|contrast=2|red", "a|b -1 2 -1 -1 -1 -1 -1 -1"},
        {"name=a|alias=infrared|red=6", "a|infrared -1 -1 -1 -1 -1 -1 -1 -1"},
        // Numbers as scanf reads them.
        {"ecomode= 7|contrast=+8x|brightness=-9|colortemp=0x10|red=|green=z|blue=99999999999",
         "| 7 8 -9 -1 0 -1 -1 2147483647"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(Describe(ParseLines(c.lines)), c.result) << c.lines;
}

TEST(ProfileFile, LongTextsAreCut)
{
    for (const size_t length : {258u, 259u, 260u, 300u}) {
        const PROFILEENTRY entry = ParseLines("name=" + std::string(length, 'n') + "|alias=b|red=1");
        EXPECT_EQ(entry.szName, std::string(length < 259 ? length : 259, 'n')) << length;
        EXPECT_STREQ(entry.szAlias, "b");
        EXPECT_EQ(entry.nRed, 1);
    }
    // A buffer filled to its last byte, with no zero at its end.
    const PROFILEENTRY entry = ParseLines("alias=b|red=1|name=" + std::string(2000, 'n'), 776);
    EXPECT_EQ(entry.szName, std::string(259, 'n'));
    EXPECT_EQ(entry.nRed, 1);
}
