// Enumeration of the monitors.
#include "monitor/monitor_table.h"

#include "monitor/enumeration.h"
#include "monitor/vcp.h"
#include "support/plugin_session.h"

namespace {

class MonitorTableTest : public HostTest {};

const Lines sevenReads = {"get 0 E0", "get 0 10", "get 0 12", "get 0 14", "get 0 16", "get 0 18", "get 0 1A"};

} // namespace

TEST_F(MonitorTableTest, NoMonitorMeansNoTraffic)
{
    EXPECT_EQ(GetVCP(-1, VCP_BRIGHTNESS, nullptr), -1);
    EXPECT_EQ(SetVCP(-1, VCP_BRIGHTNESS, 50), -1);
    EXPECT_EQ(host.TakeLog(), Lines{});
    EXPECT_EQ(SetDirectLink(-1, 1), 1);
    EXPECT_EQ(host.TakeLog(), Lines{"directlink -1 = 1"}) << "there -1 means all";
}

TEST_F(MonitorTableTest, EachMonitorIsAskedInOrder)
{
    host.monitors = {ColorMonitor("NRV-PA1"), ColorMonitor("NRV-PT2-LONG")};
    host.monitors[1].capabilities = "(vcp(10 60(01 09)))";
    EXPECT_EQ(InitMonitors(), 1);
    const Lines expected =
        Lines{"count", "name 0", "capabilities 0", "inputs 0: 1 3", "name 1", "capabilities 1", "inputs 1: 1 9"} +
        sevenReads;
    EXPECT_EQ(host.TakeLog(), expected);
    EXPECT_EQ(g_nMonitor, 2);
    EXPECT_STREQ(g_Monitor[0].szModel, "NRV-PA1");
    EXPECT_STREQ(g_Monitor[0].szMccsVer, "2.0");
    EXPECT_STREQ(g_Monitor[1].szModel, "NRV-PT2-LONG") << "all twelve bytes";
    EXPECT_EQ(g_Monitor[0].bTuner, 0u);
    EXPECT_EQ(g_Monitor[1].bTuner, 1u);

    // A second enumeration forgets the first.
    host.monitors = {ColorMonitor("B")};
    host.monitors[0].capabilities = "nothing";
    EXPECT_EQ(InitMonitors(), 1);
    EXPECT_EQ(host.TakeLog(), (Lines{"count", "name 0", "capabilities 0"} + sevenReads))
        << "without a vcp list no input list";
    EXPECT_STREQ(g_Monitor[0].szModel, "B");
    EXPECT_EQ(g_Monitor[0].bVcpCode[0x10], 0u);
}

TEST_F(MonitorTableTest, ACapabilityStringThatFillsItsBuffer)
{
    host.monitors = {ColorMonitor("A")};
    // Only with its last byte it is complete.
    host.monitors[0].capabilities = "vcp(60(01)" + std::string(501, ' ') + ")";
    EXPECT_EQ(InitMonitors(), 1);
    EXPECT_EQ(host.TakeLog(), (Lines{"count", "name 0", "capabilities 0", "inputs 0: 1"} + sevenReads));
    host.monitors[0].capabilities = "vcp(" + std::string(508, '(');
    EXPECT_EQ(InitMonitors(), 1);
}

TEST_F(MonitorTableTest, CountsThatAreNotWhatTheTableHolds)
{
    EXPECT_EQ(InitMonitors(), 0);
    EXPECT_EQ(host.TakeLog(), Lines{"count"});

    host.count = 25;
    EXPECT_EQ(InitMonitors(), 1);
    EXPECT_EQ(g_nMonitor, MAX_MONITOR);
    host.TakeLog();

    for (const LONG count : {-1L, -5L}) {
        host.count = count;
        EXPECT_EQ(InitMonitors(), 1);
        EXPECT_EQ(host.TakeLog(), (Lines{"count"} + sevenReads)) << "settings are read all the same";
    }
    g_bAbort = 1;
    EXPECT_EQ(InitMonitors(), 1);
    EXPECT_EQ(host.TakeLog(), Lines{});
}

TEST_F(MonitorTableTest, AFailureLeavesOutTheRestOfThatMonitorAlone)
{
    host.monitors = {ColorMonitor("A"), ColorMonitor("B")};
    InitMonitors(); // what is known from before does not stay
    const FaultsOfThisThread aim;
    InjectFault(Fault::Event, 3); // count, name 0, then the capabilities of monitor 0
    EXPECT_EQ(InitMonitors(), 1);
    EXPECT_STREQ(g_Monitor[0].szModel, "A");
    EXPECT_EQ(g_Monitor[0].bVcpCode[0x10], 0u);
    EXPECT_EQ(g_Monitor[1].bVcpCode[0x10], 1u);
}

TEST_F(MonitorTableTest, OverrideFile)
{
    BuildCapIniPath();
    strcpy(g_Monitor[0].szModel, "NRV-PA1");
    strcpy(g_Monitor[1].szModel, "NRV-PA2");
    EXPECT_EQ(CapabilityHas(0, "F4"), 0) << "no file";
    IniFolder::Write("lvcap.ini",
                     "[NRV-PA1]\r\nCapability=E0,F2,F4\r\n[NRV-PA2]\r\nCapability=" + std::string(255, '.') + "F4\r\n");
    EXPECT_EQ(CapabilityHas(0, "F4"), 1);
    EXPECT_EQ(CapabilityHas(1, "F4"), 0) << "only 255 characters count";
    EXPECT_EQ(CapabilityHas(2, "F4"), 0) << "no model";
    EXPECT_EQ(CapabilityHas(-1, "F4"), 0);
    EXPECT_EQ(CapabilityHas(MAX_MONITOR, "F4"), 0);
}
