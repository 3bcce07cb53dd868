// Reads the descriptions of the simulated monitors, at the start and again.
#include "host/simulated/simulated_source.h"

#include "host/base/packet_log.h"
#include "host/base/text.h"

static SIMULATION *Simulation(void *context)
{
    return static_cast<SIMULATION *>(context);
}

static MONITORIDENTITY IdentityOf(const MONITORFILE &file)
{
    return {file.path + Format(" %08X", file.digest), false};
}

static std::vector<MONITORIDENTITY> InUse(void *context)
{
    std::lock_guard lock(Simulation(context)->mutex);
    std::vector<MONITORIDENTITY> identities;
    for (const SIMULATEDMONITOR &monitor : Simulation(context)->monitors)
        identities.push_back(IdentityOf(monitor.file));
    return identities;
}

static std::vector<MONITORIDENTITY> Look(void *context)
{
    std::vector<MONITORFILE> files;
    std::string error;
    if (!ReadMonitorFiles(Simulation(context)->paths, &files, &error))
        return InUse(context);
    std::vector<MONITORIDENTITY> identities;
    for (const MONITORFILE &file : files)
        identities.push_back(IdentityOf(file));
    return identities;
}

static void Find(void *context, bool)
{
    std::vector<MONITORFILE> files;
    std::string error;
    if (ReadMonitorFiles(Simulation(context)->paths, &files, &error))
        ReplaceSimulatedMonitors(Simulation(context), files);
    else
        LogEvent(error + ": the monitors stay as they are");
    ResumeSimulationDelays(Simulation(context));
}

static std::string Trouble(void *, bool)
{
    return {};
}

static void Rest(void *, bool) {}

static void Stop(void *context)
{
    EndSimulationDelays(Simulation(context));
}

static bool Close(void *)
{
    return true;
}

bool OpenSimulatedSource(SIMULATION *simulation, const std::vector<std::string> &paths, MONITORSOURCE *source,
                         std::string *error)
{
    std::vector<MONITORFILE> files;
    if (!ReadMonitorFiles(paths, &files, error))
        return false;
    simulation->paths = paths;
    for (const MONITORFILE &file : files)
        AddSimulatedMonitor(simulation, file);
    *source = {simulation, SimulationBackend(simulation), Look, InUse, Find, Trouble, Rest, Stop, Close};
    return true;
}
