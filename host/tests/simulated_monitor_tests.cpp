// The simulated monitor: reads, writes, ECO mode, presets, resets, buttons, and the ways in which it can misbehave.
#include <gtest/gtest.h>

#include <cstring>

#include "host/simulated/simulated_monitor.h"
#include "monitor/vcp_codes.h"

static const char s_text[] = "[monitor]\n"
                             "model = TEST\n"
                             "capabilities = (vcp(04 05 08 10 12 14(05 0B) 16 60(01 03) AA B0(07 02) E0 F2 F4))\n"
                             "button1 = MENU\n"
                             "button6 = POWER\n"
                             "[vcp]\n"
                             "04 = 0 / 1\n"
                             "10 = 80 / 100, eco 45\n"
                             "12 = 50 / 100, refuses-above\n"
                             "14 = 5 / 11\n"
                             "16 = 90 / 100, user-presets\n"
                             "1E = 0 / 1, momentary\n"
                             "60 = 1 / 3\n"
                             "C0 = 9 / 65535, read-only\n"
                             "C1 = 1 / 2, fails\n"
                             "C2 = 1 / 2, silent\n"
                             "C3 = 1 / 2, delay 10000\n"
                             "D6 = 1 / 5\n"
                             "E0 = 0 / 1\n"
                             "F2 = 0 / 255\n"
                             "F4 = 255 / 255, button-register";

class SimulatedMonitor : public testing::Test {
protected:
    void SetUp() override
    {
        OpenSimulation(&simulation);
        Add(s_text);
        simulation.changed = [](void *context, int monitor) {
            static_cast<SimulatedMonitor *>(context)->changes.push_back(monitor);
        };
        simulation.changedContext = this;
        backend = SimulationBackend(&simulation);
    }

    void TearDown() override { CloseSimulation(&simulation); }

    void Add(const std::string &text)
    {
        MONITORFILE file;
        std::string error;
        ASSERT_TRUE(ParseMonitorFile(text, "test.ini", &file, &error)) << error;
        AddSimulatedMonitor(&simulation, file);
    }

    // The value, or -1 when the read fails.
    int Read(BYTE code, int *maximumOut = nullptr)
    {
        WORD value = 0, maximum = 0;
        if (backend.getVcp(backend.context, 0, ACCESS_PATIENCE, code, &value, &maximum) != MONITOR_OK)
            return -1;
        if (maximumOut)
            *maximumOut = maximum;
        return value;
    }

    MONITORRESULT Write(BYTE code, WORD value)
    {
        return backend.setVcp(backend.context, 0, ACCESS_PATIENCE, code, value);
    }

    SIMULATION simulation;
    MONITORBACKEND backend;
    std::vector<int> changes;
};

TEST_F(SimulatedMonitor, WritesChangeWhatIsRead)
{
    const struct {
        const char *why;
        BYTE code;
        WORD value;
        MONITORRESULT result;
        int readBack;
    } cases[] = {
        {"plain", VCP_BRIGHTNESS, 30, MONITOR_OK, 30},
        {"limited to the maximum", VCP_BRIGHTNESS, 500, MONITOR_OK, 100},
        {"refused above the maximum", VCP_CONTRAST, 101, MONITOR_IGNORED, 50},
        {"a listed preset", VCP_COLOR_PRESET, 11, MONITOR_OK, 11},
        {"not among the listed values", VCP_COLOR_PRESET, 6, MONITOR_IGNORED, 11},
        {"all ones as a preset", VCP_COLOR_PRESET, 0xFFFF, MONITOR_IGNORED, 11},
        {"momentary", VCP_AUTO_SETUP, 1, MONITOR_OK, 0},
        {"read-only", 0xC0, 1, MONITOR_IGNORED, 9},
        {"listed, not described", 0xAA, 200, MONITOR_OK, 200},
        {"listed with values, not described", 0xB0, 2, MONITOR_OK, 2},
        {"unknown", 0x99, 1, MONITOR_IGNORED, -1},
    };
    for (const auto &one : cases) {
        EXPECT_EQ(Write(one.code, one.value), one.result) << one.why;
        EXPECT_EQ(Read(one.code), one.readBack) << one.why;
    }
    EXPECT_EQ(changes.size(), 6u) << "exactly the writes that took effect are reported";
}

TEST_F(SimulatedMonitor, UndescribedCodesComeFromTheCapabilityString)
{
    int maximum = 0;
    EXPECT_EQ(Read(0xAA, &maximum), 0);
    EXPECT_EQ(maximum, 255);
    EXPECT_EQ(Read(0xB0, &maximum), 7);
    EXPECT_EQ(maximum, 7);
}

TEST_F(SimulatedMonitor, KeepsABrightnessPerEcoState)
{
    EXPECT_EQ(Read(VCP_BRIGHTNESS), 80);
    Write(VCP_ECO_MODE, 1);
    EXPECT_EQ(Read(VCP_BRIGHTNESS), 45);
    Write(VCP_BRIGHTNESS, 30);
    EXPECT_EQ(GetMonitorState(&simulation, 0).brightness.value, 30);
    Write(VCP_ECO_MODE, 0);
    EXPECT_EQ(Read(VCP_BRIGHTNESS), 80);
    Write(VCP_ECO_MODE, 1);
    EXPECT_EQ(Read(VCP_BRIGHTNESS), 30);
}

TEST_F(SimulatedMonitor, GainsCountInUserPresetsOnly)
{
    EXPECT_EQ(Write(VCP_RED_GAIN, 20), MONITOR_IGNORED);
    EXPECT_EQ(Read(VCP_RED_GAIN), 90);
    Write(VCP_COLOR_PRESET, 11);
    EXPECT_EQ(Write(VCP_RED_GAIN, 20), MONITOR_OK);
    EXPECT_EQ(Read(VCP_RED_GAIN), 20);
}

TEST_F(SimulatedMonitor, ResetsRestoreTheirGroup)
{
    const struct {
        BYTE reset;
        int brightness, preset, input;
    } cases[] = {{VCP_RESTORE_LUMINANCE, 80, 11, 3}, {VCP_RESTORE_COLOR, 20, 5, 3}, {VCP_RESTORE_DEFAULTS, 80, 5, 1}};
    for (const auto &one : cases) {
        Write(VCP_BRIGHTNESS, 20);
        Write(VCP_COLOR_PRESET, 11);
        Write(VCP_INPUT_SOURCE, 3);
        EXPECT_EQ(Write(one.reset, 0), MONITOR_IGNORED);
        EXPECT_EQ(Write(one.reset, 1), MONITOR_OK);
        EXPECT_EQ(Read(VCP_BRIGHTNESS), one.brightness) << int(one.reset);
        EXPECT_EQ(Read(VCP_COLOR_PRESET), one.preset) << int(one.reset);
        EXPECT_EQ(Read(VCP_INPUT_SOURCE), one.input) << int(one.reset);
    }
}

TEST_F(SimulatedMonitor, ReportsAPressUntilItIsCleared)
{
    int maximum = 0;
    EXPECT_EQ(Read(VCP_BUTTON_PRESSED, &maximum), 255 << 8);
    EXPECT_TRUE(PressMonitorButton(&simulation, 0, 1));
    EXPECT_EQ(Read(VCP_BUTTON_PRESSED, &maximum), 1 << 8);
    EXPECT_EQ(maximum, 1 << 8);
    EXPECT_EQ(Read(VCP_BUTTON_PRESSED), 1 << 8) << "reading does not clear it";
    EXPECT_EQ(Write(VCP_BUTTON_PRESSED, 7), MONITOR_IGNORED);
    EXPECT_EQ(Write(VCP_BUTTON_PRESSED, 255), MONITOR_OK);
    EXPECT_EQ(Read(VCP_BUTTON_PRESSED, &maximum), 255 << 8);
    EXPECT_EQ(maximum, 255 << 8);
    for (const int absent : {0, 2, 7, -1})
        EXPECT_FALSE(PressMonitorButton(&simulation, 0, absent)) << absent;
}

TEST_F(SimulatedMonitor, TellsHowFarAPressHasCome)
{
    const auto fate = [this] { return GetMonitorState(&simulation, 0).press; };
    EXPECT_EQ(fate(), PRESS_NONE);
    Read(VCP_BUTTON_PRESSED);
    Write(VCP_BUTTON_PRESSED, 255);
    EXPECT_EQ(fate(), PRESS_NONE) << "the plug-in looks all the time";
    PressMonitorButton(&simulation, 0, 1);
    Read(VCP_BRIGHTNESS);
    Write(VCP_BUTTON_PRESSED, 7);
    EXPECT_EQ(fate(), PRESS_WAITING);
    Write(VCP_BUTTON_PRESSED, 255);
    EXPECT_EQ(fate(), PRESS_LOST) << "cleared unread";
    PressMonitorButton(&simulation, 0, 1);
    Read(VCP_BUTTON_PRESSED);
    EXPECT_EQ(fate(), PRESS_READ);
    Write(VCP_BUTTON_PRESSED, 255);
    EXPECT_EQ(fate(), PRESS_TAKEN);
    PressMonitorButton(&simulation, 0, 6);
    EXPECT_EQ(fate(), PRESS_WAITING) << "each press anew";
}

TEST_F(SimulatedMonitor, LockTakesTheFunctionAndNotTheReport)
{
    PressMonitorButton(&simulation, 0, 6);
    EXPECT_EQ(Read(VCP_POWER_MODE), POWER_MODE_OFF);
    EXPECT_EQ(Read(VCP_BUTTON_PRESSED), 128 << 8);
    PressMonitorButton(&simulation, 0, 6);
    EXPECT_EQ(Read(VCP_POWER_MODE), POWER_MODE_ON);
    Write(VCP_BUTTON_PRESSED, 255);
    Write(VCP_BUTTON_LOCK, 128);
    PressMonitorButton(&simulation, 0, 6);
    EXPECT_EQ(Read(VCP_POWER_MODE), POWER_MODE_ON);
    EXPECT_EQ(Read(VCP_BUTTON_PRESSED), 128 << 8);

    std::string hiding = s_text;
    Add(hiding + ", hides-locked");
    backend.setVcp(backend.context, 1, ACCESS_PATIENCE, VCP_BUTTON_LOCK, 128);
    PressMonitorButton(&simulation, 1, 6);
    EXPECT_EQ(GetMonitorState(&simulation, 1).pressed, BUTTON_PRESSED_NONE);
    EXPECT_EQ(GetMonitorState(&simulation, 1).press, PRESS_UNREPORTED);
    PressMonitorButton(&simulation, 1, 1);
    EXPECT_EQ(GetMonitorState(&simulation, 1).pressed, 1);
}

TEST_F(SimulatedMonitor, MisbehavesAsDescribed)
{
    WORD value = 77, maximum = 77;
    EXPECT_EQ(backend.getVcp(backend.context, 0, ACCESS_PATIENCE, 0xC1, &value, &maximum), MONITOR_FAILED);
    EXPECT_EQ(Write(0xC1, 1), MONITOR_FAILED);
    EXPECT_EQ(backend.getVcp(backend.context, 0, ACCESS_PATIENCE, 0xC2, &value, &maximum), MONITOR_SILENT);
    EXPECT_EQ(value, 77) << "a failed read leaves its results alone";

    // Ten seconds long, but for the stop.
    const DWORD start = GetTickCount();
    EndSimulationDelays(&simulation);
    EXPECT_EQ(Read(0xC3), 1);
    EXPECT_LT(GetTickCount() - start, 5000u);

    std::string silent = s_text;
    silent.insert(silent.find("button1"), "answers = no\n");
    Add(silent);
    char name[HOST_NAME_SIZE], capabilities[HOST_CAPABILITIES_SIZE];
    EXPECT_EQ(backend.getVcp(backend.context, 1, ACCESS_PATIENCE, VCP_BRIGHTNESS, &value, &maximum), MONITOR_SILENT);
    EXPECT_EQ(backend.capabilities(backend.context, 1, ACCESS_PATIENCE, capabilities), MONITOR_SILENT);
    EXPECT_EQ(backend.name(backend.context, 1, ACCESS_PATIENCE, name), MONITOR_OK)
        << "the name is not asked of the monitor";
}

TEST_F(SimulatedMonitor, DelayTakesItsTime)
{
    std::string slow = s_text;
    slow.insert(slow.find("button1"), "delay = 60\n");
    Add(slow);
    WORD value = 0, maximum = 0;
    const DWORD start = GetTickCount();
    EXPECT_EQ(backend.getVcp(backend.context, 1, ACCESS_PATIENCE, VCP_BRIGHTNESS, &value, &maximum), MONITOR_OK);
    EXPECT_GE(GetTickCount() - start, 50u);
    EXPECT_EQ(backend.setVcp(backend.context, 1, 20, VCP_BRIGHTNESS, 30), MONITOR_FAILED)
        << "longer than the caller waits";
    EXPECT_NE(GetMonitorState(&simulation, 1).brightness.value, 30);
}

TEST_F(SimulatedMonitor, RefusesMonitorsThatAreNotThere)
{
    for (const int monitor : {-1, 1, 0x7FFFFFFF}) {
        char text[HOST_CAPABILITIES_SIZE];
        BYTE edid[HOST_EDID_SIZE];
        WORD value = 0, maximum = 0;
        const DWORD flags[HOST_INPUT_COUNT] = {};
        EXPECT_EQ(backend.name(backend.context, monitor, ACCESS_PATIENCE, text), MONITOR_FAILED);
        EXPECT_EQ(backend.capabilities(backend.context, monitor, ACCESS_PATIENCE, text), MONITOR_FAILED);
        EXPECT_EQ(backend.edid(backend.context, monitor, edid), MONITOR_FAILED);
        EXPECT_EQ(backend.getVcp(backend.context, monitor, ACCESS_PATIENCE, VCP_BRIGHTNESS, &value, &maximum),
                  MONITOR_FAILED);
        EXPECT_EQ(backend.setVcp(backend.context, monitor, ACCESS_PATIENCE, VCP_BRIGHTNESS, 1), MONITOR_FAILED);
        EXPECT_EQ(backend.inputList(backend.context, monitor, flags), MONITOR_FAILED);
        EXPECT_FALSE(PressMonitorButton(&simulation, monitor, 1));
    }
    EXPECT_EQ(backend.directLink(backend.context, 1, true), MONITOR_FAILED);
    EXPECT_EQ(backend.directLink(backend.context, -1, true), MONITOR_OK) << "-1 stands for all";
    EXPECT_TRUE(GetMonitorState(&simulation, 0).directLink);
}
