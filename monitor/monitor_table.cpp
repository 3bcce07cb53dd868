// The table of monitors, and the override file of their capabilities.
#include "monitor/monitor_table.h"

#include "settings/ini.h"

#include <cstring>

// The table.
SHAREDFLAG g_nMonitor = 0;
MONITORENTRY g_Monitor[MAX_MONITOR];

static char s_szCapIni[MAX_PATH]; // "lvcap.ini"

int ParseCapabilities(LONG nMonitor, char *lpText, DWORD cbText)
{
    return IsMonitorIndex(nMonitor) ? ParseCapabilityText(&g_Monitor[nMonitor], lpText, cbText) : 0;
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
