// Colour settings between monitors and records.
#include "monitor/color_settings.h"

#include "support/plugin_session.h"

namespace {

class ColorSettingsTest : public HostTest {
protected:
    ColorSettingsTest() { host.monitors = {ColorMonitor("A"), ColorMonitor("B")}; }
};

} // namespace

TEST_F(ColorSettingsTest, BrightnessGoesToTheFieldOfTheEcoState)
{
    host.monitors[1].features[VCP_BRIGHTNESS].maximum = 80;
    ReadCurrentSettings(1);
    const COLORSETTING read = {0, 0, 60, 70, 81, 82, 83, 5, 0};
    EXPECT_EQ(memcmp(&g_CurSetting[1], &read, sizeof read), 0);
    EXPECT_EQ(g_nMaxBright[1], 80);
    for (const LONG *maximum : {g_nMaxContrast, g_nMaxRed, g_nMaxGreen, g_nMaxBlue})
        EXPECT_EQ(maximum[1], 100);

    host.monitors[1].features[VCP_ECO_MODE].current = 2; // any value but 0 is on
    host.monitors[1].features[VCP_BRIGHTNESS] = {33, 90};
    ReadCurrentSettings(1);
    EXPECT_EQ(g_CurSetting[1].wBrightEco, 33);
    EXPECT_EQ(g_nMaxBrightEco[1], 90);
    EXPECT_EQ(g_CurSetting[1].wBright, 60);
    EXPECT_EQ(g_nMaxBright[1], 80);
}

TEST_F(ColorSettingsTest, FailedReads)
{
    host.monitors[0].features.clear();
    ReadCurrentSettings(0);
    EXPECT_EQ(g_CurSetting[0].dwEco, 0xFFFFFFFF);
    EXPECT_EQ(g_CurSetting[0].wBrightEco, 0xFFFF) << "an ECO state that can't be read counts as on";
    EXPECT_EQ(g_CurSetting[0].wBright, 0);
    EXPECT_EQ(g_CurSetting[0].wContrast, 0xFFFF);
    EXPECT_EQ(g_CurSetting[0].wColorTemp, -1);
    host.TakeLog();
    for (const LONG monitor : {-1L, MAX_MONITOR, 999L})
        ReadCurrentSettings(monitor);
    EXPECT_EQ(host.TakeLog(), Lines{});
}

TEST_F(ColorSettingsTest, AStopEndsTheReading)
{
    host.plan = [](const TestRequest &request) {
        if (request.code == VCP_CONTRAST)
            g_bAbort = 1;
        return Answer{};
    };
    ReadCurrentSettings(0);
    EXPECT_EQ(host.TakeLog(), (Lines{"get 0 E0", "get 0 10", "get 0 12"}));
    ReadCurrentSettings(0);
    EXPECT_EQ(host.TakeLog(), Lines{}) << "nor does it begin";
    g_bAbort = 0;
    host.plan = [](const TestRequest &) {
        g_bAbort = 1;
        return Answer{};
    };
    ReadCurrentSettings(0);
    EXPECT_EQ(host.TakeLog(), (Lines{"get 0 E0", "get 0 10"})) << "the ECO mode's brightness goes with it";
}

TEST_F(ColorSettingsTest, WhatIsWrittenAndInWhichOrder)
{
    COLORSETTING setting = {0, 20, 40, 50, 61, 62, 63, 10, 0};
    ApplyColorSettings(1, &setting);
    EXPECT_EQ(host.TakeLog(), (Lines{"set 1 E0 = 0", "set 1 10 = 40", "set 1 12 = 50", "set 1 14 = 10"}));
    setting.dwEco = 1;
    setting.wColorTemp = 11;
    ApplyColorSettings(1, &setting);
    EXPECT_EQ(host.TakeLog(), (Lines{"set 1 E0 = 1", "set 1 10 = 20", "set 1 12 = 50", "set 1 14 = 11", "set 1 16 = 61",
                                     "set 1 18 = 62", "set 1 1A = 63"}));
    ApplyColorSettings(-1, &setting);
    EXPECT_EQ(host.TakeLog(), Lines{});
}
