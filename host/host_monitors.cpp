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
    if (!options.windowsMonitors)
        return OpenSimulatedSource(&monitors->simulation, options.monitors, &monitors->source, error);
    monitors->source = OpenWindowsSource(options.fresh);
    return true;
}

std::vector<MONITORIDENTITY> LookForMonitors(const HOSTMONITORS *monitors)
{
    return monitors->source.look(monitors->source.context);
}

std::vector<MONITORIDENTITY> MonitorsInUse(const HOSTMONITORS *monitors)
{
    return monitors->source.inUse(monitors->source.context);
}

void FindMonitors(HOSTMONITORS *monitors, bool keepsPlaces)
{
    monitors->source.find(monitors->source.context, keepsPlaces);
    for (const std::string &line : SplitAt(monitors->source.trouble(monitors->source.context, true), '\n')) {
        ConsoleLine("trayhub: " + line);
        LogEvent(line);
    }
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

void EndMonitorAccesses(const HOSTMONITORS *monitors)
{
    monitors->source.stop(monitors->source.context);
}

bool CloseMonitors(HOSTMONITORS *monitors)
{
    const bool isClosed = !monitors->source.close || monitors->source.close(monitors->source.context);
    monitors->source = {};
    CloseSimulation(&monitors->simulation);
    return isClosed;
}
