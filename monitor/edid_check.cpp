// The way of the check over all monitors, and the repair.
#include "monitor/edid_check.h"

#include "kernel/base/platform.h"
#include "kernel/link/host_request.h"
#include "monitor/ddc_driver.h"
#include "monitor/edid_header.h"
#include "monitor/i2c.h"
#include "monitor/monitor_table.h"

#include <cstring>

static_assert(EDID_HEADER_SIZE == I2C_BLOCK_SIZE, "the header is written as one block");

// The driver's port of each monitor. Nothing tells the outputs apart yet, so all are asked for at the first.
static const DWORD s_Ports[MAX_MONITOR] = {};

constexpr BYTE EDID_ADDRESS = 0xA0; // of the memory on the monitor's bus
constexpr BYTE EDID_START = 0;      // offset of the header in it
constexpr int EDID_TRIES = 3;

int RepairEdidHeader(LONG nMonitor)
{
    if (!IsMonitorIndex(nMonitor))
        return 0;
    g_DdcParam.dwPort = s_Ports[nMonitor];
    if (!I2CWriteBlock8(g_EdidHeader, EDID_ADDRESS, EDID_START) || !I2CReadEdid(EDID_ADDRESS, EDID_START)) {
        DdcCloseDriver();
        return 0;
    }
    return HasEdidHeader(g_Edid);
}

static bool ReadEdid(LONG nMonitor)
{
    // Cleared, because the host's silence counts as an answer and leaves what is there: the EDID of the last monitor.
    memset(g_Edid, 0, sizeof g_Edid);
    for (int attempt = 0; attempt < EDID_TRIES; ++attempt)
        if (HostGetEDID(nMonitor, g_Edid, sizeof g_Edid) == static_cast<LONG>(EDID_SIZE))
            return true;
    return false;
}

void CheckEdidAtStop()
{
    for (LONG monitor = 0; monitor < g_nMonitor; ++monitor) {
        if (!ReadEdid(monitor) || !NeedsEdidRepair(g_Edid))
            continue;
        g_bWin9x = GetPlatformId() != PLATFORM_NT;
        g_bI2CError = 0;
        RepairEdidHeader(monitor);
    }
}
