// One host a user session: a second start hands its wish to the first, and ends.
#pragma once

#include <windows.h>

enum INSTANCEROLE {
    INSTANCE_FIRST,  // there is no other, or it has just ended
    INSTANCE_SECOND, // the first one has taken the wish
    INSTANCE_STUCK,  // there is one that does not answer
};

// How instances know each other.
struct INSTANCENAMES {
    const wchar_t *mutex;       // that the first one owns while it lives
    const wchar_t *windowClass; // its window, which
    const wchar_t *windowTitle;
    UINT message; // is sent this message, and returns 1 when it does what is wished
};

// Finds out which one the calling thread's instance is, and hands over to the first if it is the second. The first may
// just be starting or ending, so it gets time: up to `patience` ms, and about two seconds more while it is asked. The
// first gets the mutex in *hold, for LeaveInstances on the same thread; null when there can be none, or it is not the
// first.
INSTANCEROLE JoinInstances(const INSTANCENAMES &names, DWORD patience, HANDLE *hold);

// The first one is over. Harmless for null.
void LeaveInstances(HANDLE hold);
