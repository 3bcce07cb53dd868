// The periodic checks, one tick each.
#include "bench/bench_session.h"
#include "bench/benchmarks.h"
#include "bench/measure.h"
#include "kernel/base/platform.h"
#include "kernel/link/host_request.h"
#include "launcher/button_poll.h"
#include "monitor/monitor_table.h"
#include "monitor/vcp.h"
#include "profiles/foreground.h"
#include "profiles/profile_store.h"
#include "timer/reservation_store.h"
#include "timer/scheduler.h"

#include <cstdio>
#include <cstring>
#include <stdexcept>

constexpr int ROUNDS = 21;
constexpr int CALLS = 50;

// ---- Program in front ---------------------------------------------------------------------------------------------

// A window of this program in front.
class FrontWindow {
public:
    FrontWindow()
        : m_window(CreateWindowA("STATIC", "lvkernel_bench", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 10, 10, 200, 100,
                                 nullptr, nullptr, nullptr, nullptr))
    {
        SetForegroundWindow(m_window);
        WaitUntil("a window in front", [this] {
            MSG message;
            while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
                DispatchMessageA(&message);
            return GetForegroundWindow() == m_window;
        });
    }
    ~FrontWindow() { DestroyWindow(m_window); }
    FrontWindow(const FrontWindow &) = delete;
    FrontWindow &operator=(const FrontWindow &) = delete;

private:
    const HWND m_window;
};

static void RegisterApps()
{
    for (int slot = 0; slot < APP_PROFILE_COUNT; ++slot) {
        g_AppProfile[slot] = {"", 1, 70, 60, 80, 11, 72, 88, 100, "", ""};
        snprintf(g_AppProfile[slot].szName, sizeof g_AppProfile[slot].szName,
                 "C:\\Program Files\\Some Vendor\\User%d\\program.exe", slot);
    }
}

// What the system must be asked for the path of the program in front.
static void FindPathBare()
{
    const HWND hWnd = GetForegroundWindow();
    GetWindow(hWnd, GW_OWNER);
    DWORD processId = 0;
    GetWindowThreadProcessId(hWnd, &processId);
    const HANDLE hProcess = OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, processId);
    HMODULE modules[1024];
    DWORD needed = 0;
    char path[MAX_PATH];
    g_lpfnEnumProcessModules(hProcess, modules, sizeof modules, &needed);
    g_lpfnGetModuleFileNameExA(hProcess, modules[0], path, sizeof path);
    CloseHandle(hProcess);
}

void BenchForeground(REPORT *report)
{
    BENCHSESSION session;
    FindMonitors(&session, 1);
    if (!LoadPsapi() || !g_hPsapi)
        throw std::runtime_error("the process-module library is not there");
    RegisterApps();
    PutDword(HKEY_CURRENT_USER, "Lumivane2", "NoAskDialog", 1);
    ResetForegroundState();
    InitForeground();
    g_bDirectLink = 1;
    const FrontWindow window;
    const auto tick = [] { ForegroundCheck(nullptr); };

    char *last = g_AppProfile[APP_PROFILE_COUNT - 1].szName;
    GetModuleFileNameA(nullptr, last, PROFILE_TEXT_SIZE);
    tick(); // applies the profile, which is done once
    const long requests = session.host.Totals().requests;
    const COMPARISON inFront = Compare(ROUNDS, CALLS, tick, FindPathBare);
    if (FindForegroundApp() != APP_PROFILE_COUNT - 1 || session.host.Totals().requests != requests)
        throw std::runtime_error("the program in front was not recognised");

    strcpy(last, "C:\\another.exe");
    const COMPARISON restoring = Compare(ROUNDS, CALLS, tick, [] {
        FindPathBare();
        for (int writes = 0; writes < 4; ++writes)
            SetVCP(0, VCP_CONTRAST, 0);
    });
    UnloadPsapi();

    report->Add("the last of 240 applications in front", inFront.subject, "us");
    report->Add("the system's calls for its path alone", inFront.base, "us");
    report->Add("ratio", inFront.ratio, "x");
    report->Add("no registered application in front: defaults restored", restoring.subject, "us");
    report->Add("the same system calls and the four writes alone", restoring.base, "us");
    report->Add("ratio, with the writes", restoring.ratio, "x");
}

// ---- Reservations -------------------------------------------------------------------------------------------------

void BenchScheduler(REPORT *report)
{
    for (int n = 0; n < RESERVATION_COUNT; ++n) {
        g_Reservation[n] = {"", "2999/12/31", "20:00", "2999/12/31", "21:00", "BENCH0", 0, "TV"};
        FormatReservationSection(g_Reservation[n].szSection, n);
    }
    g_nReservation = RESERVATION_COUNT;
    const double us = MedianUs(ROUNDS, 2000, [] {
        CheckReservationEnd();
        CheckReservationStart();
    });
    g_nReservation = 0;
    for (RESERVATION &slot : g_Reservation)
        slot = {};
    report->Add("one tick, ends and starts", us, "us");
}

// ---- Buttons ------------------------------------------------------------------------------------------------------

void BenchButtonPoll(REPORT *report)
{
    constexpr LONG MONITORS = 10;
    BENCHSESSION session;
    FindMonitors(&session, MONITORS);
    WriteCapabilities(MONITORS);
    BuildCapIniPath();
    LetFilesAge();

    const std::string path = IniFolder::Path("lvcap.ini");
    const long before = session.host.Totals().requests;
    PollMonitorButtons(nullptr);
    if (session.host.Totals().requests != before + MONITORS + 1)
        throw std::runtime_error("not every monitor was asked");

    const COMPARISON result = Compare(
        ROUNDS, 10, [] { PollMonitorButtons(nullptr); },
        [&path] {
            char value[256];
            LONG maximum;
            for (LONG monitor = 0; monitor < MONITORS; ++monitor) {
                GetPrivateProfileStringA(g_Monitor[monitor].szModel, "Capability", "", value, sizeof value,
                                         path.c_str());
                HostGetVCP(monitor, VCP_BUTTON_PRESSED, &maximum);
            }
            HostSetVCP(MONITORS, VCP_BUTTON_PRESSED, BUTTON_PRESSED_NONE);
        });
    report->Add("one tick: ten reads of lvcap.ini, eleven requests", result.subject, "us");
    report->Add("these reads and requests alone", result.base, "us");
    report->Add("ratio", result.ratio, "x");
}
