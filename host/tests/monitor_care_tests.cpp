// When monitors are left alone, what is kept of them meanwhile, and how they get it back.
#include <windows.h>

#include <gtest/gtest.h>
#include <wtsapi32.h>

#include "host/base/text.h"
#include "host/monitor_care.h"
#include "host/session_state.h"

TEST(SessionState, SaysWhenMonitorsAreToBeLeftAlone)
{
    struct {
        GUID setting;
        DWORD length, value;
    } off = {{0x6FE69556, 0x704A, 0x47A0, {0x8F, 0x24, 0xC2, 0x8D, 0x93, 0x6F, 0xDA, 0x47}}, 4, 0}, dimmed = off,
      on = off, other = off, shorter = off;
    dimmed.value = 2;
    on.value = 1;
    other.setting.Data1++;
    shorter.length = 1;
    constexpr WPARAM SETTING = 0x8013;
    const struct {
        const char *what;
        UINT message;
        WPARAM wParam;
        const void *data;
        SESSIONCHANGE change;
    } steps[] = {
        {"another setting", WM_POWERBROADCAST, SETTING, &other, SESSION_SAME},
        {"too short", WM_POWERBROADCAST, SETTING, &shorter, SESSION_SAME},
        {"nothing said", WM_POWERBROADCAST, SETTING, nullptr, SESSION_SAME},
        {"on", WM_POWERBROADCAST, SETTING, &on, SESSION_SAME},
        {"off", WM_POWERBROADCAST, SETTING, &off, SESSION_RESTS},
        {"going to sleep", WM_POWERBROADCAST, PBT_APMSUSPEND, nullptr, SESSION_SAME},
        {"battery", WM_POWERBROADCAST, PBT_APMPOWERSTATUSCHANGE, nullptr, SESSION_SAME},
        {"awake, in the dark", WM_POWERBROADCAST, PBT_APMRESUMEAUTOMATIC, nullptr, SESSION_SAME},
        {"and with light", WM_POWERBROADCAST, SETTING, &on, SESSION_WAKES},
        {"dimmed", WM_POWERBROADCAST, SETTING, &dimmed, SESSION_SAME},
        {"a user is there", WM_POWERBROADCAST, PBT_APMRESUMESUSPEND, nullptr, SESSION_WAKES},
        {"locked", WM_WTSSESSION_CHANGE, WTS_SESSION_LOCK, nullptr, SESSION_RESTS},
        {"from afar", WM_WTSSESSION_CHANGE, WTS_REMOTE_CONNECT, nullptr, SESSION_SAME},
        {"unlocked there", WM_WTSSESSION_CHANGE, WTS_SESSION_UNLOCK, nullptr, SESSION_SAME},
        {"left", WM_WTSSESSION_CHANGE, WTS_REMOTE_DISCONNECT, nullptr, SESSION_SAME},
        {"logged on", WM_WTSSESSION_CHANGE, WTS_SESSION_LOGON, nullptr, SESSION_SAME},
        {"back", WM_WTSSESSION_CHANGE, WTS_CONSOLE_CONNECT, nullptr, SESSION_WAKES},
        {"somebody else", WM_WTSSESSION_CHANGE, WTS_CONSOLE_DISCONNECT, nullptr, SESSION_RESTS},
        {"and back", WM_WTSSESSION_CHANGE, WTS_CONSOLE_CONNECT, nullptr, SESSION_WAKES},
        {"sleep", WM_POWERBROADCAST, PBT_APMSUSPEND, nullptr, SESSION_RESTS},
        {"emergency", WM_POWERBROADCAST, PBT_APMRESUMECRITICAL, nullptr, SESSION_WAKES},
        {"other messages", WM_DISPLAYCHANGE, PBT_APMSUSPEND, nullptr, SESSION_SAME},
    };
    SESSIONSTATE state = {};
    for (const auto &step : steps)
        EXPECT_EQ(TakeSessionEvent(&state, step.message, step.wParam, reinterpret_cast<LPARAM>(step.data)), step.change)
            << step.what;
}

// Two monitors whose values the test sees, and what was asked of them: "r10 " or "w10=40 ".
static std::array<std::map<BYTE, WORD>, 2> s_values;
static std::string s_asked;
static int s_failures; // of the next accesses

static MONITORRESULT Get(void *, int monitor, DWORD, BYTE code, WORD *value, WORD *)
{
    s_asked += Format("r%02X ", code);
    *value = s_values[static_cast<size_t>(monitor)][code];
    return s_failures-- > 0 ? MONITOR_FAILED : MONITOR_OK;
}

static MONITORRESULT Set(void *, int monitor, DWORD, BYTE code, WORD value)
{
    s_asked += Format("w%02X=%u ", code, value);
    if (s_failures-- > 0)
        return MONITOR_FAILED;
    s_values[static_cast<size_t>(monitor)][code] = value;
    return MONITOR_OK;
}

// Steps: ">10=40" the plug-in writes to the first monitor, "<10" it reads, "!10=40" somebody else sets it there;
// "rest", "wake", and "end" of the plug-in; "away" and "back" of the first monitor; "silent", "twice" and "well" say
// which accesses fail from now on; "look" is made of those that are there.
TEST(MonitorCare, SetsAgainOnceWhatWasForgotten)
{
    const struct {
        const char *steps, *asked; // since the last look began
    } cases[] = {
        {">10=40 !10=20 look", ""},
        {">10=40 >12=50 !10=20 wake look", "r10 w10=40 r12 "},
        {">10=40 !10=20 wake look !10=30 look", ""},
        {">10=40 !10=20 <10 wake look", ""},
        {">10=40 !10=20 away look back look", "r10 w10=40 "},
        {">10=40 !10=20 wake silent look well look", "r10 w10=40 "},
        {">10=40 silent wake look look look look well look", ""},
        {">10=40 !10=20 wake <10 look", "r10 w10=40 "},
        {">10=40 rest >10=60 look", ""},
        {">10=40 rest >10=60 wake look", "r10 w10=60 "},
        {">10=40 >F2=3 rest >10=65535 >F2=65534 !F2=0 wake look", "r10 rF2 wF2=3 "},
        // A colour of 0 that no monitor has taken is what a start restores, and would make the screen dark.
        {"silent >10=0 >12=0 well !10=40 !12=50 wake look", ""},
        {"rest >10=0 >F2=0 !10=40 !F2=3 wake look", "rF2 wF2=0 "},
        {">10=0 !10=40 wake look", "r10 w10=0 "},
        // What changes others comes first, and what it changes is not known any more.
        {">F2=3 >16=9 >14=11 >16=8 >10=7 >E0=1 >10=6 !E0=0 !14=1 wake look", "rE0 wE0=1 r14 w14=11 r10 r16 rF2 "},
        {">10=40 >E0=1 !10=20 wake look", "rE0 "},
        {">10=40 >14=5 >16=9 >04=1 wake look", ""},
        // An input that was held back is set, one that the user may have left since is not; nor is what has no value.
        {">60=5 !60=3 wake look", ""},
        {"rest >E8=258 >60=9 !60=1 wake look", "rE8 wE8=258 r60 w60=9 "},
        {"rest >60=9 wake look !60=3 wake look", ""},
        {"rest >60=9 >60=3 !60=3 wake look", "r60 "},
        {"silent >60=9 well wake look", ""},
        // The last chance to release the buttons, whatever was held back before.
        {"rest end twice >F2=0", "wF2=0 wF2=0 wF2=0 rF2 "},
        {"end >F2=0", "wF2=0 rF2 "},
        {"away look end twice >F2=0", "wF2=0 "},
        {"end twice >10=40", "w10=40 "},
        {">D6=4 >F4=255 >F0=0 >1E=1 !D6=1 !F4=1 wake look", ""},
    };
    const std::vector<MONITORIDENTITY> both = {{"A", false}, {"B", false}}, second = {{"B", false}};
    for (const auto &one : cases) {
        MONITORBACKEND inner = {};
        inner.getVcp = Get;
        inner.setVcp = Set;
        MONITORCARE care = {};
        const MONITORBACKEND backend = StartMonitorCare(&care, inner);
        SetCaredMonitors(&care, both);
        s_values = {};
        s_failures = 0;
        bool isAway = false;
        for (const std::string &step : SplitAt(one.steps, ' ')) {
            unsigned code = 0, number = 0;
            WORD value = 0, maximum = 0;
            sscanf(step.c_str() + 1, "%x=%u", &code, &number);
            const BYTE byte = static_cast<BYTE>(code);
            s_asked.clear();
            if (step[0] == '>')
                backend.setVcp(&care, 0, ACCESS_PATIENCE, byte, static_cast<WORD>(number));
            else if (step[0] == '<')
                backend.getVcp(&care, 0, ACCESS_PATIENCE, byte, &value, &maximum);
            else if (step[0] == '!')
                s_values[0][byte] = static_cast<WORD>(number);
            else if (step == "silent" || step == "twice" || step == "well")
                s_failures = step == "silent" ? 1000 : step == "twice" ? 2 : 0;
            else if (step == "away" || step == "back")
                isAway = step == "away";
            else if (step == "look")
                SettleMonitors(&care, isAway ? second : both);
            else if (step == "end")
                EndMonitorCare(&care);
            else
                RestMonitors(&care, step == "rest");
            if (step == "wake")
                DoubtMonitors(&care);
        }
        EXPECT_EQ(s_asked, one.asked) << one.steps;
    }
}
