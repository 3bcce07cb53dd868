// What the plug-in is put through while its calls fail: everyday acts, each with the settings and monitors that it
// needs and a look whether it was done.
#pragma once

#include "support/plugin_run.h"
#include "support/test_server.h"

#include <optional>
#include <string>

// What an act works on.
struct STAGE {
    explicit STAGE(DWORD owner = GetCurrentProcessId()) : run(owner) {}

    PluginRun run;
    std::optional<TestServer> server; // there for the acts that need one
    HWND front = nullptr;             // a window of this process, for the acts that look at the program in front
    bool faulty = false;              // a call fails in this act: what does not come is not worth a long wait
};

// What the calls fail in.
enum class DURING {
    Act,   // an act of the plug-in that runs
    Start, // its start; a stop without faults follows
    Stop,  // its stop, after a start without faults
};

struct SCENARIO {
    const char *name;
    const char *what;
    DURING during;
    int button;                      // that is pressed in message boxes
    void (*prepare)(STAGE *);        // settings and monitors, once, before the first start
    void (*reset)(STAGE *);          // what each act finds; null for nothing. The settings are put back without it
    void (*act)(STAGE *);            // null for starts and stops, which are all alike
    std::string (*missing)(STAGE *); // after an act without faults: what was not done; empty when all was
};

// Settings that a scenario may leave although they are neither as before nor as asked, each with its reason.
struct TOLERATED {
    const char *scenario;
    const char *part; // end of its name in an image
    std::string value;
    const char *why;
};
extern const TOLERATED g_Tolerated[];
extern const size_t g_nTolerated;

extern const SCENARIO g_Scenarios[];
extern const size_t g_nScenarios;

// For what is missing: empty when a value, or a monitor's feature, is as it shall be.
std::string Differs(const std::string &what, LONG is, LONG shall);
std::string FeatureDiffers(STAGE *stage, size_t monitor, BYTE code, LONG shall);

// Brings the plug-in's state to what it is after loading, without faults, its pauses and timers held back. No thread of
// it may run.
void LoadPlugin();

// Starts it up to where its listener waits, as far as it comes; and stops it.
void StartPlugin(STAGE *stage);
void StopPlugin(STAGE *stage);
