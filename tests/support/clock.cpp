// A settable clock in the place of GetLocalTime.
#include "support/clock.h"

#include "support/faults.h"

#include <windows.h>

#include <mutex>
#include <optional>

static std::mutex s_Lock; // the kernel thread reads the clock, the test sets it
static std::optional<SYSTEMTIME> s_Set;

static void WINAPI FakeGetLocalTime(SYSTEMTIME *time)
{
    const std::lock_guard lock(s_Lock);
    if (s_Set) {
        *time = *s_Set;
        return;
    }
    FILETIME now, local;
    GetSystemTimeAsFileTime(&now);
    FileTimeToLocalFileTime(&now, &local);
    FileTimeToSystemTime(&local, time);
}

STAND_IN(FakeGetLocalTime, "GetLocalTime@4")

// Brings the day of the week, and whatever overflowed, in order.
static SYSTEMTIME Normalised(SYSTEMTIME time, int minutes)
{
    FILETIME file;
    SystemTimeToFileTime(&time, &file);
    ULARGE_INTEGER ticks = {{file.dwLowDateTime, file.dwHighDateTime}};
    ticks.QuadPart += static_cast<ULONGLONG>(static_cast<LONGLONG>(minutes) * 60 * 10'000'000);
    file = {ticks.LowPart, ticks.HighPart};
    FileTimeToSystemTime(&file, &time);
    return time;
}

void SetClock(int year, int month, int day, int hour, int minute)
{
    SYSTEMTIME time = {};
    time.wYear = static_cast<WORD>(year);
    time.wMonth = static_cast<WORD>(month);
    time.wDay = static_cast<WORD>(day);
    time.wHour = static_cast<WORD>(hour);
    time.wMinute = static_cast<WORD>(minute);
    const std::lock_guard lock(s_Lock);
    s_Set = Normalised(time, 0);
}

void AdvanceClock(int minutes)
{
    const std::lock_guard lock(s_Lock);
    if (s_Set)
        s_Set = Normalised(*s_Set, minutes);
}

void ReleaseClock()
{
    const std::lock_guard lock(s_Lock);
    s_Set.reset();
}
