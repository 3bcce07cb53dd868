// Front-panel button registers. Presses are not acted on yet.
#include "launcher/button_poll.h"

#include "monitor/monitor_table.h"
#include "monitor/vcp.h"

// The text in a model's entry of "lvcap.ini" that stands for a button register.
#define CAPABILITY_BUTTON_REGISTER "F4"

void ClearButtonRegisters()
{
    for (LONG monitor = 0; monitor < g_nMonitor; ++monitor)
        if (CapabilityHas(monitor, CAPABILITY_BUTTON_REGISTER))
            SetVCP(monitor, VCP_BUTTON_PRESSED, BUTTON_PRESSED_NONE);
}

void PollMonitorButtons(HWND) {}
