// The selected monitor, all monitors, and the writes to either.
#include "monitor/selection.h"

#include "monitor/monitor_table.h"
#include "monitor/vcp.h"

SHAREDFLAG g_nCurMonitor = 0;
SHAREDFLAG g_bAllMonitors = 0;

void SetVCPAll(BYTE bCode, LONG nValue)
{
    for (LONG monitor = 0; monitor < g_nMonitor; ++monitor)
        SetVCP(monitor, bCode, static_cast<WORD>(nValue));
}

void SetSelectedOrAll(LONG nSelected, BYTE bCode, LONG nValue)
{
    if (g_bAllMonitors)
        SetVCPAll(bCode, nValue);
    else
        SetVCP(nSelected, bCode, static_cast<WORD>(nValue));
}
