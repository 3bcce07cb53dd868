// When a monitor may be accessed and whether once more. Windows itself keeps the pauses that DDC/CI needs between the
// messages of one access; these are between accesses, for monitors that are slower than they should be, that wake up,
// or that change over to another input.
#pragma once

#include <windows.h>

#include "host/windows_monitors/access_error.h"

enum ACCESSKIND { ACCESS_READ, ACCESS_WRITE, ACCESS_CAPABILITIES };

// How one monitor wants to be treated; monitors.ini may say otherwise of it. All times in ms.
struct ACCESSMANNERS {
    DWORD pauseAfterWrite = 50; // it may miss what comes sooner
    DWORD pauseBeforeRead = 40; // after any access
    DWORD pauseToSettle = 1500; // after a change of input or power, or a reset, in which it answers nobody
    DWORD pauseOfRetry = 50;    // after the first failed try; each further one waits twice as long
    int tries = 5;
};

constexpr DWORD PAUSE_LIMIT = 5000; // ms, of any of these
constexpr int TRY_LIMIT = 10;

// The access to a monitor that ended last.
struct LASTACCESS {
    bool any; // there was one
    ACCESSKIND kind;
    BYTE code;     // of a read or write
    DWORD endTick; // as GetTickCount counts
};

// How many ms from `now` on the monitor must be left alone before an access of this kind. `hurried`: the program is
// ending, and waits for no monitor to settle.
DWORD PauseBefore(ACCESSKIND kind, const LASTACCESS &last, DWORD now, const ACCESSMANNERS &manners, bool hurried);

// The pause behind a try that failed with `error`, the `tries`-th of its access, before the next one; 0: that is not
// worth it. `left`: ms until the access's time is over; a try that could not begin within them is not worth the wait.
DWORD PauseOfRetry(DWORD error, int tries, DWORD left, const ACCESSMANNERS &manners);
