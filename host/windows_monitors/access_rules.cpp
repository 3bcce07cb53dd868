// When a monitor may be accessed and whether once more.
#include "host/windows_monitors/access_rules.h"

DWORD PauseBefore(ACCESSKIND kind, const LASTACCESS &last, DWORD now)
{
    if (!last.any)
        return 0;
    DWORD pause = kind == ACCESS_WRITE ? 0 : PAUSE_BEFORE_READ;
    if (last.kind == ACCESS_WRITE)
        pause = PAUSE_AFTER_WRITE;
    const DWORD passed = now - last.endTick;
    return passed < pause ? pause - passed : 0;
}

bool IsWorthRetry(DWORD error, int tries, DWORD left)
{
    return AccessFault(error) == FAULT_PASSING && tries < TRY_LIMIT && left > PAUSE_OF_RETRY;
}
