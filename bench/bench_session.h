// The plug-in in a benchmark, with a registry, INI files and a host of its own; and the plug-in started.
#pragma once

#include "bench/bench_host.h"
#include "support/ini_folder.h"
#include "support/registry_sandbox.h"

// The plug-in's code known to the host, but not started: its inner functions can be called one by one.
struct BENCHSESSION {
    BENCHSESSION();

    RegistrySandbox registry;
    IniFolder ini;
    BenchHost host;
};

// Makes the monitor table as a start does, with that many monitors, and asks the host for them.
void FindMonitors(BENCHSESSION *session, LONG monitors);

// Writes "lvcap.ini" with a button register for that many monitors.
void WriteCapabilities(LONG monitors);

// The plug-in's code started, as a host starts it, up to the end of its start-up; stopped at the end of the scope.
class RunningPlugin {
public:
    explicit RunningPlugin(BENCHSESSION *session);
    ~RunningPlugin();
    RunningPlugin(const RunningPlugin &) = delete;
    RunningPlugin &operator=(const RunningPlugin &) = delete;

    // From the call of slot 0 to the end of the start-up timer's tick, and the length of that tick.
    double StartUs() const { return m_startUs; }
    double StartUpTickUs() const { return m_tickUs; }

private:
    BENCHSESSION *const m_session;
    double m_startUs = 0;
    double m_tickUs = 0;
};

// Lets the files that were written grow older than two seconds: a younger one is read anew by each private-profile
// call, since its time cannot tell whether it has changed.
void LetFilesAge();
