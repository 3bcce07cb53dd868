// The plug-in's first state, and its start and stop by a host.
#include "support/plugin_run.h"

#include "kernel/base/plugin_state.h"
#include "kernel/plugin.h"
#include "launcher/button_poll.h"
#include "monitor/color_features.h"
#include "monitor/ddc_driver.h"
#include "monitor/monitor_table.h"
#include "monitor/selection.h"
#include "panel/color_page_controls.h"
#include "panel/reservation_rows.h"
#include "profiles/foreground.h"
#include "profiles/profile_store.h"
#include "server/server_state.h"
#include "support/clock.h"
#include "support/comes.h"
#include "support/replaced_imports.h"
#include "timer/reservation_input.h"
#include "timer/reservation_store.h"

#include <io.h>

void ResetPluginState()
{
    g_bAbort = 0;
    g_hHostWnd = nullptr;
    g_szTitle[0] = '\0';
    g_MyAddr = {ENDPOINT_ID_UNKNOWN, ENDPOINT_CLASS, ENDPOINT_SUBCLASS_PLUGIN};
    g_wHostID = ENDPOINT_ID_UNKNOWN;
    for (DWORD id = 0; id < REQUEST_COUNT; ++id)
        DeleteUniqueID(id);
    g_bStarted = 0;
    g_bNoMonitor = 0;
    g_nMonitor = 0;
    g_nCurMonitor = 0;
    g_bDirectLink = 0;
    InitForeground();
    ResetForegroundState();
    for (PROFILEENTRY &entry : g_SysProfile)
        entry = {};
    for (PROFILEENTRY &entry : g_AppProfile)
        entry = {};
    g_nSysProfile = 0;
    g_nAppProfile = 0;
    for (LONG monitor = 0; monitor < MAX_MONITOR; ++monitor) {
        g_Monitor[monitor] = {};
        g_CurSetting[monitor] = {};
        g_DefSetting[monitor] = {};
        for (const COLORFEATURE &feature : COLOR_FEATURES)
            if (feature.lpMaxima)
                feature.lpMaxima[monitor] = 0;
        for (LONG &preset : g_nColorTempMap[monitor])
            preset = 0;
    }
    nLastButton = 0;
    g_DdcParam = {};
    g_bI2CError = 0;
    for (RESERVATION &slot : g_Reservation)
        slot = {};
    g_nReservation = 0;
    g_szOnTimerIni[0] = '\0';
    nChangeMsg = CHANGE_AT_ONCE;
    g_nPrevTvChannel = 0;
    SetReservationPage(nullptr);
    g_hPanelDlg = nullptr;
    g_dwMyIpAddr = 0;
    g_szServerAddr[0] = '\0';
    g_hCommLogWnd = nullptr;
    InjectFault(Fault::None);
    HoldTimer(0);
    ForgetTimers();
    SkipPauses(false);
    SkipWaits(false);
    HurryPauses(false);
    SetExitWindowsResults({});
    AnswerFileDialog("");
    ShowRealFileDialog(false);
    ReleaseClock();
    TakeRecordedCalls();
}

HOSTPACKET InitPacket(HWND *window)
{
    HOSTPACKET packet = {};
    packet.dst.wID = 7;
    packet.dwDataSize = sizeof *window;
    packet.lpData = reinterpret_cast<HOSTDATA *>(window);
    return packet;
}

int CloseReservationFiles()
{
    constexpr int FIRST = 3, MOST = 2048; // descriptors of a program
    int closed = 0;
    for (int descriptor = FIRST; descriptor < MOST; ++descriptor)
        closed += _close(descriptor) == 0;
    return closed;
}

HostRun::HostRun(DWORD owner) : registry(owner), ini(owner != GetCurrentProcessId())
{
    ResetPluginState();
    g_hHostWnd = host.Window();
    g_MyAddr.wID = 7;
    host.Introduce();
}

PluginRun::PluginRun(DWORD owner) : HostRun(owner)
{
    HoldTimer(TIMER_START_UP);
}

PluginRun::~PluginRun()
{
    StopIfRunning();
}

int PluginRun::Init()
{
    HWND window = host.Window();
    HOSTPACKET packet = InitPacket(&window);
    int result = 0;
    host.Run([&] {
        const PluginCode slot;
        result = PluginInit(&packet);
    });
    m_running = result == 1;
    return result;
}

bool PluginRun::Start()
{
    Init();
    // A thread that could not make its window has ended by itself.
    Comes([this] { return !m_running || g_hKernelWnd || PluginThreads() == 0; });
    return g_hKernelWnd != nullptr;
}

void PluginRun::StartUp()
{
    Tick(TIMER_START_UP);
}

void PluginRun::Tick(UINT_PTR timer)
{
    SendMessageA(g_hKernelWnd, WM_TIMER, timer, 0);
}

int PluginRun::Stop()
{
    int result = 0;
    host.Run([&] {
        const PluginCode slot;
        result = PluginStop(nullptr);
    });
    m_running = false;
    return result;
}

void PluginRun::StopIfRunning()
{
    if (m_running)
        Stop();
}
