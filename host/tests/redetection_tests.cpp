// Looking for monitors again: which messages begin it, when it is done, what counts as a change, and the thread.
#include <windows.h>

#include <dbt.h>
#include <gtest/gtest.h>

#include "host/display_events.h"
#include "host/monitor_watch.h"
#include "tour/tour_hands.h"

TEST(DisplayEvents, AreToldFromOtherMessages)
{
    DEV_BROADCAST_DEVICEINTERFACE_W monitor = {};
    monitor.dbcc_size = sizeof monitor;
    monitor.dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
    monitor.dbcc_classguid = {0xE6F07B5F, 0xEE97, 0x4A90, {0xB0, 0x76, 0x33, 0xF5, 0x7B, 0xF4, 0xEA, 0xA7}};
    DEV_BROADCAST_DEVICEINTERFACE_W disk = monitor, half = monitor;
    disk.dbcc_classguid.Data1++;
    half.dbcc_size = sizeof(DEV_BROADCAST_HDR);
    DEV_BROADCAST_VOLUME volume = {sizeof volume, DBT_DEVTYP_VOLUME, 0, 4, 0};
    const struct {
        const char *what;
        UINT message;
        WPARAM wParam;
        const void *device;
        bool isEvent;
    } cases[] = {
        {"another resolution", WM_DISPLAYCHANGE, 32, nullptr, true},
        {"awake", WM_POWERBROADCAST, PBT_APMRESUMEAUTOMATIC, nullptr, true},
        {"awake, a user is there", WM_POWERBROADCAST, PBT_APMRESUMESUSPEND, nullptr, true},
        {"awake after an emergency", WM_POWERBROADCAST, PBT_APMRESUMECRITICAL, nullptr, true},
        {"going to sleep", WM_POWERBROADCAST, PBT_APMSUSPEND, nullptr, false},
        {"battery", WM_POWERBROADCAST, PBT_APMPOWERSTATUSCHANGE, nullptr, false},
        {"monitor plugged", WM_DEVICECHANGE, DBT_DEVICEARRIVAL, &monitor, true},
        {"monitor unplugged", WM_DEVICECHANGE, DBT_DEVICEREMOVECOMPLETE, &monitor, true},
        {"monitor asked about", WM_DEVICECHANGE, DBT_DEVICEQUERYREMOVE, &monitor, false},
        {"another device", WM_DEVICECHANGE, DBT_DEVICEARRIVAL, &disk, false},
        {"too short", WM_DEVICECHANGE, DBT_DEVICEARRIVAL, &half, false},
        {"volume", WM_DEVICECHANGE, DBT_DEVICEARRIVAL, &volume, false},
        {"nothing said", WM_DEVICECHANGE, DBT_DEVICEARRIVAL, nullptr, false},
        {"any device", WM_DEVICECHANGE, DBT_DEVNODES_CHANGED, nullptr, false},
        {"colours", WM_SYSCOLORCHANGE, 0, nullptr, false},
    };
    for (const auto &one : cases)
        EXPECT_EQ(IsDisplayEvent(one.message, one.wParam, reinterpret_cast<LPARAM>(one.device)), one.isEvent)
            << one.what;
}

// Each step: the time in ms, and what is asked or done then.
TEST(Redetection, LooksFourTimesWithPatience)
{
    constexpr DWORD START = 0xFFFFF000; // the clock wraps around on the way
    LOOKSERIES series = {};
    EXPECT_EQ(NextLook(series, START), INFINITE);
    StartLooks(&series, START);
    const struct {
        DWORD at, next; // ms since the start; ms until the next look
        bool isLast;
    } looks[] = {{0, 2000, false}, {2000, 3000, false}, {5000, 5000, false}, {10000, INFINITE, true}};
    for (const auto &look : looks) {
        EXPECT_EQ(NextLook(series, START + look.at), 0u) << look.at;
        EXPECT_EQ(TakeLook(&series, START + look.at), look.isLast) << look.at;
        EXPECT_EQ(NextLook(series, START + look.at), look.next) << look.at;
    }

    StartLooks(&series, START);
    TakeLook(&series, START);
    EXPECT_EQ(NextLook(series, START + 6000), 0u) << "the first look took six seconds";
    EXPECT_FALSE(TakeLook(&series, START + 6000)) << "and this one stands for two";
    EXPECT_EQ(NextLook(series, START + 6000), 4000u);
    StartLooks(&series, START + 7000);
    EXPECT_EQ(NextLook(series, START + 7000), 0u) << "another event begins it again";
    EXPECT_TRUE(TakeLook(&series, START + 99000));
}

TEST(Redetection, NewMonitorsCountAtOnceAndMissingOnesInTheEnd)
{
    typedef std::vector<std::string> LIST;
    const struct {
        LIST inUse, seen;
        bool isChange, isChangeAtLast;
    } cases[] = {
        {{}, {}, false, false},
        {{"A", "B"}, {"B", "A"}, false, false},
        {{"A", "A"}, {"A", "A"}, false, false},
        {{}, {"A"}, true, true},
        {{"A"}, {"A", "B"}, true, true},
        {{"A"}, {"A", "A"}, true, true},
        {{"A"}, {"B"}, true, true},
        {{"A", "B"}, {"B", "C"}, true, true},
        {{"A", "B"}, {"A"}, false, true},
        {{"A", "A"}, {"A"}, false, true},
        {{"A"}, {}, false, true},
    };
    for (const auto &one : cases) {
        EXPECT_EQ(IsChange(one.inUse, one.seen, false), one.isChange) << &one - cases;
        EXPECT_EQ(IsChange(one.inUse, one.seen, true), one.isChangeAtLast) << &one - cases;
    }
}

// A look that hangs holds up nobody who asks, and what was asked for meanwhile is done in its order.
TEST(MonitorWatch, WorksThingsOffOneAfterTheOther)
{
    MONITORWATCH watch = {};
    std::mutex mutex;
    std::string done;
    const HANDLE begun = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    const HANDLE gate = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    const auto note = [&](const char *word) {
        std::lock_guard lock(mutex);
        done += word;
    };
    watch.look = [&] {
        note("look ");
        SetEvent(begun);
        WaitForSingleObject(gate, 5000);
        return std::vector<std::string>{"A"};
    };
    watch.looked = [&](const LOOK &look) { note(look.seen == std::vector<std::string>{"A"} ? "looked " : "wrong "); };
    watch.find = [&] { note("find "); };
    watch.found = [&] { note("found "); };
    StartMonitorWatch(&watch);
    WatchMonitors(&watch);
    EXPECT_EQ(WaitForSingleObject(begun, 5000), WAIT_OBJECT_0);
    AskToFindMonitors(&watch);
    SetEvent(gate);
    const auto isOver = [&] {
        std::lock_guard lock(mutex);
        return done == "look looked find found ";
    };
    EXPECT_TRUE(WaitUntil(isOver, 5000)) << done;
    StopMonitorWatch(&watch); // before the second look is due
    CloseHandle(gate);
    CloseHandle(begun);
}
