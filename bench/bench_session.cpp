// Preparation of the plug-in's state, and a watch on its start.
#include "bench/bench_session.h"

#include "bench/measure.h"
#include "kernel/base/plugin_state.h"
#include "kernel/plugin.h"
#include "monitor/enumeration.h"
#include "monitor/monitor_table.h"
#include "profiles/foreground.h"

#include <atomic>
#include <stdexcept>

BENCHSESSION::BENCHSESSION()
{
    g_bAbort = 0;
    g_bDirectLink = 0;
    g_hHostWnd = host.Window();
    g_MyAddr = {1, ENDPOINT_CLASS, ENDPOINT_SUBCLASS_PLUGIN};
    host.Introduce();
}

void FindMonitors(BENCHSESSION *session, LONG monitors)
{
    session->host.monitors = monitors;
    InitMonitors();
    if (g_nMonitor != monitors)
        throw std::runtime_error("the monitors were not found");
}

void WriteCapabilities(LONG monitors)
{
    std::string text;
    for (LONG monitor = 0; monitor < monitors; ++monitor)
        text += "[BENCH" + std::to_string(monitor) + "]\r\nCapability=F2 F4\r\n";
    IniFolder::Write("lvcap.ini", text);
}

void LetFilesAge()
{
    SleepEx(2500, FALSE);
}

// ---- Start --------------------------------------------------------------------------------------------------------

// A window procedure in front of the kernel window's own: it notes when the start-up tick begins and ends. It is there
// well before, since that tick comes after a second.
static WNDPROC s_lpfnKernelProc;
static double s_TickBeginUs;
static double s_TickEndUs;
static std::atomic<bool> s_StartUpOver;

static LRESULT CALLBACK WatchStartUp(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message != WM_TIMER || wParam != TIMER_START_UP)
        return CallWindowProcA(s_lpfnKernelProc, hWnd, message, wParam, lParam);
    s_TickBeginUs = NowUs();
    const LRESULT result = CallWindowProcA(s_lpfnKernelProc, hWnd, message, wParam, lParam);
    s_TickEndUs = NowUs();
    s_StartUpOver = true;
    return result;
}

RunningPlugin::RunningPlugin(BENCHSESSION *session) : m_session(session)
{
    g_bAbort = 0; // an earlier stop has left it set
    s_StartUpOver = false;
    const double startUs = NowUs();
    if (session->host.Init(PluginInit) != 1)
        throw std::runtime_error("slot 0 failed");
    WaitUntil("the kernel window", [] { return g_hKernelWnd != nullptr; });
    const LONG watch = reinterpret_cast<LONG>(WatchStartUp);
    s_lpfnKernelProc = reinterpret_cast<WNDPROC>(SetWindowLongA(g_hKernelWnd, GWL_WNDPROC, watch));
    WaitUntil("the start-up", [] { return s_StartUpOver.load(); });
    m_startUs = s_TickEndUs - startUs;
    m_tickUs = s_TickEndUs - s_TickBeginUs;
}

RunningPlugin::~RunningPlugin()
{
    m_session->host.Stop(PluginStop);
}
