// When a monitor may be accessed and whether once more.
#include "host/windows_monitors/access_rules.h"

#include "monitor/vcp_codes.h"

static bool UnsettlesMonitor(BYTE code)
{
    return code == VCP_INPUT_SOURCE || code == VCP_POWER_MODE || code == VCP_RESTORE_DEFAULTS;
}

DWORD PauseBefore(ACCESSKIND kind, const LASTACCESS &last, DWORD now, const ACCESSMANNERS &manners, bool hurried)
{
    if (!last.any)
        return 0;
    DWORD pause = kind == ACCESS_WRITE ? 0 : manners.pauseBeforeRead;
    if (last.kind == ACCESS_WRITE)
        pause = UnsettlesMonitor(last.code) && !hurried ? manners.pauseToSettle : manners.pauseAfterWrite;
    const DWORD passed = now - last.endTick;
    return passed < pause ? pause - passed : 0;
}

DWORD PauseOfRetry(DWORD error, int tries, DWORD left, const ACCESSMANNERS &manners)
{
    if (AccessFault(error) != FAULT_PASSING || tries >= manners.tries)
        return 0;
    const DWORD pause = manners.pauseOfRetry << (tries - 1);
    return left > pause ? pause : 0;
}
