// What Windows' Monitor Configuration API says about a failed access, sorted by what can be done about it.
#pragma once

#include <windows.h>

#include <string>

// Codes that the code itself tells apart or gives. Windows' headers call them ERROR_GRAPHICS_...; the compiler's have
// none of them.
enum : DWORD {
    GRAPHICS_VCP_NOT_SUPPORTED = 0xC0262584,
    GRAPHICS_INVALID_CAPABILITIES = 0xC0262587,
    GRAPHICS_INVALID_MONITOR_HANDLE = 0xC026258C,
    GRAPHICS_MONITOR_NO_LONGER_EXISTS = 0xC026258D,
    GRAPHICS_CONSOLE_SESSION_ONLY = 0xC02625E0,
};

// Our own reasons, with the bit set that Windows keeps for programs.
enum : DWORD {
    OUR_ERROR_TIMEOUT = 0x20000001, // the request's time is over
    OUR_ERROR_STUCK,                // a call into the driver has not come back
    OUR_ERROR_NEVER,                // monitors.ini says that the code is never to be touched
    OUR_ERROR_SKIPPED,              // reading the string has ended the process before
    OUR_ERROR_STOPPED,              // the monitors are being closed
    OUR_ERROR_EMPTY,                // the capability string is empty
    OUR_ERROR_REFUSED,              // a write that cannot be meant: see write_rules.h
};

enum ACCESSFAULT {
    FAULT_PASSING,     // may go well at the next try
    FAULT_UNSUPPORTED, // will not change: the monitor or its connection cannot do that
    FAULT_GONE,        // the handle is of no use any more
};

// What to make of an error code; one that is not known counts as passing.
ACCESSFAULT AccessFault(DWORD error);

// "0xC0262584 the monitor does not know the code". Any thread.
std::string AccessErrorText(DWORD error);
