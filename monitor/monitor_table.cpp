// Enumeration of the monitors at start-up, and the override file of their capabilities.
#include "monitor/monitor_table.h"

#include "kernel/base/plugin_state.h"
#include "kernel/link/host_protocol.h"
#include "kernel/link/host_request.h"
#include "monitor/color_settings.h"
#include "settings/ini.h"

#include <cstring>

// The table, and the selected monitor.
SHAREDFLAG g_nMonitor = 0;
SHAREDFLAG g_nCurMonitor = 0;
MONITORENTRY g_Monitor[MAX_MONITOR];
COLORSETTING g_CurSetting[MAX_MONITOR];
LONG g_nMaxBrightEco[MAX_MONITOR];
LONG g_nMaxBright[MAX_MONITOR];
LONG g_nMaxContrast[MAX_MONITOR];
LONG g_nMaxRed[MAX_MONITOR];
LONG g_nMaxGreen[MAX_MONITOR];
LONG g_nMaxBlue[MAX_MONITOR];

static char s_szCapIni[MAX_PATH]; // "lvcap.ini"

int ParseCapabilities(LONG nMonitor, char *lpText, DWORD cbText)
{
    return IsMonitorIndex(nMonitor) ? ParseCapabilityText(&g_Monitor[nMonitor], lpText, cbText) : 0;
}

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

void BuildCapIniPath()
{
    BuildSystemIniPath(s_szCapIni, "lvcap.ini");
}

int CapabilityHas(LONG nMonitor, LPCSTR lpszText)
{
    if (!IsMonitorIndex(nMonitor))
        return 0;
    char value[256];
    GetPrivateProfileStringA(g_Monitor[nMonitor].szModel, "Capability", "", value, sizeof value, s_szCapIni);
    return strstr(value, lpszText) != nullptr;
}
