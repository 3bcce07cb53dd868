// Start and stop of the plug-in in a test, and what it leaves behind.
#include "support/plugin_session.h"

#include "kernel/kernel_thread.h"
#include "kernel/kernel_window.h"
#include "kernel/plugin.h"
#include "launcher/button_poll.h"
#include "monitor/ddc_driver.h"
#include "monitor/monitor_table.h"
#include "profiles/foreground.h"
#include "profiles/profile_store.h"
#include "server/server_link.h"
#include "support/clock.h"
#include "support/replaced_imports.h"
#include "timer/reservation_input.h"
#include "timer/reservation_rows.h"
#include "timer/reservation_store.h"

#include <winternl.h>

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
        for (LONG *maxima : {g_nMaxBrightEco, g_nMaxBright, g_nMaxContrast, g_nMaxRed, g_nMaxGreen, g_nMaxBlue})
            maxima[monitor] = 0;
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
    g_hReservationPage = nullptr;
    g_hPanelDlg = nullptr;
    g_dwMyIpAddr = 0;
    g_szServerAddr[0] = '\0';
    g_hCommLogWnd = nullptr;
    InjectFault(Fault::None);
    HoldTimer(0);
    SkipPauses(false);
    SetExitWindowsResults({});
    ReleaseClock();
    TakeRecordedCalls();
}

HostTest::HostTest()
{
    ResetPluginState();
    g_hHostWnd = host.Window();
    g_MyAddr.wID = 7;
    host.Introduce();
}

PluginTest::PluginTest()
{
    HoldTimer(TIMER_START_UP);
}

int PluginTest::Init()
{
    HWND window = host.Window();
    HOSTPACKET packet = {};
    packet.dst.wID = 7;
    packet.dwDataSize = sizeof window;
    packet.lpData = reinterpret_cast<HOSTDATA *>(&window);
    int result = 0;
    host.Run([&] { result = PluginInit(&packet); });
    m_running = result == 1;
    return result;
}

bool PluginTest::Start()
{
    Init();
    for (int round = 0; m_running && !g_hKernelWnd && round < 1000; ++round)
        Sleep(10);
    return g_hKernelWnd != nullptr;
}

void PluginTest::StartUp()
{
    Tick(TIMER_START_UP);
}

void PluginTest::Tick(UINT_PTR timer)
{
    SendMessageA(g_hKernelWnd, WM_TIMER, timer, 0);
}

int PluginTest::Stop()
{
    int result = 0;
    host.Run([&] { result = PluginStop(nullptr); });
    m_running = false;
    return result;
}

void PluginTest::TearDown()
{
    if (m_running)
        Stop();
}

// GetProcessHandleCount tells nothing under Wine; the system's table of handles does, there and on Windows.
static int CountHandlesNow()
{
    struct Entry {
        ULONG process;
        BYTE type;
        BYTE flags;
        USHORT handle;
        void *object;
        ACCESS_MASK access;
    };
    const auto query = reinterpret_cast<decltype(&NtQuerySystemInformation)>(
        reinterpret_cast<void *>(GetProcAddress(GetModuleHandleA("ntdll"), "NtQuerySystemInformation")));
    std::vector<BYTE> table(1 << 20);
    ULONG needed = 0;
    while (query(static_cast<SYSTEM_INFORMATION_CLASS>(16), table.data(), static_cast<ULONG>(table.size()), &needed) ==
           static_cast<NTSTATUS>(0xC0000004))
        table.resize(table.size() * 2);
    ULONG count;
    memcpy(&count, table.data(), sizeof count);
    int own = 0;
    for (ULONG index = 0; index < count; ++index) {
        Entry entry;
        memcpy(&entry, table.data() + sizeof count + index * sizeof entry, sizeof entry);
        own += entry.process == GetCurrentProcessId();
    }
    return own;
}

// Threads that have just ended, and a listener between two commands, close handles a moment later.
int CountHandles()
{
    constexpr int LOOKS = 200, SAME = 5;
    int count = CountHandlesNow();
    for (int look = 0, same = 0; look < LOOKS && same < SAME; ++look) {
        Sleep(10);
        const int now = CountHandlesNow();
        same = now == count ? same + 1 : 0;
        count = now;
    }
    return count;
}

static BOOL CALLBACK CountOwnWindow(HWND window, LPARAM sum)
{
    DWORD process;
    GetWindowThreadProcessId(window, &process);
    if (process == GetCurrentProcessId())
        ++*reinterpret_cast<int *>(sum);
    return TRUE;
}

int CountWindows()
{
    int count = 0;
    EnumWindows(CountOwnWindow, reinterpret_cast<LPARAM>(&count));
    return count;
}
