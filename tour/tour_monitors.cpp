// Looks into the tour's monitors: simulated ones, or those behind the stand-in for dxva2.dll.
#include "tour/tour_monitors.h"

#include "monitor/vcp_codes.h"
#include "tests/dxva2_stand_in/stand_in.h"

// Null when Windows' own library is loaded, or none.
static decltype(&StandInFeature) FindStandIn()
{
    const HMODULE module = GetModuleHandleW(L"dxva2.dll");
    return module ? reinterpret_cast<decltype(&StandInFeature)>(
                        reinterpret_cast<void *>(GetProcAddress(module, "StandInFeature")))
                  : nullptr;
}

bool FindTourMonitors(const HOSTAPP *app, std::string *error)
{
    if (!app->monitors.simulation.monitors.empty() || FindStandIn())
        return true;
    *error = "a tour plays with its monitors' values, so it needs simulated ones: --monitors names them";
    return false;
}

bool HaveMonitorWindows(const TOUR *tour)
{
    return !tour->app->monitors.simulation.monitors.empty();
}

// Both 0 when the monitor has no such code.
static MONITORSTATE::LEVEL StandInLevel(int monitor, BYTE code)
{
    MONITORSTATE::LEVEL level = {};
    if (!FindStandIn()(monitor, code, &level.value, &level.maximum))
        level = {};
    return level;
}

static bool HasCode(int monitor, BYTE code)
{
    WORD value = 0, maximum = 0;
    return FindStandIn()(monitor, code, &value, &maximum) != FALSE;
}

int TourMonitorCount(const TOUR *tour)
{
    if (HaveMonitorWindows(tour))
        return static_cast<int>(tour->app->monitors.simulation.monitors.size());
    int count = 0;
    while (HasCode(count, VCP_BRIGHTNESS))
        count++;
    return count;
}

MONITORSTATE TourMonitor(const TOUR *tour, int monitor)
{
    if (HaveMonitorWindows(tour))
        return GetMonitorState(&tour->app->monitors.simulation, monitor);
    MONITORSTATE state = {};
    state.powered = !HasCode(monitor, VCP_POWER_MODE) || StandInLevel(monitor, VCP_POWER_MODE).value == POWER_MODE_ON;
    state.eco = StandInLevel(monitor, VCP_ECO_MODE).value != 0;
    state.preset = StandInLevel(monitor, VCP_COLOR_PRESET).value;
    state.isUserPreset = state.preset >= COLOR_PRESET_FIRST_USER;
    state.input = StandInLevel(monitor, VCP_INPUT_SOURCE).value;
    state.hasLock = HasCode(monitor, VCP_BUTTON_LOCK);
    state.lockMask = static_cast<BYTE>(StandInLevel(monitor, VCP_BUTTON_LOCK).value);
    state.pressed = BUTTON_PRESSED_NONE;
    state.brightness = StandInLevel(monitor, VCP_BRIGHTNESS);
    state.contrast = StandInLevel(monitor, VCP_CONTRAST);
    state.gains[0] = StandInLevel(monitor, VCP_RED_GAIN);
    state.gains[1] = StandInLevel(monitor, VCP_GREEN_GAIN);
    state.gains[2] = StandInLevel(monitor, VCP_BLUE_GAIN);
    const std::vector<WIREMONITOR> wire = CopyWireMonitors(&tour->app->plugin.router);
    state.directLink = static_cast<size_t>(monitor) < wire.size() && wire[static_cast<size_t>(monitor)].directLink;
    return state;
}
