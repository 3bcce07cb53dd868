// The monitors of a run, whatever kind they are of.
#include "host/host_monitors.h"

#include "host/base/console.h"
#include "host/base/packet_log.h"
#include "host/base/text.h"
#include "host/simulated/simulated_source.h"
#include "host/windows_monitors/windows_source.h"

bool OpenMonitors(HOSTMONITORS *monitors, const OPTIONS &options, std::string *error)
{
    OpenSimulation(&monitors->simulation);
    if (options.windowsMonitors)
        monitors->source = OpenWindowsSource(options.fresh);
    else if (!OpenSimulatedSource(&monitors->simulation, options.monitors, &monitors->source, error))
        return false;
    monitors->care = new MONITORCARE{};
    monitors->source.backend = StartMonitorCare(monitors->care, monitors->source.backend);
    return true;
}

std::vector<MONITORIDENTITY> LookForMonitors(HOSTMONITORS *monitors)
{
    const std::vector<MONITORIDENTITY> seen = monitors->source.look(monitors->source.context);
    SettleMonitors(monitors->care, seen);
    return seen;
}

std::vector<MONITORIDENTITY> MonitorsInUse(const HOSTMONITORS *monitors)
{
    return monitors->source.inUse(monitors->source.context);
}

void FindMonitors(HOSTMONITORS *monitors, bool keepsPlaces)
{
    monitors->source.find(monitors->source.context, keepsPlaces);
    SetCaredMonitors(monitors->care, MonitorsInUse(monitors));
    for (const std::string &line : SplitAt(monitors->source.trouble(monitors->source.context, true), '\n')) {
        ConsoleLine("trayhub: " + line);
        LogEvent(line);
    }
}

void LeaveMonitorsAlone(HOSTMONITORS *monitors, bool areLeftAlone)
{
    RestMonitors(monitors->care, areLeftAlone);
    if (!areLeftAlone)
        DoubtMonitors(monitors->care);
    monitors->source.rest(monitors->source.context, areLeftAlone);
}

int CountMonitors(const HOSTMONITORS *monitors)
{
    const MONITORBACKEND &backend = monitors->source.backend;
    return backend.count(backend.context);
}

std::wstring MonitorTrouble(const HOSTMONITORS *monitors)
{
    return Widen(monitors->source.trouble(monitors->source.context, false));
}

void EndMonitorAccesses(HOSTMONITORS *monitors)
{
    EndMonitorCare(monitors->care);
    monitors->source.stop(monitors->source.context);
}

bool CloseMonitors(HOSTMONITORS *monitors)
{
    const bool isClosed = !monitors->source.close || monitors->source.close(monitors->source.context);
    monitors->source = {};
    if (isClosed) // else a thread in the driver still uses it
        delete monitors->care;
    monitors->care = nullptr;
    CloseSimulation(&monitors->simulation);
    return isClosed;
}
