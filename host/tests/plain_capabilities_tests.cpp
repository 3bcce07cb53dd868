// What arrives in the plug-in's table of the capability strings that real monitors send.
#include "host/windows_monitors/plain_capabilities.h"

#include <gtest/gtest.h>

#include <iterator>

#include "host/base/capability_text.h"
#include "host/base/text.h"
#include "kernel/link/host_protocol.h"
#include "monitor/capabilities.h"

// The plug-in's own reading of what it gets. Returns whether it came to the end of the list.
static bool ReadByPlugin(const std::string &given, MONITORENTRY *entry)
{
    std::string text = given; // which is changed in place
    EXPECT_LT(text.size(), HOST_CAPABILITIES_SIZE) << text;
    *entry = {};
    return ParseCapabilityText(entry, text.data(), text.size()) == 1;
}

static std::string Numbers(const uint32_t *flags)
{
    std::string text;
    for (int value = 0; value < VCP_VALUE_COUNT; value++)
        if (flags[value])
            text += (text.empty() ? "" : " ") + std::to_string(value);
    return text;
}

static const struct {
    const char *text;
    int codes;
    const char *presets, *inputs; // up to 15
    const char *version;
} s_real[] = {
    {"(prot(monitor)type(lcd)27mu68cmds(01 02 03 0c e3 f3)vcp(02 04 05 08 10 12 14(05 08 0b ) 16 18 1a 52 60( 11 12 0f "
     "10) ac ae b2 b6 c0 c6 c8 c9 d6(01 04) df 62 8d f4 f5(00 01 02) f6(00 01 02) 4d 4e 4f 15(01 07 08 11 13 14 15 18 "
     "19 20 22 23 24 28 29) f7(00 01 02 03) f8(00 01) f9 fd(00 01) fe(00 01 02) ff)mccs_ver(2.1)mswhql(1))",
     37, "5 8 11", "15", "2.1"},
    {"(prot(monitor)type(lcd)model(U2723QE)cmds(01 02 03 07 0C E3 F3)vcp(02 04 05 08 10 12 14(01 04 05 06 08 09 0B 0C) "
     "16 18 1A 52 60( 1B 0F 11) AA(01 02 04) AC AE B2 B6 C6 C8 C9 CC(02 03 04 06 09 0A 0D 0E) D6(01 04 05) DC(00 03 "
     "05) DF E0 E1 E2(00 02 04 0C 0D 0F 10 11 13 0B 1B 1A 14 23 24 27 3A) E5 E7(02 03) E8 E9(00 01 02 21 22 24) EA EF "
     "F0(00 05 06 09 0A 31 32 34 36) F1 F2 FE FD)mccs_ver(2.1)mswhql(1))",
     38, "1 4 5 6 8 9 11 12", "15", "2.1"},
    {"(prot(monitor)type(lcd)model(SAMSUNG)cmds(01 02 03 07 0C 4E F3 E3)vcp(02 04 05 08 0B 0C 10 12 14(01 04 05 06 08 "
     "0B) 16 18 1A 6C 6E 70 AC AE B6 C0 C6 C8 C9 CA CC(00 02 03 04 05 06 07 08 09 0A 0B 0C 0D 1A 1E 24) D6(01 04) DF "
     "60(0F 11 12 )62 8D FF 39 32 35)mswhql(1)mccs_ver(2.0)asset_eep(32)mpu_ver(01))",
     33, "1 4 5 6 8 11", "15", "2.0"},
    {"(prot(monitor)type(lcd)MStarcmds(01 02 03 07 0C E3 F3)vcp(02 04 05 08 10 12 14(05 08 0B 0C) 16 18 1A 52 60( 11 "
     "12 0F 10) AA(01 02) AC AE B2 B6 C6 C8 C9 D6(01 04 05) DC(00 02 03 05 ) DF FD)mccs_ver(2.1)mswhql(1))",
     24, "5 8 11 12", "15", "2.1"},
    {"(prot(monitor)type(LCD)model(RTK)cmds(01 02 03 07 0C E3 F3)vcp(02 04 05 06 08 0B 0C 10 12 14(01 02 04 05 06 08 "
     "0B) 16 18 1A 52 60(01 03 04 0F 10 11 12) 87 AC AE B2 B6 C6 C8 CA CC(01 02 03 04 06 0A 0D) D6(01 04 05) DF F1 FD "
     "FF)mswhql(1)asset_eep(40)mccs_ver(2.2))",
     29, "1 2 4 5 6 8 11", "1 3 4 15", "2.2"},
    {"(prot(monitor)type(LCD)model(VG278)cmds(01 02 03 07 0C F3)vcp(02 04 05 08 0B 0C 10 12 14(05 06 08 0B) 16 18 1A "
     "60(01 03 11 0F) 62 8D(01 02) AC AE B6 C6 C8 CA CC(01 02 03 04 05 06 07 08 09 0A 0C 0D 11 12 14 1A 1E 1F 20 24 "
     "25) D6(01 04) DF E0 E1)mswhql(1)asset_eep(32)mccs_ver(2.2))",
     26, "5 6 8 11", "1 3 15", "2.2"},
    {"(prot(monitor)type(lcd)model(U3011)cmds(01 02 03 07 0C E3 F3)vcp(02 04 05 06 08 10 12 14(01 05 08 0B 0C) 16 18 "
     "1A 52 60(01 03 04 0C 0F 11 12) AC AE B2 B6 C6 C8 C9 D6(01 04 05) DC(00 02 03 04 05) DF "
     "FD)mccs_ver(2.1)mswhql(1))",
     24, "1 5 8 11 12", "1 3 4 12 15", "2.1"},
    {"(prot(monitor)type(lcd)model(MP76)cmds(01 02 03 0C E3 F3)vcp(02030405080B0C101214(01 05 06 07 08 "
     "0B)1516181A4D4E4F5260(01 03 04)626C6E70878DACAEB6C0C6C8C9D6(01 04)DFE0E1E3(00 01 02 03 04 10 11 12 13 "
     "14)ECEFFD(00 01)FE(00 01 02)F4F5F6F7F8F9FF)mswhql(1)mccs_ver(2.1))",
     48, "1 5 6 7 8 11", "1 3 4", "2.1"},
};

TEST(PlainCapabilities, EverythingListedArrivesWhoeverTheMaker)
{
    for (const auto &real : s_real) {
        MONITORENTRY entry;
        EXPECT_EQ(CapabilityFault(real.text), nullptr) << real.text;
        EXPECT_TRUE(ReadByPlugin(PlainCapabilities(real.text), &entry)) << real.text;
        int codes = 0;
        for (const uint32_t flag : entry.bVcpCode)
            codes += flag != 0;
        EXPECT_EQ(codes, real.codes) << real.text;
        for (const CAPABILITYCODE &code : CapabilityCodes(real.text))
            EXPECT_TRUE(entry.bVcpCode[code.code]) << real.text << " " << int{code.code};
        EXPECT_EQ(Numbers(entry.bColorPreset), real.presets) << real.text;
        EXPECT_EQ(Numbers(entry.bInputSource), real.inputs) << real.text;
        EXPECT_STREQ(entry.szMccsVer, real.version) << real.text;
    }
}

TEST(PlainCapabilities, WhateverComesThePluginReadsItToTheEnd)
{
    const struct {
        const char *raw, *plain;
    } cases[] = {
        // Without values of its own a code would take the next one's, or start a list that is none.
        {"vcp(10 14 16 60(01 03))", "(vcp(10 14() 16 60(01 03)))"},
        {"vcp(14(05 60) 16(01 03) D6(01 04))", "(vcp(14(05) 16 D6))"},
        {"(VCP (1012 60(0F)60(03))MCCS_VER( 2.2 Rev1)", "(mccs_ver(2.2)vcp(10 12 60(03 0F)))"},
        {"(mccs_ver(()vcp(E0 02 60 14", "(vcp(14() 60() E0 02))"},
        {"mccs_ver(123456789)", "(mccs_ver(1234567))"},
        {"\xFF(", "()"},
        {"", "()"},
    };
    for (const auto &one : cases)
        EXPECT_EQ(PlainCapabilities(one.raw), one.plain) << one.raw;
    // More than there is room for: what the plug-in uses is there.
    std::string all = "(mccs_ver(2.2)vcp(";
    for (unsigned code = 0; code < 256; code++)
        all += Format(code == 0x60 || code == 0x14 ? "%02X(00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F)" : "%02X ",
                      code);
    MONITORENTRY entry;
    EXPECT_TRUE(ReadByPlugin(PlainCapabilities(all + "))"), &entry));
    EXPECT_TRUE(entry.bVcpCode[0xF2] && entry.bVcpCode[0xF4] && entry.bInputSource[15] && entry.bColorPreset[0]);
}

TEST(PlainCapabilities, ADamagedStringIsNotKept)
{
    for (const char *damaged :
         {"", "(vcp(10 12)", "(vcp(10))x)", "(vcp(10 \x01 12))", "(vcp())", "(prot(monitor)type(lcd))"})
        EXPECT_NE(CapabilityFault(damaged), nullptr) << damaged;
}

TEST(CapabilityText, AModelAlsoWithoutItsParentheses)
{
    const struct {
        const char *text, *model;
    } cases[] = {
        {"(prot(monitor)type(lcd)27mu68cmds(01 02)vcp(10))", "27mu68"},
        {"(type(lcd)MStarvcp(10))", "MStar"},
        {"(type(lcd)model( RTK )cmds(01))", "RTK"},
        {"(type(lcd)cmds(01)vcp(10))", ""},
        {"(type(lcd", ""},
        {"type(lcd)", ""},
    };
    for (const auto &one : cases)
        EXPECT_EQ(CapabilityModel(one.text), one.model) << one.text;
}
