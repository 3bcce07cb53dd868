// The monitors of a run, be they simulated or those that Windows has.
#include "host/host_monitors.h"

#include "host/console.h"
#include "host/packet_log.h"
#include "host/text.h"

// ---- Simulated ones -------------------------------------------------------------------------------------------------

static std::string IdentityOf(const MONITORFILE &file)
{
    return file.path + Format(" %08X", file.digest);
}

static std::vector<std::string> LookForSimulated(HOSTAPP *app)
{
    std::vector<MONITORFILE> files;
    std::string error;
    if (!ReadMonitorFiles(app->options.monitors, &files, &error))
        return MonitorsInUse(app);
    std::vector<std::string> identities;
    for (const MONITORFILE &file : files)
        identities.push_back(IdentityOf(file));
    return identities;
}

static std::vector<std::string> SimulatedInUse(HOSTAPP *app)
{
    std::lock_guard lock(app->simulation.mutex);
    std::vector<std::string> identities;
    for (const SIMULATEDMONITOR &monitor : app->simulation.monitors)
        identities.push_back(IdentityOf(monitor.file));
    return identities;
}

static void FindSimulated(HOSTAPP *app)
{
    std::vector<MONITORFILE> files;
    std::string error;
    if (ReadMonitorFiles(app->options.monitors, &files, &error))
        ReplaceSimulatedMonitors(&app->simulation, files);
    else
        LogEvent(error + ": the monitors stay as they are");
    ResumeSimulationDelays(&app->simulation);
}

// ---- Those of Windows -----------------------------------------------------------------------------------------------

static void SayTrouble(HOSTAPP *app)
{
    for (const std::string &line : SplitAt(WindowsMonitorsTroubleInEnglish(app->monitors), '\n')) {
        ConsoleLine("trayhub: " + line);
        LogEvent(line);
    }
}

// ---- Both -----------------------------------------------------------------------------------------------------------

bool OpenMonitors(HOSTAPP *app, std::string *error)
{
    std::vector<MONITORFILE> files;
    if (!ReadMonitorFiles(app->options.monitors, &files, error))
        return false;
    for (const MONITORFILE &file : files)
        AddSimulatedMonitor(&app->simulation, file);
    if (app->options.windowsMonitors) {
        WINDOWSMONITOROPTIONS options = DefaultWindowsMonitorOptions();
        options.fresh = app->options.fresh;
        app->monitors = OpenWindowsMonitors(options);
    }
    return true;
}

MONITORBACKEND MonitorBackend(HOSTAPP *app)
{
    return app->monitors ? WindowsBackend(app->monitors) : SimulationBackend(&app->simulation);
}

std::vector<std::string> LookForMonitors(HOSTAPP *app)
{
    return app->monitors ? LookForWindowsMonitors(app->monitors) : LookForSimulated(app);
}

std::vector<std::string> MonitorsInUse(HOSTAPP *app)
{
    return app->monitors ? FoundWindowsMonitors(app->monitors) : SimulatedInUse(app);
}

void FindMonitors(HOSTAPP *app)
{
    if (!app->monitors) {
        FindSimulated(app);
        return;
    }
    FindWindowsMonitors(app->monitors);
    SayTrouble(app);
}

std::wstring MonitorTrouble(HOSTAPP *app)
{
    return app->monitors ? Widen(WindowsMonitorsTrouble(app->monitors)) : std::wstring();
}

void EndMonitorAccesses(HOSTAPP *app)
{
    EndSimulationDelays(&app->simulation);
    if (app->monitors)
        StopWindowsMonitorAccesses(app->monitors);
}

void CloseMonitors(HOSTAPP *app)
{
    CloseSimulation(&app->simulation);
    if (app->monitors)
        app->isDriverStuck = !CloseWindowsMonitors(app->monitors);
    app->monitors = nullptr;
}
