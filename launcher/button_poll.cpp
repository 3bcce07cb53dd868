// The scan of the button registers, launching by a press, and the end of the PC by the POWER button.
#include "launcher/button_poll.h"

#include "kernel/base/plugin_state.h"
#include "kernel/base/texts.h"
#include "launcher/launch.h"
#include "launcher/launcher_settings.h"
#include "launcher/shutdown.h"
#include "monitor/monitor_table.h"
#include "monitor/vcp.h"

LONG nLastButton = 0;

// The text in a model's entry of "lvcap.ini" that stands for a button register.
#define CAPABILITY_BUTTON_REGISTER "F4"

static const char s_szShutdownQuestion[] =
    "シャットダウンします。\nこのまま処理を実行する場合は「OK」を押してください。";

// ---- Registers ----------------------------------------------------------------------------------------------------

void ClearButtonRegisters()
{
    for (LONG monitor = 0; monitor < g_nMonitor && !g_bAbort; ++monitor)
        if (CapabilityHas(monitor, CAPABILITY_BUTTON_REGISTER))
            SetVCP(monitor, VCP_BUTTON_PRESSED, BUTTON_PRESSED_NONE);
}

// Takes a monitor's report into *word; a read that fails, or that the monitor could not answer, leaves it.
static void ReadButtonRegister(LONG monitor, LONG *word)
{
    LONG maximum = -1;
    GetVCP(monitor, VCP_BUTTON_PRESSED, &maximum);
    if (maximum != -1)
        *word = maximum;
}

// Result: the monitor that the scan ended at, or the number of monitors when none reported a press.
static LONG ScanButtons()
{
    // One word for all reads: a failed first read ends the scan with code 0, a failed later one repeats the "nothing
    // was pressed" of the read before it and so passes its monitor over.
    LONG word = TIMER_BUTTON_POLL;
    for (LONG monitor = 0; monitor < g_nMonitor; ++monitor) {
        if (!CapabilityHas(monitor, CAPABILITY_BUTTON_REGISTER))
            continue;
        ReadButtonRegister(monitor, &word);
        nLastButton = word >> 8;
        if (nLastButton != BUTTON_PRESSED_NONE)
            return monitor;
    }
    return g_nMonitor;
}

// ---- Presses ------------------------------------------------------------------------------------------------------

int PressedButton(LONG nCode)
{
    for (int button = 1; button <= LAUNCHER_BUTTON_COUNT; ++button)
        if (nCode == ButtonBit(button))
            return button;
    return 0;
}

PRESSACTION DecidePress(int nButton, DWORD dwMode, DWORD dwPowerSwitch)
{
    if (nButton == LAUNCHER_BUTTON_POWER && dwPowerSwitch == 1)
        return PRESSACTION::AskShutdown;
    return dwMode == BUTTON_LAUNCHER ? PRESSACTION::Launch : PRESSACTION::None;
}

static void ShutDownMonitorsAndPc()
{
    ReleaseButtonLocks();
    for (LONG monitor = 0; monitor < g_nMonitor; ++monitor) {
        SetVCP(monitor, VCP_BEFORE_SHUTDOWN, 0);
        SetVCP(monitor, VCP_BUTTON_PRESSED, BUTTON_PRESSED_NONE);
    }
    WriteEndFlag(); // before the call that may not come back
    ShutdownPc();
}

static void AskShutdown(HWND hKernelWnd)
{
    if (ShowBox(hKernelWnd, s_szShutdownQuestion, PRODUCT_TITLE, MB_OKCANCEL | MB_ICONASTERISK) == IDOK)
        ShutDownMonitorsAndPc();
}

static void OnPress(HWND hKernelWnd, LONG monitor, int button)
{
    switch (DecidePress(button, ReadButtonMode(monitor, button), ReadPowerSwitch(monitor))) {
    case PRESSACTION::Launch:
        LaunchButton(hKernelWnd, monitor, button);
        break;
    case PRESSACTION::AskShutdown:
        AskShutdown(hKernelWnd);
        break;
    case PRESSACTION::None:
        break;
    }
}

void PollMonitorButtons(HWND hKernelWnd)
{
    const LONG monitor = ScanButtons();
    // On every tick, also without a press: the index is then past the last monitor, and the host gets it so.
    SetVCP(monitor, VCP_BUTTON_PRESSED, BUTTON_PRESSED_NONE);
    // The code may be one of an earlier poll, when no monitor was read in this one.
    const int button = PressedButton(nLastButton);
    if (button != 0)
        OnPress(hKernelWnd, monitor, button);
}
