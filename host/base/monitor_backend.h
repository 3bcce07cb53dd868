// What stands behind the router: whoever knows how to reach the monitors fills this table. Nothing here assumes that
// they are simulated; a call may take as long as a DDC/CI exchange with its retries does.
#pragma once

#include <windows.h>

#include <functional>

#include "kernel/link/host_protocol.h"

enum MONITORRESULT {
    MONITOR_OK,      // done; the out-parameters are filled
    MONITOR_IGNORED, // a write that the monitor is known to have taken and not acted on
    MONITOR_FAILED,  // could not be done, or no such monitor; the out-parameters are untouched
    MONITOR_SILENT,  // never came to an end: the plug-in gets no reply, either
};

// How long the plug-in's request may take in all, in ms: less than the ten seconds that the plug-in waits for its
// reply.
constexpr DWORD ACCESS_PATIENCE = 8000;

// What is to be done about a monitor, after what was asked for before.
struct MONITORJOB {
    std::function<void()> run;    // with calls of the backend
    std::function<void()> giveUp; // instead, when it takes too long; see MONITORBACKEND::post
};

// Called one call at a time for each monitor, those for different monitors, count() and directLink() of all at the same
// time, on threads of the router's or of post. `context` is the table's own pointer. `monitor` is a zero-based index
// below count(); any other must be refused with MONITOR_FAILED. `patience` is how many ms are left for the call, up to
// ACCESS_PATIENCE; what takes longer has failed. With 0 the monitor is not asked, and what is known of it counts. Texts
// are padded with zeros.
struct MONITORBACKEND {
    void *context;
    int (*count)(void *context);
    MONITORRESULT (*name)(void *context, int monitor, DWORD patience, char text[HOST_NAME_SIZE]);
    MONITORRESULT (*capabilities)(void *context, int monitor, DWORD patience, char text[HOST_CAPABILITIES_SIZE]);
    MONITORRESULT (*edid)(void *context, int monitor, BYTE block[HOST_EDID_SIZE]);
    MONITORRESULT (*getVcp)(void *context, int monitor, DWORD patience, BYTE code, WORD *value, WORD *maximum);
    MONITORRESULT (*setVcp)(void *context, int monitor, DWORD patience, BYTE code, WORD value);
    // The plug-in tells which input sources a monitor offers: flag n is not 0 for input source value n.
    MONITORRESULT (*inputList)(void *context, int monitor, const DWORD flags[HOST_INPUT_COUNT]);
    // The plug-in lets a monitor's colours follow the program in front, or no longer; monitor -1 stands for all.
    MONITORRESULT (*directLink)(void *context, int monitor, bool on);

    // Of a kind whose monitors have threads of their own; null: each needs one of the router's. Runs the job on the
    // monitor's thread, after those posted before. One that is not done within ACCESS_PATIENCE ms, or soon after
    // accesses were told to end, is given up: on another thread, once, while it may be running still; one that has not
    // begun is never run. Both functions may outlive whoever posted them. Returns false, and nothing is run, when there
    // is no such monitor.
    bool (*post)(void *context, int monitor, const MONITORJOB &job) = nullptr;
};

// The word for a result in logs and messages.
inline const char *MonitorResultName(MONITORRESULT result)
{
    static const char *const names[] = {"ok", "ignored", "failed", "silent"};
    return names[result];
}
