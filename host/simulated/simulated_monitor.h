// Monitors that exist only as descriptions: they answer as a monitor does, and have buttons that can be pressed.
#pragma once

#include <windows.h>

#include <deque>
#include <mutex>

#include "host/base/capability_text.h"
#include "host/base/monitor_backend.h"
#include "host/simulated/monitor_file.h"

// How far the press made last has come.
enum PRESSFATE {
    PRESS_NONE,       // no press yet
    PRESS_UNREPORTED, // the monitor reports no buttons, or not this one while it is locked
    PRESS_WAITING,    // in the button register
    PRESS_READ,       // read there
    PRESS_TAKEN,      // read and then acknowledged: the register is clear again
    PRESS_LOST,       // the register was cleared before anybody had read it
};

struct SIMULATEDFEATURE {
    bool present;
    MONITORFEATURE file; // as described, or made up from the capability string
    WORD value;          // without ECO mode, or always
    WORD ecoValue;       // while ECO mode is on, when file.ecoValue is not -1
};

struct SIMULATEDMONITOR {
    MONITORFILE file;
    std::vector<CAPABILITYCODE> codes; // what the capability string lists
    SIMULATEDFEATURE features[256];
    BYTE pressed;    // the button register
    PRESSFATE press; // of the press made last
    unsigned pressCount;
    bool directLink; // the plug-in said so
};

// All monitors of the run. Every function here but AddSimulatedMonitor may run on any thread.
struct SIMULATION {
    std::vector<std::string> paths; // files and folders that describe them; not changed while they are in use
    std::mutex mutex;               // guards the monitors' contents
    std::deque<SIMULATEDMONITOR> monitors;
    HANDLE hEnd;                                 // signalled: delays are over at once
    void (*changed)(void *context, int monitor); // a monitor's state changed; called without the lock, on any thread
    void *changedContext;
};

void OpenSimulation(SIMULATION *simulation);

// Puts one more monitor at the end, at its factory state. Codes that the capability string lists and the description
// does not are there with the value 0 (or the first listed value) and the maximum 255 (or the highest listed value).
void AddSimulatedMonitor(SIMULATION *simulation, const MONITORFILE &file);

// Has these monitors in the place of all that there were. One whose description is as before, at the same path, stays
// as it is; the others are at their factory state.
void ReplaceSimulatedMonitors(SIMULATION *simulation, const std::vector<MONITORFILE> &files);

// Ends every delay, now and later, so that nobody waits for a slow monitor at the stop; and has accesses take their
// time again.
void EndSimulationDelays(SIMULATION *simulation);
void ResumeSimulationDelays(SIMULATION *simulation);

// Nobody may use the simulation any more.
void CloseSimulation(SIMULATION *simulation);

// The table through which the router reaches these monitors.
MONITORBACKEND SimulationBackend(SIMULATION *simulation);

// A person presses button 1 to 6. The button register takes it until it is cleared; a locked button does nothing of its
// own (POWER does not switch the monitor off). Returns false for a button that the monitor has not.
bool PressMonitorButton(SIMULATION *simulation, int index, int button);

// What can be seen of a monitor from outside.
struct MONITORSTATE {
    std::string model;
    std::array<std::string, MONITOR_BUTTON_COUNT> labels;
    bool powered, eco, directLink, isUserPreset, hasChannel;
    bool reportsButtons, hasLock;
    BYTE lockMask, pressed; // pressed: what the button register holds, BUTTON_PRESSED_NONE without one
    PRESSFATE press;
    unsigned pressCount; // presses so far
    WORD input, preset, channel;
    struct LEVEL {
        WORD value, maximum; // both 0 when the monitor has no such control
    } brightness, contrast, gains[3];
};
MONITORSTATE GetMonitorState(SIMULATION *simulation, int index);
