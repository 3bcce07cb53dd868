// Presses of the command line: what they mean, in which order they are made, and what is said about each.
#include <gtest/gtest.h>

#include "host/simulated/monitor_picture.h"
#include "host/simulated/press.h"
#include "monitor/vcp_codes.h"

static const char s_reporting[] = "[monitor]\nmodel = FIRST\ncapabilities = (vcp(10 F2 F4))\n"
                                  "button1 = MENU\nbutton2 = +\nbutton3 = 6:9\nbutton6 = Power\n"
                                  "[vcp]\nF4 = 255 / 255, button-register";
static const char s_mute[] = "[monitor]\nmodel = SECOND\ncapabilities = (vcp(10))\nbutton1 = MENU";

class Press : public testing::Test {
public:
    void SetUp() override
    {
        OpenSimulation(&simulation);
        for (const char *text : {s_reporting, s_mute}) {
            MONITORFILE file;
            std::string error;
            ASSERT_TRUE(ParseMonitorFile(text, "test.ini", &file, &error)) << error;
            AddSimulatedMonitor(&simulation, file);
        }
        backend = SimulationBackend(&simulation);
    }

    void TearDown() override { CloseSimulation(&simulation); }

    std::vector<PRESS> Presses(std::initializer_list<const char *> texts)
    {
        std::vector<PRESS> presses;
        for (const char *text : texts) {
            std::string error;
            EXPECT_TRUE(ParsePress(text, &presses.emplace_back(), &error)) << error;
        }
        return presses;
    }

    // The two things that a poll of the plug-in does. Look returns the button's code.
    int Look()
    {
        WORD value = 0, maximum = 0;
        backend.getVcp(backend.context, 0, ACCESS_PATIENCE, VCP_BUTTON_PRESSED, &value, &maximum);
        return value >> 8;
    }
    void Clear() { backend.setVcp(backend.context, 0, ACCESS_PATIENCE, VCP_BUTTON_PRESSED, BUTTON_PRESSED_NONE); }

    int Poll()
    {
        const int code = Look();
        Clear();
        return code;
    }

    SIMULATION simulation;
    MONITORBACKEND backend;
};

TEST_F(Press, MeansAButtonOfAMonitorThatIsThere)
{
    const struct {
        const char *text;
        int button;        // 0: refused
        const char *error; // part of the reason
    } cases[] = {
        {"1:1", 1, ""},
        {"1:6", 6, ""},
        {" 1 : menu ", 1, ""},
        {"1:POWER", 6, ""},
        {"1:+", 2, ""},
        {"1:6:9", 3, ""},
        {"2:1", 1, ""},
        {"1:4", 0, "no button '4'; its buttons are: 1 MENU, 2 +, 3 6:9, 6 Power"},
        {"1:7", 0, "no button '7'"},
        {"1:0", 0, "no button '0'"},
        {"1:-1", 0, "no button '-1'"},
        {"2:POWER", 0, "monitor 2 (SECOND) has no button 'POWER'"},
        {"3:1", 0, "there is no monitor 3, only 2"},
        {"1000:1", 0, "there is no monitor 1000"},
        {"1001:1", 0, "is not MONITOR:BUTTON"},
        {"0:1", 0, "is not MONITOR:BUTTON"},
        {"-1:1", 0, "is not MONITOR:BUTTON"},
        {"4294967297:1", 0, "is not MONITOR:BUTTON"},
        {"1", 0, "is not MONITOR:BUTTON"},
        {"1:", 0, "is not MONITOR:BUTTON"},
        {"1: ", 0, "is not MONITOR:BUTTON"},
        {":1", 0, "is not MONITOR:BUTTON"},
        {"", 0, "is not MONITOR:BUTTON"},
    };
    for (const auto &one : cases) {
        PRESS press;
        std::string error;
        const int button = ParsePress(one.text, &press, &error) ? FindPressedButton(&simulation, press, &error) : 0;
        EXPECT_EQ(button, one.button) << one.text;
        EXPECT_NE(error.find(one.error), std::string::npos) << one.text << ": " << error;
        EXPECT_EQ(error.empty(), one.button != 0) << one.text;
    }
}

TEST_F(Press, WaitsUntilTheOneBeforeItIsTaken)
{
    const std::vector<PRESS> presses = Presses({"1:MENU", "1:2", "1:POWER"});
    PRESSRUN run = {};
    DWORD now = 0xFFFFFF00; // the clock may begin anew
    for (const int code : {1, 2, 128}) {
        for (int i = 0; i < 3; i++)
            EXPECT_FALSE(StepPresses(&run, presses, &simulation, now += 1000));
        EXPECT_EQ(Poll(), code);
        EXPECT_EQ(StepPresses(&run, presses, &simulation, now += 50), code == 128);
    }
    EXPECT_FALSE(run.failed);
    EXPECT_TRUE(StepPresses(&run, presses, &simulation, now));
    EXPECT_EQ(Poll(), BUTTON_PRESSED_NONE) << "none is made twice";
}

TEST_F(Press, NotTakenIsAFailureAndHoldsNothingUp)
{
    const struct {
        const char *why;
        void (*meanwhile)(Press *test);
        bool waits; // until the time is over
    } cases[] = {
        {"never read", [](Press *) {}, true},
        {"read only", [](Press *test) { test->Look(); }, true},
        {"cleared unread", [](Press *test) { test->Clear(); }, false},
    };
    for (const auto &one : cases) {
        const std::vector<PRESS> presses = Presses({"1:1", "1:2"});
        PRESSRUN run = {};
        EXPECT_FALSE(StepPresses(&run, presses, &simulation, 0)) << one.why;
        one.meanwhile(this);
        StepPresses(&run, presses, &simulation, PRESS_PATIENCE - 1);
        EXPECT_EQ(run.done, one.waits ? 0u : 1u) << one.why;
        StepPresses(&run, presses, &simulation, PRESS_PATIENCE);
        EXPECT_EQ(run.done, 1u) << one.why;
        StepPresses(&run, presses, &simulation, PRESS_PATIENCE);
        EXPECT_EQ(Poll(), 2) << "the next is made all the same";
        EXPECT_TRUE(StepPresses(&run, presses, &simulation, PRESS_PATIENCE)) << one.why;
        EXPECT_TRUE(run.failed) << one.why;
    }

    PRESSRUN run = {};
    EXPECT_TRUE(StepPresses(&run, Presses({"2:MENU"}), &simulation, 0)) << "nobody waits for what is not reported";
    EXPECT_TRUE(run.failed);
}

TEST_F(Press, ReachesTheButtonsWhereTheyStandInThePicture)
{
    for (int monitor = 0; monitor < 2; monitor++) {
        const MONITORSTATE state = GetMonitorState(&simulation, monitor);
        for (int button = 1; button <= MONITOR_BUTTON_COUNT; button++) {
            const RECT place = MonitorButtonPlace(state, button);
            const bool isThere = !state.labels[static_cast<size_t>(button - 1)].empty();
            if (isThere) {
                EXPECT_EQ(MonitorButtonAt(state, {(place.left + place.right) / 2, (place.top + place.bottom) / 2}),
                          button);
            }
            EXPECT_EQ(PressMonitorButton(&simulation, monitor, button), isThere) << monitor << " " << button;
        }
    }
    EXPECT_EQ(GetMonitorState(&simulation, 0).pressCount, 4u);
    EXPECT_EQ(GetMonitorState(&simulation, 1).pressCount, 1u);
}
