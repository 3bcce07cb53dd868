// Looking for monitors again: which messages begin it, when it is done, what counts as a change, and the thread.
#include <windows.h>

#include <dbt.h>
#include <gtest/gtest.h>

#include "host/display_events.h"
#include "host/monitor_watch.h"
#include "host/windows_monitors/monitor_places.h"
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

// A letter a monitor; a small one is vague.
static std::vector<MONITORIDENTITY> Identities(const char *letters)
{
    std::vector<MONITORIDENTITY> identities;
    for (; *letters; letters++)
        identities.push_back({std::string(1, *letters), *letters >= 'a'});
    return identities;
}

TEST(Redetection, OnlyMonitorsThatWereNeverSeenCountAsNew)
{
    const struct {
        const char *inUse, *seen;
        bool isNew, isNewAtLast;
    } cases[] = {
        {"", "", false, false},
        {"AB", "BA", false, false},
        {"AA", "AA", false, false},
        {"", "A", true, true},
        {"A", "BA", true, true},
        {"A", "AA", true, true},
        {"A", "B", true, true},
        {"AB", "BC", true, true},
        {"AB", "B", false, false},
        {"AA", "A", false, false},
        {"AB", "", false, false},
        // What stands in for one that sleeps, before and after.
        {"AB", "Bx", false, false},
        {"AB", "x", false, false},
        {"AB", "xy", false, false},
        {"x", "A", true, true},
        // One that nothing is known of, at a desk where none is missing.
        {"A", "Ax", false, true},
        {"", "x", false, true},
        {"x", "x", false, false},
        {"x", "xx", false, true},
    };
    for (const auto &one : cases) {
        const auto inUse = Identities(one.inUse), seen = Identities(one.seen);
        EXPECT_EQ(IsAnyNew(inUse, seen, false), one.isNew) << one.inUse << " " << one.seen;
        EXPECT_EQ(IsAnyNew(inUse, seen, true), one.isNewAtLast) << one.inUse << " " << one.seen;
    }
}

// A letter a monitor, a digit behind it its device where that is another one than the letter says; a small one is
// vague.
static std::vector<FOUNDMONITOR> Monitors(const std::string &text)
{
    std::vector<FOUNDMONITOR> monitors;
    for (const char c : text) {
        if (c >= '0' && c <= '9') {
            monitors.back().devices = {std::string(1, c)};
            continue;
        }
        FOUNDMONITOR found = {};
        found.identity = std::string(1, c);
        found.devices = {found.identity};
        found.isVague = c >= 'a';
        monitors.push_back(found);
    }
    return monitors;
}

TEST(Redetection, MonitorsKeepTheirPlaces)
{
    const struct {
        const char *former, *present, *places; // '-' before one that is away
    } cases[] = {
        {"", "AB", "AB"},   {"AB", "BA", "AB"}, {"AB", "CB", "-ABC"},   {"AB", "C", "-A-BC"},
        {"AB", "", "-A-B"}, {"xA", "AB", "AB"}, {"A1B2", "C1B2", "BC"}, {"ABCDEFGHI", "JKL", "-A-B-C-D-E-F-GJKL"},
    };
    for (const auto &one : cases) {
        const auto former = Monitors(one.former), present = Monitors(one.present);
        std::string places;
        for (const MONITORPLACE &place : ArrangeMonitors(former, present))
            places += place.isThere ? present[place.index].identity : "-" + former[place.index].identity;
        EXPECT_EQ(places, one.places);
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
        return Identities("A");
    };
    watch.looked = [&](const LOOK &look) { note(look.seen == Identities("A") ? "looked " : "wrong "); };
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
