// Capability strings: those of this maker's monitors, of other makers', and hostile ones.
#include "monitor/capabilities.h"

#include "support/guarded_bytes.h"

#include <gtest/gtest.h>

// What a string gives, in a form that reads well in a table and in a failure.
static std::string Parse(const std::string &text)
{
    const GuardedBytes bytes(text);
    MONITORENTRY entry = {};
    std::string result = ParseCapabilityText(&entry, bytes.data, text.size()) ? "complete" : "incomplete";

    const auto list = [&](const char *name, const uint32_t *flags, int count, const char *format) {
        result += std::string(" ") + name;
        for (int value = 0; value < count; ++value)
            if (flags[value]) {
                char number[8];
                snprintf(number, sizeof number, format, value);
                result += number;
            }
    };
    list("codes", entry.bVcpCode, 256, " %02X");
    list("presets", entry.bColorPreset, VCP_VALUE_COUNT, " %d");
    list("inputs", entry.bInputSource, VCP_VALUE_COUNT, " %d");
    return result + (entry.bTuner ? " tuner" : "") + " version " + entry.szMccsVer;
}

TEST(Capabilities, WhatTheWalkMakesOfStrings)
{
    const struct {
        const char *text;
        const char *result;
    } cases[] = {
        // As monitors of this maker send them.
        {"(vcp(02 04 05 08 10 12 14(01 05 08 0b) 16 18 1a 60(01 03) e0 f4)mccs_ver(2.0))",
         "complete codes 02 04 05 08 10 12 14 16 18 1A 60 E0 F4 presets 1 5 8 11 inputs 1 3 version 2.0"},
        {"(vcp(02 04 05 08 10 12 14(01 05 08 0b)16 18 1a 60(01 03)e0 f4)mccs_ver(2.0))",
         "complete codes 02 04 05 08 10 12 14 16 18 1A 60 E0 F4 presets 1 5 8 11 inputs 1 3 version 2.0"},
        {"(VCP(10 1A E0 F4)MCCS_VER(2.0))", "complete codes 10 1A E0 F4 presets inputs version "},
        {"(vcp(60( 01 03 05 07 09 )F2))", "complete codes 60 F2 presets inputs 1 3 5 7 9 tuner version "},
        {"(vcp(60(01 0B))mccs_ver(2.2 rev a))", "complete codes 60 presets inputs 1 11 tuner version 2.2"},
        {"(mccs_ver(123456789)vcp(10))", "complete codes 10 presets inputs version 1234567"},
        // A preset code without a list takes the next one, and the codes between are skipped.
        {"(vcp(10 14 16 60(01 03) e0))", "complete codes 10 14 E0 presets 1 3 inputs version "},
        {"(vcp(10 14 16 18))", "complete codes 10 14 16 18 presets inputs version "},
        // A preset list that ends with 0x60 starts an input list.
        {"(vcp(14(05 60) 16(01 03)))", "complete codes 14 presets 5 inputs 1 3 version "},
        {"(vcp(14(05 60 10) 16))", "complete codes 14 16 presets 5 inputs version "},
        // Values that the tables do not hold.
        {"(vcp(14(0F 10 FF)60(10 11 F9)))", "complete codes 14 60 presets 15 inputs version "},
        // A list of another code ends the whole.
        {"(vcp(10 D6(01 04) E0))", "complete codes 04 10 D6 presets inputs version "},
        // Ends and beginnings that are missing, and what is no number.
        {"", "incomplete codes presets inputs version "},
        {"vcp(", "incomplete codes presets inputs version "},
        {"vcp()", "complete codes presets inputs version "},
        {"(((((((((", "incomplete codes presets inputs version "},
        {"vcp((((((((", "incomplete codes presets inputs version "},
        {"vcp(14(01 05", "incomplete codes 14 presets 1 5 inputs version "},
        {"vcp(14(01)", "incomplete codes 14 presets 1 inputs version "},
        {"vcp(60", "incomplete codes 60 presets inputs version "},
        {"vcp(10 12", "incomplete codes 10 12 presets inputs version "},
        {"vcp(1", "incomplete codes 01 presets inputs version "},
        {"vcp(zz 10 xy)", "complete codes 10 presets inputs version "},
        {"vcp(\xFF\x80 10)", "complete codes 10 presets inputs version "},
        {"mccs_ver(2", "incomplete codes presets inputs version "},
        // Of other makers: the host gives them in a plainer form.
        {"(prot(monitor)type(lcd)model(U2723QE)cmds(01 02 03 07 0C E3 F3)vcp(02 04 05 08 10 12 14(01 04 05 06 08 09 0B "
         "0C) 16 18 1A 52 60( 1B 0F 11) AA(01 02 04) AC AE B2 B6 C6 C8 C9 CC(02 03 04 06 09 0A 0D 0E) D6(01 04 05) "
         "DC(00 03 05) DF E0 E1 E2(00 02 04 0C 0D 0F 10 11 13 0B 1B 1A 14 23 24 27 3A) E5 E7(02 03) E8 E9(00 01 02 21 "
         "22 24) EA EF F0(00 05 06 09 0A 31 32 34 36) F1 F2 FE FD)mccs_ver(2.1)mswhql(1))",
         "complete codes 02 04 05 08 10 12 14 16 18 1A 52 60 AA presets 1 4 5 6 8 9 11 12 inputs 15 version 2.1"},
        {"(prot(monitor)type(lcd)model(MP76)cmds(01 02 03 0C E3 F3)vcp(02030405080B0C101214(01 05 06 07 08 "
         "0B)1516181A4D4E4F5260(01 03 04)626C6E70878DACAEB6C0C6C8C9D6(01 04)DFE0E1E3(00 01 02 03 04 10 11 12 13 "
         "14)ECEFFD(00 01)FE(00 01 02)F4F5F6F7F8F9FF)mswhql(1)mccs_ver(2.1))",
         "complete codes 02 05 06 07 08 0B presets inputs version 2.1"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(Parse(c.text), c.result) << c.text;
}
