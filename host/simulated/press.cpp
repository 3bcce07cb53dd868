// Presses of front-panel buttons, and those of the command line one after the other.
#include "host/simulated/press.h"

#include "host/base/console.h"
#include "host/base/packet_log.h"
#include "host/base/text.h"
#include "monitor/vcp_codes.h"

bool PressAndLog(SIMULATION *simulation, int monitor, int button)
{
    const MONITORSTATE state = GetMonitorState(simulation, monitor);
    const std::string label = ButtonBit(button) ? state.labels[static_cast<size_t>(button - 1)] : "";
    if (!label.empty())
        LogEvent(Format("button %d (%s) of monitor %d (%s) is pressed", button, label.c_str(), monitor + 1,
                        state.model.c_str()));
    return PressMonitorButton(simulation, monitor, button);
}

static std::string ButtonList(const MONITORSTATE &state)
{
    std::string text;
    for (size_t i = 0; i < state.labels.size(); i++)
        if (!state.labels[i].empty())
            text += Format("%s%u %s", text.empty() ? "" : ", ", static_cast<unsigned>(i + 1), state.labels[i].c_str());
    return text.empty() ? "none" : text;
}

int FindPressedButton(SIMULATION *simulation, const PRESS &press, std::string *error)
{
    const size_t count = simulation->monitors.size();
    if (static_cast<size_t>(press.monitor) >= count) {
        *error = Format("there is no monitor %d, only %u", press.monitor + 1, static_cast<unsigned>(count));
        return 0;
    }
    const MONITORSTATE state = GetMonitorState(simulation, press.monitor);
    unsigned number = 0;
    ParseNumber(press.button, 10, MONITOR_BUTTON_COUNT, &number);
    for (int button = 1; button <= MONITOR_BUTTON_COUNT; button++) {
        const std::string &label = state.labels[static_cast<size_t>(button - 1)];
        const bool isMeant = number ? static_cast<int>(number) == button : EqualNoCase(label, press.button);
        if (isMeant && !label.empty())
            return button;
    }
    *error = Format("monitor %d (%s) has no button '%s'; its buttons are: ", press.monitor + 1, state.model.c_str(),
                    press.button.c_str()) +
             ButtonList(state);
    return 0;
}

// ---- Pressing -------------------------------------------------------------------------------------------------------

static void MakePress(const PRESS &press, SIMULATION *simulation)
{
    std::string error;
    PressAndLog(simulation, press.monitor, FindPressedButton(simulation, press, &error));
}

// What became of a press; empty while that is open.
static std::string DescribeFate(PRESSFATE fate, DWORD elapsed)
{
    const bool isOver = elapsed >= PRESS_PATIENCE;
    switch (fate) {
    case PRESS_UNREPORTED:
        return "pressed, but the monitor does not report it";
    case PRESS_WAITING:
        return isOver
                   ? Format("not read within %lu seconds; the plug-in looks at the buttons while a launcher function "
                            "is switched on, of models that lvcap.ini lists with F4",
                            PRESS_PATIENCE / 1000)
                   : "";
    case PRESS_READ:
        return isOver ? Format("read, but not acknowledged within %lu seconds", PRESS_PATIENCE / 1000) : "";
    case PRESS_TAKEN:
        return Format("read and acknowledged after %lu ms", elapsed);
    case PRESS_LOST:
        return "cleared before it was read";
    default:
        return "not pressed";
    }
}

bool StepPresses(PRESSRUN *run, const std::vector<PRESS> &presses, SIMULATION *simulation, DWORD now)
{
    if (run->done == presses.size())
        return true;
    const PRESS &press = presses[run->done];
    if (!run->waits) {
        MakePress(press, simulation);
        run->waits = true;
        run->tick = now;
    }
    const PRESSFATE fate = GetMonitorState(simulation, press.monitor).press;
    const std::string words = DescribeFate(fate, now - run->tick);
    if (words.empty())
        return false;
    ConsoleLine("press " + press.text + ": " + words);
    run->failed = run->failed || fate != PRESS_TAKEN;
    run->waits = false;
    run->done++;
    return run->done == presses.size();
}
