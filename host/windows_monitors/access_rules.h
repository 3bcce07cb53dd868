// When a monitor may be accessed and whether once more: DDC/CI needs pauses, and fails now and then.
#pragma once

#include <windows.h>

#include "host/windows_monitors/access_error.h"

enum ACCESSKIND { ACCESS_READ, ACCESS_WRITE, ACCESS_CAPABILITIES };

constexpr DWORD PAUSE_AFTER_WRITE = 50; // ms; a monitor may miss what comes sooner
constexpr DWORD PAUSE_BEFORE_READ = 40; // ms after any access
constexpr DWORD PAUSE_OF_RETRY = 50;    // ms after a failed try
constexpr int TRY_LIMIT = 3;

// The access to a monitor that ended last.
struct LASTACCESS {
    bool any; // there was one
    ACCESSKIND kind;
    DWORD endTick; // as GetTickCount counts
};

// How many ms from `now` on the monitor must be left alone before an access of this kind.
DWORD PauseBefore(ACCESSKIND kind, const LASTACCESS &last, DWORD now);

// Whether an access that has failed `tries` times, the last time with `error`, is tried again. `left`: ms until its
// time is over; a try that could not begin within them is not worth the wait.
bool IsWorthRetry(DWORD error, int tries, DWORD left);
