// VCP access: the convention for a missing monitor in front of the host's requests.
#include "monitor/vcp.h"

#include "kernel/link/host_request.h"

constexpr LONG NO_MONITOR = -1;

LONG GetVCP(LONG nMonitor, BYTE bCode, LONG *lpMaximum)
{
    return nMonitor == NO_MONITOR ? -1 : HostGetVCP(nMonitor, bCode, lpMaximum);
}

LONG SetVCP(LONG nMonitor, BYTE bCode, WORD wValue)
{
    return nMonitor == NO_MONITOR ? -1 : HostSetVCP(nMonitor, bCode, wValue);
}

LONG SetDirectLink(LONG nMonitor, LONG bOn)
{
    return HostSetDirectLink(nMonitor, bOn);
}
