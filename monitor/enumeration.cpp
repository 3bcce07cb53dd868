// Enumeration of the monitors.
#include "monitor/enumeration.h"

#include "kernel/base/plugin_state.h"
#include "kernel/link/host_protocol.h"
#include "kernel/link/host_request.h"
#include "monitor/color_settings.h"
#include "monitor/monitor_table.h"

#include <cstring>

// The length up to the first zero, or the whole size when there is none.
static DWORD TextLength(const char *lpText, DWORD cbText)
{
    const void *zero = memchr(lpText, '\0', cbText);
    return zero ? static_cast<DWORD>(static_cast<const char *>(zero) - lpText) : cbText;
}

// A failure at any step leaves out the rest for this monitor alone.
static void InitMonitor(LONG nMonitor)
{
    MONITORENTRY *entry = &g_Monitor[nMonitor];
    *entry = MONITORENTRY{};

    // Cleared here: the host's answers leave them alone when they do not come.
    char name[HOST_NAME_SIZE] = {};
    if (!HostGetMonitorName(nMonitor, name) || g_bAbort)
        return;
    memcpy(entry->szModel, name, sizeof name);

    char capabilities[HOST_CAPABILITIES_SIZE] = {};
    if (!HostGetCapabilities(nMonitor, capabilities))
        return;
    if (ParseCapabilities(nMonitor, capabilities, TextLength(capabilities, sizeof capabilities)))
        HostSetInputList(nMonitor, entry->bInputSource);
}

int InitMonitors()
{
    if (g_bAbort)
        return g_nMonitor != 0;
    g_nMonitor = HostGetMonitorCount();
    if (g_nMonitor == 0)
        return 0;
    if (g_nMonitor > MAX_MONITOR)
        g_nMonitor = MAX_MONITOR;
    for (LONG monitor = 0; monitor < g_nMonitor && !g_bAbort; ++monitor)
        InitMonitor(monitor);
    ReadCurrentSettings(0);
    return 1;
}
