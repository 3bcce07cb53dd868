// What stands behind the router: whoever knows how to reach the monitors fills this table. Nothing here assumes that
// they are simulated; a call may take as long as a DDC/CI exchange with its retries does.
#pragma once

#include <windows.h>

#include "kernel/host_protocol.h"

enum MONITORRESULT {
    MONITOR_OK,      // done; the out-parameters are filled
    MONITOR_IGNORED, // a write that the monitor is known to have taken and not acted on
    MONITOR_FAILED,  // could not be done, or no such monitor; the out-parameters are untouched
    MONITOR_SILENT,  // never came to an end: the plug-in gets no reply, either
};

// Called on the router's worker thread only, one call at a time. `context` is the table's own pointer. `monitor` is a
// zero-based index below count(); any other must be refused with MONITOR_FAILED.
struct MONITORBACKEND {
    void *context;
    int (*count)(void *context);
    MONITORRESULT (*name)(void *context, int monitor, char text[HOST_NAME_SIZE]);                 // zero-padded
    MONITORRESULT (*capabilities)(void *context, int monitor, char text[HOST_CAPABILITIES_SIZE]); // zero-padded
    MONITORRESULT (*edid)(void *context, int monitor, BYTE block[HOST_EDID_SIZE]);
    MONITORRESULT (*getVcp)(void *context, int monitor, BYTE code, WORD *value, WORD *maximum);
    MONITORRESULT (*setVcp)(void *context, int monitor, BYTE code, WORD value);
    // The plug-in tells which input sources a monitor offers: flag n is not 0 for input source value n.
    MONITORRESULT (*inputList)(void *context, int monitor, const DWORD flags[HOST_INPUT_COUNT]);
    // The plug-in lets a monitor's colours follow the program in front, or no longer; monitor -1 stands for all.
    MONITORRESULT (*directLink)(void *context, int monitor, bool on);
};

// The word for a result in logs and messages.
inline const char *MonitorResultName(MONITORRESULT result)
{
    static const char *const names[] = {"ok", "ignored", "failed", "silent"};
    return names[result];
}
