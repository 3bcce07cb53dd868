// Requests against hosts that answer rightly, late, wrongly and never.
#include "kernel/link/host_request.h"

#include "kernel/link/host_protocol.h"
#include "support/plugin_session.h"

namespace {

class HostRequestTest : public HostTest {
protected:
    HostRequestTest()
    {
        host.monitors = {ColorMonitor("NRV-PA1")};
        host.monitors[0].edid[0] = 0xAB;
    }

    void Plan(Answer::Kind kind, DWORD delay = 0)
    {
        host.plan = [=](const TestRequest &) { return Answer{kind, delay}; };
    }
};

// All request functions, with what they give without an answer.
struct RequestCase {
    const char *logged;
    LONG (*call)();
    LONG answered;
    LONG unanswered;
    LONG unsent;
};

const RequestCase requests[] = {
    {"set 0 10 = 50", [] { return HostSetVCP(0, 0x10, 50); }, 1, -1, -1},
    {"get 0 12", [] { return HostGetVCP(0, 0x12, nullptr); }, 70, -1, -1},
    {"get 3 12", [] { return HostGetVCP(3, 0x12, nullptr); }, -1, -1, -1},
    {"inputs 0: 1 3",
     [] {
         const uint32_t flags[16] = {0, 1, 0, 1};
         return static_cast<LONG>(HostSetInputList(0, flags));
     },
     1, 1, 0},
    {"directlink -1 = 1", [] { return HostSetDirectLink(-1, 1); }, 1, -1, -1},
    {"directlink 5 = 0", [] { return HostSetDirectLink(5, 0); }, 1, 5, 5},
    {"count", [] { return HostGetMonitorCount(); }, 1, -1, -1},
    {"name 0",
     [] {
         char name[12];
         return static_cast<LONG>(HostGetMonitorName(0, name));
     },
     1, 1, 0},
    {"capabilities 0",
     [] {
         char text[512];
         return static_cast<LONG>(HostGetCapabilities(0, text));
     },
     1, 1, 0},
    {"edid 0",
     [] {
         BYTE edid[128];
         return HostGetEDID(0, edid, sizeof edid);
     },
     128, 128, -1},
};

} // namespace

TEST_F(HostRequestTest, AnsweredInsideTheMessage)
{
    for (const RequestCase &request : requests) {
        EXPECT_EQ(request.call(), request.answered) << request.logged;
        EXPECT_EQ(host.TakeLog(), Lines{request.logged});
    }
    LONG maximum = 0;
    EXPECT_EQ(HostGetVCP(0, 0x12, &maximum), 70);
    EXPECT_EQ(maximum, 100);
    char name[12];
    HostGetMonitorName(0, name);
    EXPECT_EQ(memcmp(name, "NRV-PA1\0\0\0\0\0", sizeof name), 0);
    BYTE edid[128];
    HostGetEDID(0, edid, sizeof edid);
    EXPECT_EQ(edid[0], 0xAB);
}

TEST_F(HostRequestTest, AnsweredLaterFromAnotherThreadOrTwice)
{
    for (const DWORD delay : {50u, 3000u}) {
        Plan(Answer::Later, delay);
        EXPECT_EQ(HostGetVCP(0, 0x12, nullptr), 70) << delay;
    }
    Plan(Answer::Twice);
    for (int round = 0; round < 3; ++round)
        for (const RequestCase &request : requests)
            EXPECT_EQ(request.call(), request.answered) << request.logged;
}

TEST_F(HostRequestTest, WrongAnswersCountAsNone)
{
    // All at once, each in ten waits of a second.
    SkipWaits(true);
    const Answer::Kind kinds[] = {Answer::Never,       Answer::WrongSize,    Answer::ShortBlock,
                                  Answer::WrongSource, Answer::WrongCommand, Answer::WrongNumber};
    // Codes beyond the table of kinds get no answer.
    host.plan = [&](const TestRequest &request) {
        return Answer{request.code < std::size(kinds) ? kinds[request.code] : Answer::Never, 0};
    };
    std::vector<std::thread> askers;
    for (const Answer::Kind &kind : kinds)
        askers.emplace_back([&] {
            LONG maximum = 77;
            EXPECT_EQ(HostGetVCP(0, static_cast<BYTE>(&kind - kinds), &maximum), -1) << &kind - kinds;
            EXPECT_EQ(maximum, 77) << "without an answer the maximum stays as it was";
        });
    for (const RequestCase &request : requests)
        askers.emplace_back([&] { EXPECT_EQ(request.call(), request.unanswered) << request.logged; });
    for (std::thread &asker : askers)
        asker.join();
    EXPECT_EQ(SkipWaits(false), 10 * static_cast<int>(askers.size()));
}

TEST_F(HostRequestTest, TheStopEndsAWaitWithinASecond)
{
    Plan(Answer::Never);
    g_bAbort = 1;
    SkipWaits(true);
    EXPECT_EQ(HostGetVCP(0, 0x12, nullptr), -1);
    EXPECT_EQ(SkipWaits(false), 1);

    const uint32_t flags[16] = {};
    host.TakeLog();
    EXPECT_EQ(HostSetInputList(0, flags), 0);
    EXPECT_EQ(host.TakeLog(), Lines{}) << "not even sent once the plug-in stops";
}

TEST_F(HostRequestTest, NothingIsSentWithoutANumberOrAnEvent)
{
    const FaultsOfThisThread aim;
    for (const RequestCase &request : requests) {
        InjectFault(Fault::Event);
        EXPECT_EQ(request.call(), request.unsent) << request.logged;
    }
    EXPECT_EQ(NewUniqueID(&host.address), 1u) << "a failed request gives its number back";
    while (NewUniqueID(&host.address) != REQUEST_NONE) {
    }
    for (const RequestCase &request : requests)
        EXPECT_EQ(request.call(), request.unsent) << request.logged;
    BYTE edid[127];
    EXPECT_EQ(HostGetEDID(0, edid, sizeof edid), -1);
    EXPECT_EQ(host.TakeLog(), Lines{});
}

TEST_F(HostRequestTest, BeforeTheHostIsKnownRequestsGoOutWithNumberZero)
{
    g_wHostID = ENDPOINT_ID_UNKNOWN;
    EXPECT_EQ(HostGetMonitorCount(), 1);
    EXPECT_EQ(HostGetMonitorCount(), 1);
    const auto sent = host.Requests();
    ASSERT_EQ(sent.size(), 2u);
    EXPECT_EQ(sent[0].id, 0u);
    EXPECT_EQ(sent[0].packet.dst.wID, ENDPOINT_ID_UNKNOWN);
    EXPECT_EQ(sent[1].id, 1u) << "the first answer has told the host's identifier";
}

TEST_F(HostRequestTest, NoticesGoToNobodyAndKeepTheirNumbers)
{
    SendNotice(HOST_NOTICE_STARTING);
    SendNotice(HOST_NOTICE_STARTED);
    const auto sent = host.Requests();
    ASSERT_EQ(sent.size(), 2u);
    const ENDPOINT nobody = {};
    EXPECT_EQ(memcmp(&sent[0].packet.dst, &nobody, sizeof nobody), 0);
    EXPECT_EQ(sent[0].packet.src.wID, 7);
    EXPECT_EQ(sent[1].id, 2u);

    while (NewUniqueID(&host.address) != REQUEST_NONE) {
    }
    SendNotice(HOST_NOTICE_STARTED);
    EXPECT_EQ(host.Requests().back().id, REQUEST_NONE) << "sent all the same";
}

// The host answers late, again and again, while numbers are reused at once: each answer must be its own.
TEST_F(HostRequestTest, ManyThreadsGetTheirOwnAnswersAndLeaveNothingBehind)
{
    for (BYTE code = 0; code < 4; ++code)
        host.monitors[0].features[code] = {code * 10, 200 + code};
    host.plan = [](const TestRequest &request) {
        return request.id % 2 ? Answer{Answer::Twice} : Answer{Answer::Later, 1};
    };
    const auto ask = [](BYTE code) {
        for (int round = 0; round < 50; ++round) {
            LONG maximum = 0;
            ASSERT_EQ(HostGetVCP(0, code, &maximum), code * 10);
            ASSERT_EQ(maximum, 200 + code);
        }
    };
    std::vector<std::thread> threads;
    for (BYTE code = 0; code < 4; ++code)
        threads.emplace_back(ask, code);
    for (std::thread &thread : threads)
        thread.join();
    for (DWORD id = 0; id < REQUEST_COUNT; ++id) {
        EXPECT_EQ(g_UniqueID[id].bInUse, 0) << id;
        EXPECT_EQ(g_ReplySlot[id].lpBuffer, nullptr) << id;
    }

    Plan(Answer::Inline);
    const FaultsOfThisThread aim;
    ExpectNothingLeft(100, [] {
        HostGetVCP(0, 0x12, nullptr);
        SendNotice(HOST_NOTICE_STARTED);
        InjectFault(Fault::Event);
        HostGetVCP(0, 0x12, nullptr);
    });
    EXPECT_EQ(FindDeafCounter(), nullptr);
}
