// The monitors of a run, whatever kind they are of.
#include "host/host_monitors.h"

#include "host/base/console.h"
#include "host/base/packet_log.h"
#include "host/base/text.h"
#include "host/simulated/simulated_source.h"
#include "host/windows_monitors/windows_source.h"

bool OpenMonitors(HOSTAPP *app, std::string *error)
{
    if (!app->options.windowsMonitors)
        return OpenSimulatedSource(&app->simulation, app->options.monitors, &app->monitors, error);
    app->monitors = OpenWindowsSource(app->options.fresh);
    return true;
}

std::vector<std::string> LookForMonitors(HOSTAPP *app)
{
    return app->monitors.look(app->monitors.context);
}

std::vector<std::string> MonitorsInUse(HOSTAPP *app)
{
    return app->monitors.inUse(app->monitors.context);
}

void FindMonitors(HOSTAPP *app)
{
    app->monitors.find(app->monitors.context);
    for (const std::string &line : SplitAt(app->monitors.trouble(app->monitors.context, true), '\n')) {
        ConsoleLine("trayhub: " + line);
        LogEvent(line);
    }
}

std::wstring MonitorTrouble(HOSTAPP *app)
{
    return Widen(app->monitors.trouble(app->monitors.context, false));
}

void EndMonitorAccesses(HOSTAPP *app)
{
    app->monitors.stop(app->monitors.context);
}

void CloseMonitors(HOSTAPP *app)
{
    if (app->monitors.close)
        app->isDriverStuck = !app->monitors.close(app->monitors.context);
    app->monitors = {};
    CloseSimulation(&app->simulation);
}
