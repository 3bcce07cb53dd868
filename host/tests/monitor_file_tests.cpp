// Monitor files: what a good one amounts to, how a fault is named, and that the shipped ones hold what the plug-in
// needs.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "host/base/capability_text.h"
#include "host/base/program_path.h"
#include "host/base/text.h"
#include "host/options.h"
#include "host/simulated/monitor_file.h"
#include "kernel/link/host_protocol.h"

static const char s_good[] = "\xEF\xBB\xBF; a comment\r\n"
                             "[monitor]\r\n"
                             "model = ABCDEFGHIJKL\r\n"
                             "capabilities = (vcp(10 14(05\r\n"
                             "capabilities = 0B)))\r\n"
                             "delay=30\r\n"
                             "answers = no\r\n"
                             "Button1 = メニュー\r\n"
                             "[EDID]\r\n"
                             "maker = ABC\r\n"
                             "product = 0x1234\r\n"
                             "serial = 305419896\r\n"
                             "size = 64 x 40\r\n"
                             "[vcp]\r\n"
                             "10 = 80 / 100, eco 45, delay 7\r\n"
                             "f4=255/255,button-register,hides-locked";

TEST(MonitorFile, GoodFileIsReadWhole)
{
    MONITORFILE file;
    std::string error;
    ASSERT_TRUE(ParseMonitorFile(s_good, "good.ini", &file, &error)) << error;
    EXPECT_EQ(file.model, "ABCDEFGHIJKL");
    EXPECT_EQ(file.capabilities, "(vcp(10 14(050B)))");
    EXPECT_EQ(file.delay, 30);
    EXPECT_TRUE(file.silent);
    EXPECT_EQ(file.labels[0], "メニュー");
    ASSERT_EQ(file.features.size(), 2u);
    EXPECT_EQ(file.features[0].value, 80);
    EXPECT_EQ(file.features[0].maximum, 100);
    EXPECT_EQ(file.features[0].ecoValue, 45);
    EXPECT_EQ(file.features[0].delay, 7);
    EXPECT_EQ(file.features[1].code, 0xF4);
    EXPECT_TRUE(file.features[1].buttonRegister && file.features[1].hidesLocked);
    EXPECT_EQ(file.features[1].ecoValue, -1);

    // The EDID made from the facts: ABC is 00001 00010 00011, and the name is the model.
    const BYTE made[] = {0x04, 0x43, 0x34, 0x12, 0x78, 0x56, 0x34, 0x12};
    EXPECT_EQ(memcmp(&file.edid[8], made, sizeof made), 0);
    EXPECT_EQ(memcmp(&file.edid[113], "ABCDEFGHIJKL\n", 13), 0);
    EXPECT_EQ(file.edid[21], 64);
    EXPECT_EQ(EdidSum(file.edid), 0);
}

TEST(MonitorFile, FaultIsNamedByLineAndReason)
{
    const std::string head = "[monitor]\nmodel = X\ncapabilities = ()\n";
    const struct {
        std::string text;
        int line;
        const char *reason;
    } cases[] = {
        {"", 1, "without a model"},
        {"model = X\n", 1, "before the first [section]"},
        {"[monitor]\nmodel = X\n", 2, "without capabilities"},
        {"[display]\n", 1, "is no section"},
        {"[monitor]\nmodel\n", 2, "KEY = VALUE"},
        {"[monitor]\nmodel =\n", 2, "1 to 12"},
        {"[monitor]\nmodel = ABCDEFGHIJKLM\n", 2, "1 to 12"},
        {"[monitor]\nmodel = モニタ\n", 2, "ASCII"},
        {"[monitor]\nmodel = X\nMODEL = Y\n", 3, "second time"},
        {"[monitor]\ncapabilities = " + std::string(511, 'a') + "\ncapabilities = b\n", 3, "longer than 511"},
        {"[monitor]\nbutton7 = X\n", 2, "button1 to button6"},
        {"[monitor]\nbutton1 = 0123456789abcdef\n", 2, "15 characters"},
        {"[monitor]\ndelay = 20001\n", 2, "0 to 20000"},
        {"[monitor]\nanswers = perhaps\n", 2, "yes or no"},
        {"[monitor]\ncolour = red\n", 2, "no key of [monitor]"},
        {head + "[edid]\nmaker = ab\n", 5, "capital letters"},
        {head + "[edid]\nproduct = 65536\n", 5, "0 to 65535"},
        {head + "[edid]\nyear = 1989\n", 5, "1990"},
        {head + "[edid]\nsize = 0 x 30\n", 5, "1 to 255"},
        {head + "[edid]\ndata = 00 FF\n", 5, "128 bytes"},
        {head + "[vcp]\n100 = 1 / 2\n", 5, "no VCP code"},
        {head + "[vcp]\n10 = 1\n", 5, "VALUE / MAXIMUM"},
        {head + "[vcp]\n10 = 1 / 65536\n", 5, "65535"},
        {head + "[vcp]\n10 = -1 / 5\n", 5, "VALUE / MAXIMUM"},
        {head + "[vcp]\n10 = 3 / 2\n", 5, "above the maximum"},
        {head + "[vcp]\n10 = 1 / 2, eco 3\n", 5, "ECO"},
        {head + "[vcp]\n10 = 1 / 2, wobbles\n", 5, "no quirk"},
        {head + "[vcp]\n0A = 1 / 2\na = 1 / 2\n", 6, "second time"},
    };
    for (const auto &one : cases) {
        MONITORFILE file;
        std::string error;
        EXPECT_FALSE(ParseMonitorFile(one.text, "bad.ini", &file, &error)) << one.text;
        EXPECT_EQ(error.rfind(Format("bad.ini:%d: ", one.line), 0), 0u) << error;
        EXPECT_NE(error.find(one.reason), std::string::npos) << error;
    }
}

TEST(MonitorFile, MissingFileAndEmptyFolderAreNamed)
{
    std::vector<MONITORFILE> files;
    std::string error;
    EXPECT_FALSE(ReadMonitorFiles({"no such file.ini"}, &files, &error));
    EXPECT_EQ(error.rfind("no such file.ini: ", 0), 0u) << error;
    wchar_t folder[MAX_PATH];
    GetTempPathW(MAX_PATH, folder);
    const std::string empty = Narrow(folder) + "trayhub tests empty";
    CreateDirectoryW(Widen(empty).c_str(), nullptr);
    EXPECT_FALSE(ReadMonitorFiles({empty}, &files, &error));
    EXPECT_NE(error.find("no monitor file"), std::string::npos) << error;
    RemoveDirectoryW(Widen(empty).c_str());
}

TEST(Edid, HexBlockIsCheckedAndReadBack)
{
    const EDIDBLOCK block = MakeEdid({"NRV", 0x1701, 99, 2003, 38, 30, "NRV-PA1"});
    std::string hex;
    for (const BYTE byte : block)
        hex += Format("%02x ", byte);
    EDIDBLOCK read;
    ASSERT_EQ(ReadEdidHex(hex, &read), nullptr);
    EXPECT_EQ(read, block);

    std::string broken = hex;
    broken[0] = '1';
    EXPECT_STREQ(ReadEdidHex(broken, &read), "an EDID block begins with 00 FF FF FF FF FF FF 00");
    broken = hex;
    broken[3 * 20] = broken[3 * 20] == '0' ? '1' : '0';
    EXPECT_STREQ(ReadEdidHex(broken, &read), "the EDID block's checksum is wrong");
    broken = hex;
    broken[1] = 'x';
    EXPECT_STREQ(ReadEdidHex(broken, &read), "an EDID block is written in hexadecimal digits");
}

TEST(CapabilityText, RealAndHostileStrings)
{
    const struct {
        const char *text;
        const char *version;
        std::vector<int> codes;
        BYTE listCode;
        std::vector<int> list;
    } cases[] = {
        {"(vcp(02 10 14(01 05 0B)16 D6(01 04) DF)MCCS_VER(2.1))",
         "2.1",
         {0x02, 0x10, 0x14, 0x16, 0xD6, 0xDF},
         0x14,
         {1, 5, 11}},
        {"(vcp(0203101214(01 05)15DF)mccs_ver(2.1))", "2.1", {0x02, 0x03, 0x10, 0x12, 0x14, 0x15, 0xDF}, 0x14, {1, 5}},
        {"(vcp(10 60( 11 12 ) B0(01(02 03) 04)))", "", {0x10, 0x60, 0xB0}, 0xB0, {1, 4}},
        {"(vcp(10 60(01 02", "", {0x10, 0x60}, 0x60, {1, 2}},
        {"(vcp((((((", "", {}, 0x10, {}},
        {"))))vcp()", "", {}, 0x10, {}},
        {"", "", {}, 0x10, {}},
    };
    for (const auto &one : cases) {
        std::vector<int> codes, list;
        const std::vector<CAPABILITYCODE> read = CapabilityCodes(one.text);
        for (const CAPABILITYCODE &code : read)
            codes.push_back(code.code);
        if (const CAPABILITYCODE *listed = FindCapabilityCode(read, one.listCode))
            list.assign(listed->values.begin(), listed->values.end());
        EXPECT_EQ(codes, one.codes) << one.text;
        EXPECT_EQ(list, one.list) << one.text;
        EXPECT_EQ(CapabilityItem(one.text, "mccs_ver"), one.version) << one.text;
    }
}

// Where the program and its data are; the tests stand two folders further down.
static std::string BinFolder()
{
    return ProgramFolder() + "\\..\\..";
}

TEST(ShippedFiles, FitThePlugin)
{
    std::vector<MONITORFILE> files;
    std::string error;
    ASSERT_TRUE(ReadMonitorFiles({BinFolder() + "\\monitors"}, &files, &error)) << error;
    const char *const models[] = {"NRV-PA1", "NRV-PA2", "NRV-PT2", "NRV-PA3", "NRV-PT3", "U3011", "27MU68"};
    ASSERT_EQ(files.size(), std::size(models));
    for (size_t i = 0; i < files.size(); i++) {
        const MONITORFILE &file = files[i];
        EXPECT_EQ(file.model, models[i]);
        if (file.model.rfind("NRV-", 0) != 0)
            continue;
        // The check at the stop looks for the model in the last descriptor.
        EXPECT_EQ(memcmp(&file.edid[113], file.model.data(), file.model.size()), 0) << file.model;
        const std::vector<CAPABILITYCODE> codes = CapabilityCodes(file.capabilities);
        for (const int code : {0x10, 0x12, 0x14, 0x16, 0x18, 0x1A, 0x1E, 0x60, 0xE0, 0xF0, 0xF2, 0xF4})
            EXPECT_NE(FindCapabilityCode(codes, static_cast<BYTE>(code)), nullptr) << file.model << " " << code;
        const bool hasTuner = file.model[4] == 'P' && file.model[5] == 'T';
        EXPECT_EQ(FindCapabilityCode(codes, 0xE8) != nullptr, hasTuner) << file.model;
        // Only these two may have lists of values: the plug-in's reading ends at any other.
        for (const CAPABILITYCODE &code : codes)
            EXPECT_EQ(code.hasValues, code.code == 0x14 || code.code == 0x60) << file.model << " " << int(code.code);
        for (int button = 1; button <= MONITOR_BUTTON_COUNT; button++) {
            char label[64];
            GetPrivateProfileStringA(file.model.c_str(), Format("button%d", button).c_str(), "", label, sizeof label,
                                     (BinFolder() + "\\Launcher.ini").c_str());
            EXPECT_EQ(file.labels[static_cast<size_t>(button - 1)], label) << file.model << " " << button;
        }
    }
}
