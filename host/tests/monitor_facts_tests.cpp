// What is known of a real monitor without asking it, what is kept of it between runs, and what its owner says of it.
#include <gtest/gtest.h>

#include "host/base/text.h"
#include "host/windows_monitors/access_rules.h"
#include "host/windows_monitors/capability_store.h"
#include "host/windows_monitors/found_monitor.h"
#include "host/windows_monitors/monitor_overrides.h"

TEST(AccessRules, PausesCountFromTheEndOfTheLastAccess)
{
    const struct {
        ACCESSKIND kind;
        LASTACCESS last;
        DWORD now, pause;
        bool hurried;
    } cases[] = {
        {ACCESS_READ, {false, ACCESS_WRITE, 0x10, 0}, 5, 0, false},
        {ACCESS_READ, {true, ACCESS_READ, 0x60, 1000}, 1000, 40, false},
        {ACCESS_READ, {true, ACCESS_WRITE, 0x10, 1000}, 1030, 20, false},
        {ACCESS_WRITE, {true, ACCESS_WRITE, 0x10, 1000}, 1010, 40, false},
        {ACCESS_WRITE, {true, ACCESS_READ, 0x10, 1000}, 1000, 0, false},
        {ACCESS_CAPABILITIES, {true, ACCESS_READ, 0x10, 1000}, 1039, 1, false},
        {ACCESS_READ, {true, ACCESS_WRITE, 0x10, 1000}, 1050, 0, false},
        {ACCESS_READ,
         {true, ACCESS_WRITE, 0x10, 0xFFFFFFF0},
         0x10,
         18,
         false}, // the tick count begins anew every 49.7 days
        {ACCESS_READ, {true, ACCESS_WRITE, 0x60, 1000}, 1100, 1400, false},
        {ACCESS_WRITE, {true, ACCESS_WRITE, 0xD6, 1000}, 1000, 1500, false},
        {ACCESS_WRITE, {true, ACCESS_WRITE, 0x04, 1000}, 1010, 40, true},
    };
    for (const auto &one : cases)
        EXPECT_EQ(PauseBefore(one.kind, one.last, one.now, {}, one.hurried), one.pause) << one.now;
}

TEST(AccessRules, OnlyPassingErrorsWithTimeLeftAreRetried)
{
    const auto pause = [](DWORD error, int tries, DWORD left) { return PauseOfRetry(error, tries, left, {}); };
    EXPECT_EQ(pause(0xC026258B, 1, 1000), 50u);
    EXPECT_EQ(pause(0xC026258B, 4, 1000), 400u);
    EXPECT_EQ(pause(0xC026258B, 5, 1000), 0u);
    EXPECT_EQ(pause(0xC026258B, 2, 100), 0u);
    EXPECT_EQ(pause(0x1234, 1, 1000), 50u) << "an error that nobody knows may pass";
    for (const DWORD error : {0xC0262580u, 0xC0262581u, 0xC0262584u, 0xC026258Cu, 0xC026258Du, 0xC02625E0u})
        EXPECT_EQ(pause(error, 1, 1000), 0u) << std::hex << error;
    EXPECT_EQ(AccessErrorText(0xC0262584), "0xC0262584 the monitor does not know the code");
    EXPECT_EQ(AccessErrorText(OUR_ERROR_NEVER), "monitors.ini says never");
    EXPECT_EQ(AccessErrorText(5).rfind("0x00000005 ", 0), 0u) << "in the system's words";
}

TEST(FoundMonitor, DeviceIsMatchedForSureOrNotAtAll)
{
    const auto display = [](const std::vector<std::string> &devices) {
        DISPLAY made = {};
        for (const std::string &device : devices)
            made.monitors.push_back({"", device, {}});
        return made;
    };
    EXPECT_EQ(MatchMonitorDevice(display({"A"}), {"B"}, 0), 0) << "one behind one";
    EXPECT_EQ(MatchMonitorDevice(display({}), {"B"}, 0), -1);
    EXPECT_EQ(MatchMonitorDevice(display({"A", "B"}), {"B"}, 0), 1);
    EXPECT_EQ(MatchMonitorDevice(display({"A", "B"}), {"B", "A"}, 0), 1);
    EXPECT_EQ(MatchMonitorDevice(display({"A", "A"}), {"A", "A"}, 1), -1);
    EXPECT_EQ(MatchMonitorDevice(display({"A", "A"}), {"A"}, 0), -1);
    EXPECT_EQ(MatchMonitorDevice(display({"A"}), {"A", "A"}, 0), -1);
    EXPECT_EQ(MatchMonitorDevice(display({"A"}), {"B", "C"}, 0), -1);
}

TEST(FoundMonitor, InstanceComesFromTheInterfacePath)
{
    EXPECT_EQ(InstanceOfInterface("\\\\?\\DISPLAY#DEL4014#5&1A&0&UID256#{e6f07b5f-ee97-4a90-b076-33f57bf4eaa7}"),
              "DISPLAY\\DEL4014\\5&1A&0&UID256");
    for (const char *path : {"", "\\\\?\\", "\\\\?\\#{", "MONITOR\\DEL4014\\{4d36e96e}\\0001", "\\\\?\\DISPLAY#A#B"})
        EXPECT_EQ(InstanceOfInterface(path), "") << path;
}

TEST(FoundMonitor, ModelComesFromTheFirstThatNamesIt)
{
    FOUNDMONITOR found = {};
    found.description = "汎用 PnP モニター";
    EXPECT_EQ(MonitorModel("(model(U2723QE)vcp(10))", found), "U2723QE");
    EXPECT_EQ(MonitorModel("(model( )vcp(10))", found), "PnP") << "what is not ASCII is left out";
    found.description = "モニター";
    EXPECT_EQ(MonitorModel("", found), "Monitor");
    found.edid = MakeEdid({"DEL", 0x4014, 1, 2010, 64, 40, "DELL U3011 XY"});
    found.hasEdid = true;
    EXPECT_EQ(MonitorModel("", found), "DELL U3011 X") << "12 bytes";
    found.edid = MakeEdid({"DEL", 0x4014, 1, 2010, 64, 40, ""});
    found.description = "Generic";
    EXPECT_EQ(MonitorModel("", found), "Generic");
}

TEST(Edid, FactsAreReadAndSerialNumbersBlanked)
{
    const EDIDBLOCK block = MakeEdid({"DEL", 0x4014, 0x12345678, 2010, 64, 40, "DELL U3011"});
    const EDIDFACTS facts = ReadEdidFacts(block);
    EXPECT_EQ(facts.maker +
                  Format(" %X %X %u %u %u ", facts.product, facts.serial, facts.year, facts.widthCm, facts.heightCm) +
                  facts.name,
              "DEL 4014 12345678 2010 64 40 DELL U3011");
    EXPECT_EQ(EdidProduct(block), "DEL4014");
    EXPECT_EQ(EdidSerialText(block), "305419896");
    EDIDBLOCK other = MakeEdid({"DEL", 0x4014, 99, 2010, 64, 40, "DELL U3011"});
    EXPECT_NE(EdidKey(block), EdidKey(other));
    EXPECT_EQ(EdidKey(block).rfind("DEL4014-", 0), 0u);
    other[16] = 33; // the week
    EXPECT_EQ(BlankEdidSerial(block), BlankEdidSerial(other)) << "nothing tells the two apart";
    EXPECT_EQ(EdidFault(BlankEdidSerial(block)), nullptr);
    EXPECT_EQ(ReadEdidFacts(BlankEdidSerial(block)).name, "DELL U3011");
}

// ---- The store ------------------------------------------------------------------------------------------------------

TEST(CapabilityStore, TextIsReadBackAndDamageIsSeen)
{
    std::string bytes;
    for (int c = 0; c < 256; c++)
        bytes += static_cast<char>(c);
    const std::string text = WriteKeptText({{"A-1", "(vcp(10 12))"}, {"B", bytes}});
    std::vector<KEPTCAPABILITIES> kept;
    ASSERT_TRUE(ReadKeptText(text, &kept));
    ASSERT_EQ(kept.size(), 2u);
    EXPECT_EQ(kept[0].key + kept[0].text, "A-1(vcp(10 12))");
    EXPECT_EQ(kept[1].text, bytes);
    for (size_t i = 0; i < text.size(); i++) {
        std::string damaged = text;
        damaged[i] = static_cast<char>(damaged[i] ^ 1);
        EXPECT_FALSE(ReadKeptText(damaged, &kept)) << i;
        EXPECT_FALSE(ReadKeptText(text.substr(0, i), &kept)) << i;
        EXPECT_TRUE(kept.empty());
    }
}

struct SCRATCHSTORE {
    CAPABILITYSTORE store;
    SCRATCHSTORE()
    {
        wchar_t temp[MAX_PATH];
        GetTempPathW(MAX_PATH, temp);
        store.folder = Narrow(temp) + "trayhub tests kept";
        ForgetCapabilities(&store);
    }
    ~SCRATCHSTORE()
    {
        ForgetCapabilities(&store);
        RemoveDirectoryW(Widen(store.folder).c_str());
    }
    void Write(const std::string &name, const std::string &text)
    {
        DWORD written = 0;
        const HANDLE file = CreateFileW(Widen(store.folder + "\\" + name).c_str(), GENERIC_WRITE, 0, nullptr,
                                        CREATE_ALWAYS, 0, nullptr);
        WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
        CloseHandle(file);
    }
};

TEST(CapabilityStore, KeepsReplacesLimitsAndSurvivesDamage)
{
    SCRATCHSTORE scratch;
    CAPABILITYSTORE *store = &scratch.store;
    EXPECT_EQ(FindKeptCapabilities(store, "A"), "");
    EXPECT_FALSE(KeepCapabilities(store, "A", ""));
    EXPECT_TRUE(KeepCapabilities(store, "A", "one"));
    EXPECT_TRUE(KeepCapabilities(store, "B", "two"));
    EXPECT_TRUE(KeepCapabilities(store, "A", "three"));
    EXPECT_EQ(FindKeptCapabilities(store, "A") + FindKeptCapabilities(store, "B"), "threetwo");
    for (size_t i = 0; i < KEPT_LIMIT - 1; i++)
        KeepCapabilities(store, Format("N%u", static_cast<unsigned>(i)), "n");
    EXPECT_EQ(FindKeptCapabilities(store, "A") + FindKeptCapabilities(store, "B"), "three");
    scratch.Write("capabilities.txt", "nonsense");
    EXPECT_EQ(FindKeptCapabilities(store, "A"), "");
    EXPECT_TRUE(KeepCapabilities(store, "A", "again"));
    EXPECT_EQ(FindKeptCapabilities(store, "A"), "again");
}

TEST(CapabilityStore, MarkerCountsOnceItsProcessIsNoMore)
{
    SCRATCHSTORE scratch;
    CAPABILITYSTORE *store = &scratch.store;
    ASSERT_TRUE(MarkCapabilityRead(store, "A"));
    EXPECT_EQ(CapabilityReadStrikes(store, "A"), 0u) << "this process still runs";
    std::string mark, error;
    ASSERT_TRUE(ReadWholeFile(store->folder + "\\reading A", 100, &mark, &error));
    mark.pop_back();
    mark.back() = mark.back() == '0' ? '1' : '0'; // another process had the number then
    for (const std::string &left : {mark, std::string("4294967294 0"), std::string("x")}) {
        scratch.Write("reading A", left);
        EXPECT_EQ(CapabilityReadStrikes(store, "A"), 1u) << left;
    }
    EXPECT_EQ(CapabilityReadStrikes(store, "B"), 0u);
    // A read that is merely cut off leaves the earlier strike, and no other.
    ASSERT_TRUE(MarkCapabilityRead(store, "A"));
    TakeBackCapabilityMark(store, "A");
    EXPECT_EQ(CapabilityReadStrikes(store, "A"), 1u);
    scratch.Write("reading A", "1 0\n2 0\n3 0\n");
    EXPECT_GE(CapabilityReadStrikes(store, "A"), CAPABILITY_STRIKES);
    UnmarkCapabilityRead(store, "A");
    EXPECT_EQ(CapabilityReadStrikes(store, "A"), 0u);
}

// ---- monitors.ini ---------------------------------------------------------------------------------------------------

TEST(Overrides, FaultyLinesAreNamedAndTheRestHolds)
{
    const struct {
        const char *line;
        const char *reason;
    } cases[] = {
        {"model =", "1 to 12"},           {"model = ABCDEFGHIJKLM", "1 to 12"},
        {"model = モニタ", "ASCII"},      {"capabilities =", "printable ASCII"},
        {"maximum = 5", "no key"},        {"maximum 1G = 5", "VCP code"},
        {"maximum 10 = 0", "1 to 65535"}, {"maximum 10 = 65536", "1 to 65535"},
        {"never =", "no VCP code"},       {"never = 04 100", "two hexadecimal"},
        {"colour = red", "no key"},       {"model", "KEY = VALUE"},
        {"maximum 10 20 = 5", "no key"},  {"makers-codes = no", "yes"},
        {"tries = 11", "1 to 10"},        {"settle-pause = 0", "1 to 5000"},
    };
    for (const auto &one : cases) {
        const OVERRIDEFILE file =
            ParseOverrides(std::string("[ABC1234]\nnever = 04\n") + one.line + "\nmodel = GOOD\n");
        ASSERT_EQ(file.faults.size(), 1u) << one.line;
        EXPECT_EQ(file.faults[0].line, 3);
        EXPECT_NE(file.faults[0].reason.find(one.reason), std::string::npos) << file.faults[0].reason;
        const MONITOROVERRIDE content = OverrideFor(file, {"ABC1234", {}, {}});
        EXPECT_EQ(content.model, "GOOD") << one.line;
        EXPECT_TRUE(content.never[4]);
        EXPECT_FALSE(content.never[0x10]);
    }
    for (const char *title : {"[]", "[abc1234]", "[ABC12345]", "[ABC12G4]", "[model]", "[ABC1234"}) {
        const OVERRIDEFILE file =
            ParseOverrides(std::string("[XYZ0001]\nmodel = X\n") + title + "\nmodel = Y\n[ABC0001]\n");
        ASSERT_EQ(file.faults.size(), 1u) << title;
        EXPECT_EQ(file.faults[0].line, 3);
        ASSERT_EQ(file.sections.size(), 2u);
        EXPECT_EQ(file.sections[0].content.model, "X") << "a key below a wrong title goes to no other section";
    }
    EXPECT_EQ(ParseOverrides("model = X\n").faults.size(), 1u);
    const OVERRIDEFILE longText = ParseOverrides("[ABC1234]\ncapabilities = " + std::string(300, 'a') +
                                                 "\ncapabilities = " + std::string(212, 'b') + "\n");
    EXPECT_EQ(longText.faults.size(), 1u);
    EXPECT_EQ(longText.sections[0].content.capabilities, std::string(300, 'a'));
}

TEST(Overrides, CloserTitlesWinAndForbiddenCodesAdd)
{
    const OVERRIDEFILE file = ParseOverrides(
        "\xEF\xBB\xBF; mine\r\n"
        "[DEL4014 ABC 1]\r\nmodel = THIS\r\nnever = D6\r\nread-pause = 200\r\n"
        "[DEL4014]\r\nmodel = ALL\r\nmaximum 10 = 80\r\nnever = 04 05\r\nmakers-codes = yes\r\ntries = 2\r\n"
        "[Model DELL U3011]\r\nmodel = NAMED\r\nmaximum 10 = 70\r\nmaximum\t12 = 0x50\r\n");
    ASSERT_TRUE(file.faults.empty());
    const MONITOROVERRIDE one = OverrideFor(file, {"DEL4014", {"77", "ABC 1"}, {"27MU68", "dell u3011"}});
    EXPECT_EQ(one.model, "THIS");
    EXPECT_EQ(one.maxima[0x10], 80);
    EXPECT_EQ(one.maxima[0x12], 0x50);
    EXPECT_EQ(one.maxima[0x14], -1);
    EXPECT_TRUE(one.never[0x04] && one.never[0xD6]);
    EXPECT_EQ(one.titles.size(), 3u);
    EXPECT_TRUE(one.takesMakersCodes);
    const ACCESSMANNERS manners = MannersFor(one), usual;
    EXPECT_EQ(manners.pauseBeforeRead, 200u);
    EXPECT_EQ(manners.tries, 2);
    EXPECT_EQ(manners.pauseToSettle, usual.pauseToSettle);
    EXPECT_EQ(OverrideFor(file, {"DEL4014", {"78"}, {"Other"}}).model, "ALL");
    EXPECT_EQ(OverrideFor(file, {"", {}, {"DELL U3011"}}).model, "NAMED");
    EXPECT_EQ(OverrideFor(file, {"DEL4015", {"ABC 1"}, {}}).titles.size(), 0u);
    EXPECT_TRUE(ReadOverrides("no such file.ini").faults.empty());
}

// ---- Windows' own list ----------------------------------------------------------------------------------------------

// The real enumerations and the real registry: an EDID put where Windows keeps it is found at the display's monitor.
TEST(Displays, EdidComesFromTheRegistryOfTheMonitorsDevice)
{
    std::vector<DISPLAY> displays = ListDisplays();
    ASSERT_FALSE(displays.empty());
    EXPECT_GT(displays[0].area.right, displays[0].area.left);
    ASSERT_EQ(displays[0].monitors.size(), 1u);
    const std::string instance = displays[0].monitors[0].instance;
    ASSERT_NE(instance, "");
    const std::wstring path = L"System\\CurrentControlSet\\Enum\\" + Widen(instance) + L"\\Device Parameters";
    HKEY key = nullptr;
    if (!displays[0].monitors[0].edid.empty() ||
        RegOpenKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_SET_VALUE, &key) != ERROR_SUCCESS)
        GTEST_SKIP() << "only where the display has no EDID, and the registry lets us give it one";
    const EDIDBLOCK block = MakeEdid({"ABC", 1, 2, 2010, 40, 30, "TEST"});
    std::vector<BYTE> bytes(block.begin(), block.end());
    bytes.resize(256); // with an extension
    RegSetValueExW(key, L"EDID", 0, REG_BINARY, bytes.data(), static_cast<DWORD>(bytes.size()));
    displays = ListDisplays();
    RegDeleteValueW(key, L"EDID");
    RegCloseKey(key);
    ASSERT_EQ(displays[0].monitors.size(), 1u);
    EXPECT_EQ(displays[0].monitors[0].edid, bytes);
    EXPECT_TRUE(ListDisplays()[0].monitors[0].edid.empty());
}
