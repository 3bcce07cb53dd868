// The clock of the tour, in the import table of this test program itself.
#include <gtest/gtest.h>

#include "tour/tour_clock.h"

// Not inlined: within one function the compiler takes an import for constant.
__attribute__((noinline)) static SYSTEMTIME LocalTime()
{
    SYSTEMTIME time;
    GetLocalTime(&time);
    return time;
}

static void WINAPI GiveALeapDay(SYSTEMTIME *time)
{
    *time = {2024, 2, 4, 29, 23, 59, 59, 0};
}

TEST(TourClock, ReplacesWhatAModuleImports)
{
    const HMODULE self = GetModuleHandleW(nullptr);
    EXPECT_EQ(ReplaceImport(self, "NoSuchFunction", nullptr), nullptr);
    EXPECT_EQ(ReplaceImport(self, "GetLocalTim", nullptr), nullptr) << "the whole name counts";
    void *original = ReplaceImport(self, "GetLocalTime", reinterpret_cast<void *>(GiveALeapDay));
    ASSERT_NE(original, nullptr);
    EXPECT_EQ(LocalTime().wDay, 29);
    EXPECT_EQ(ReplaceImport(self, "GetLocalTime", original), reinterpret_cast<void *>(GiveALeapDay));
    EXPECT_NE(LocalTime().wYear, 2024);
}

TEST(TourClock, GoesOnFromWhereItIsSet)
{
    const SYSTEMTIME eve = {2027, 12, 0, 31, 23, 59, 59, 900};
    SetTourClock(eve);
    EXPECT_EQ(TourClock().wYear, 2027);
    Sleep(150);
    const SYSTEMTIME later = TourClock();
    EXPECT_EQ(later.wYear, 2028);
    EXPECT_EQ(later.wDay, 1);
    EXPECT_EQ(later.wSecond, 0);
    const SYSTEMTIME back = {2006, 5, 0, 1, 20, 0, 0, 0};
    SetTourClock(back);
    EXPECT_EQ(TourClock().wYear, 2006);
    EXPECT_EQ(TourClock().wDayOfWeek, 1) << "worked out from the date";
    SetTourClock(LocalTime());
}
