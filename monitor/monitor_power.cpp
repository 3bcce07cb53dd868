// The broadcast that switches the monitors' power.
#include "monitor/monitor_power.h"

constexpr UINT WINDOW_TIMEOUT_MS = 2000;

LRESULT BroadcastMonitorPower(LPARAM lState)
{
    // The result of each window is of no use: a broadcast has none, and what this call returns is that of the
    // broadcast.
    DWORD_PTR unused;
    return SendMessageTimeoutA(HWND_BROADCAST, WM_SYSCOMMAND, SC_MONITORPOWER, lState, SMTO_ABORTIFHUNG,
                               WINDOW_TIMEOUT_MS, &unused);
}
