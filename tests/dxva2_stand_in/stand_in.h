// What the stand-in for dxva2.dll offers beside Windows' own functions: which monitors there are, what is wrong with
// them, and what is to be seen in them. A program takes these functions from the loaded library by name.
//
// Monitors are counted from 0, in the order of their descriptions. All functions may run on any thread.
#pragma once

#include <windows.h>

// What a simulated monitor alone does not do. Each has a number; 0 means: all is well.
enum STANDINFAULT {
    STANDIN_DISPLAY,         // stands behind the n-th display of EnumDisplayMonitors, from 1 on; 0 stands for 1
    STANDIN_ANSWERS_EVERY,   // from now on only every n-th access succeeds, the others fail on the line
    STANDIN_FAILS,           // 1: every access fails on the I2C line
    STANDIN_HANGS,           // 1: an access does not come to its end until this is 0 again
    STANDIN_GONE,            // 1: was unplugged. Handles taken before stay invalid when it comes back
    STANDIN_GONE_AFTER,      // is unplugged after n more accesses, in the middle of whatever they are for
    STANDIN_NO_CAPABILITIES, // 1: the capability string is empty
    STANDIN_READS_AS,        // every code reads as n, whatever its maximum
    STANDIN_FAULT_COUNT,
};

extern "C" {

// Starts anew with the monitors of these files and folders (UTF-8, separated by commas), at their factory state and
// without faults. All handles become invalid, and hanging accesses end. Returns FALSE when a description cannot be
// read; nothing has changed then. Without this call the library opens what its control file says when it is first used.
BOOL WINAPI StandInOpen(const char *paths);

// Sets a fault's number. Returns FALSE for a monitor or fault that there is not.
BOOL WINAPI StandInSet(int monitor, int fault, DWORD n);

// Looks into a monitor: what the code holds, without an access. Returns FALSE for a monitor or code that there is not.
BOOL WINAPI StandInFeature(int monitor, BYTE code, WORD *value, WORD *maximum);

// What somebody sets at the monitor itself, or it has forgotten: what the code holds from now on, without an access.
// Returns FALSE for a monitor or code that there is not.
BOOL WINAPI StandInTurn(int monitor, BYTE code, WORD value);

// How many accesses to the monitor have begun, those that failed or hang included; 0 for one that there is not.
DWORD WINAPI StandInAccesses(int monitor);
}
