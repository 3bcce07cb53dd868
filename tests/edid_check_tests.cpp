// The EDID check at stop, down to the bus.
#include "monitor/edid_check.h"

#include "kernel/base/platform.h"
#include "support/fake_ddc_driver.h"
#include "support/plugin_session.h"

#include <algorithm>

namespace {

using Edid = std::array<BYTE, HOST_EDID_SIZE>;

const BYTE header[] = {0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00};

// An EDID with a text at some offset (113: the name), and the header but for one byte.
Edid MakeEdid(const std::string &text, size_t broken = HOST_EDID_SIZE, size_t offset = 113)
{
    Edid edid;
    edid.fill(0x20);
    std::copy(std::begin(header), std::end(header), edid.begin());
    if (broken < edid.size())
        edid[broken] ^= 1;
    std::copy(text.begin(), text.end(), edid.begin() + static_cast<ptrdiff_t>(offset));
    return edid;
}

std::string OpenCall()
{
    return GetPlatformId() == PLATFORM_NT ? "open \\\\.\\DDCCI_IO0 C0000000 3 3 0"
                                          : "open \\\\.\\NRVDDCCI.VXD 0 0 1 4000000";
}

// All calls of one repair, in order.
Lines Repair()
{
    const std::string open = OpenCall();
    return {open,       "start",    "write A0", "write 00", "write 00", "write FF", "write FF", "write FF", "write FF",
            "write FF", "write FF", "write 00", "stop",     "close",    "Sleep 20", open,       "start",    "write A0",
            "write 00", "start",    "write A1", "read 128", "end read", "stop",     "close",    "Sleep 20"};
}

class EdidCheckTest : public HostTest {
protected:
    EdidCheckTest() { SkipPauses(true); }

    void Attach(const std::vector<Edid> &edids)
    {
        host.monitors.assign(edids.size(), ColorMonitor("A"));
        for (size_t i = 0; i < edids.size(); ++i)
            host.monitors[i].edid = edids[i];
        g_nMonitor = static_cast<LONG>(edids.size());
        host.TakeLog();
        TakeRecordedCalls();
    }

    FakeDdcDriver driver;
};

class EdidAtStopTest : public PluginTest {};

} // namespace

TEST_F(EdidCheckTest, WhoIsRepaired)
{
    const struct {
        const char *what;
        Edid edid;
        bool repaired;
    } cases[] = {
        {"intact", MakeEdid("NRV-PT2\n"), false},
        {"first byte", MakeEdid("NRV-PT2\n", 0), true},
        {"last byte of the header", MakeEdid("NRV-PT2\n", 7), true},
        {"byte behind the header", MakeEdid("NRV-PT2\n", 8), false},
        {"PA1", MakeEdid("NRV-PA1\n", 0), true},
        {"PA2", MakeEdid("NRV-PA2\n", 0), true},
        {"PA3", MakeEdid("NRV-PA3\n", 0), true},
        {"PT3", MakeEdid("NRV-PT3\n", 0), true},
        {"name behind something", MakeEdid("New NRV-PA1W", 0), true},
        {"name at the very end", MakeEdid("NRV-PA1", 0, 121), true},
        {"another model", MakeEdid("NRV-PT1\n", 0), false},
        {"small letters", MakeEdid("nrv-pa1\n", 0), false},
        {"name in another descriptor", MakeEdid("NRV-PA1\n", 0, 95), false},
        {"name behind a zero", MakeEdid(std::string("\0NRV-PA1", 8), 0), false},
        {"all zero", Edid{}, false},
    };
    for (const auto &c : cases) {
        Attach({c.edid});
        driver.memory.fill(0x55);
        CheckEdidAtStop();
        EXPECT_EQ(host.TakeLog(), Lines{"edid 0"});
        EXPECT_EQ(TakeRecordedCalls(), c.repaired ? Repair() : Lines{}) << c.what;
        EXPECT_EQ(std::equal(std::begin(header), std::end(header), driver.memory.begin()), c.repaired) << c.what;
        EXPECT_EQ(std::count(driver.memory.begin(), driver.memory.end(), 0x55), c.repaired ? 248 : 256);
    }
}

TEST_F(EdidCheckTest, AStepThatFailsEndsTheRepairOfThatMonitorAlone)
{
    const Lines all = Repair();
    int call = 0;
    for (size_t line = 0; line < all.size(); ++line) {
        if (all[line] == "close" || all[line] == OpenCall() || all[line] == "Sleep 20")
            continue;
        ++call;
        Lines expected(all.begin(), all.begin() + static_cast<ptrdiff_t>(line) + 1);
        if (all[line] == "end read")
            expected.push_back("stop"); // the bus is freed all the same
        expected.push_back("close");
        std::vector<FakeDdcDriver::Outcome> failures = {{std::nullopt}, {0xFFFFFFFF}, {0xFFFFFFFE}};
        if (all[line] != "start")
            failures.push_back({1});
        for (const auto &failure : failures) {
            FakeDdcDriver fresh;
            fresh.outcomes[call] = failure;
            Attach({MakeEdid("NRV-PA1\n", 0), MakeEdid("NRV-PA2\n", 0)});
            CheckEdidAtStop();
            EXPECT_EQ(TakeRecordedCalls(), expected + Repair()) << all[line] << ", call " << call;
        }
    }
    EXPECT_EQ(call, 20);
}

TEST_F(EdidCheckTest, AStartMayReportAnythingElse)
{
    for (const DWORD status : {1ul, 0x80000000ul, 0xFFFFFFFDul}) {
        FakeDdcDriver fresh;
        fresh.quiet = true; // then a start's status must not stay for the next step
        for (const int start : {1, 13, 16})
            fresh.outcomes[start] = {status};
        Attach({MakeEdid("NRV-PA1\n", 0)});
        CheckEdidAtStop();
        EXPECT_EQ(TakeRecordedCalls(), Repair()) << std::hex << status;
    }
}

TEST_F(EdidCheckTest, WithoutTheDriver)
{
    driver.loads = false;
    Attach({MakeEdid("NRV-PA1\n", 0), MakeEdid("NRV-PA2\n", 0)});
    CheckEdidAtStop();
    EXPECT_EQ(TakeRecordedCalls(), (Lines{OpenCall(), OpenCall()}));
}

TEST_F(EdidCheckTest, TheHostIsAskedThreeTimes)
{
    const struct {
        int failures;
        Lines asked, done;
    } cases[] = {{2, {"edid 0", "edid 1"}, Repair() + Repair()}, {3, {"edid 1"}, Repair()}};
    const FaultsOfThisThread aim;
    for (const auto &c : cases) {
        Attach({MakeEdid("NRV-PA1\n", 0), MakeEdid("NRV-PA2\n", 0)});
        InjectFault(Fault::Event, 1, c.failures); // a request that can't be sent
        CheckEdidAtStop();
        EXPECT_EQ(host.TakeLog(), c.asked);
        EXPECT_EQ(TakeRecordedCalls(), c.done) << c.failures;
    }
}

TEST_F(EdidCheckTest, ASilentHostLeavesNoEdidOfTheMonitorBefore)
{
    driver.loads = false; // so the broken EDID is still in the buffer
    Attach({MakeEdid("NRV-PA1\n", 0), MakeEdid("NRV-PA1\n", 0)});
    host.plan = [](const TestRequest &request) {
        return Answer{request.Word(0) == 1 ? Answer::Never : Answer::Inline};
    };
    g_bAbort = 1; // as at every stop: no ten seconds
    CheckEdidAtStop();
    EXPECT_EQ(host.TakeLog(), (Lines{"edid 0", "edid 1"}));
    EXPECT_EQ(TakeRecordedCalls(), Lines{OpenCall()});
}

TEST_F(EdidAtStopTest, TheCheckIsPartOfTheStop)
{
    FakeDdcDriver driver;
    host.monitors = {ColorMonitor("NRV-PA1"), ColorMonitor("NRV-PA2")};
    host.monitors[1].edid = MakeEdid("NRV-PA2\n", 0);
    ASSERT_TRUE(Start());
    StartUp();
    TakeRecordedCalls();
    SkipPauses(true);
    Stop();
    EXPECT_EQ(TakeRecordedCalls(), Repair());
}
