// What the plug-in costs while nothing happens, beside what its message loop must cost: looking for a message and
// sleeping 10 ms, for ever.
#include "bench/bench_session.h"
#include "bench/benchmarks.h"
#include "bench/floors.h"
#include "bench/measure.h"
#include "profiles/foreground.h"
#include "timer/reservation_store.h"

#include <io.h>
#include <tlhelp32.h>

#include <atomic>
#include <fstream>
#include <set>
#include <stdexcept>

constexpr LONG MONITORS = 10;
constexpr DWORD WATCH_MS = 20000;

// ---- Time on the processor ----------------------------------------------------------------------------------------

using THREADS = std::set<DWORD>;

static THREADS OwnThreads()
{
    THREADS threads;
    const HANDLE hSnapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 entry = {};
    entry.dwSize = sizeof entry;
    for (BOOL found = Thread32First(hSnapshot, &entry); found; found = Thread32Next(hSnapshot, &entry))
        if (entry.th32OwnerProcessID == GetCurrentProcessId())
            threads.insert(entry.th32ThreadID);
    CloseHandle(hSnapshot);
    return threads;
}

static double Milliseconds(const FILETIME &time)
{
    ULARGE_INTEGER value;
    value.LowPart = time.dwLowDateTime;
    value.HighPart = time.dwHighDateTime;
    return static_cast<double>(value.QuadPart) / 1e4;
}

// In user and kernel mode since the thread's start. Under Wine counted in steps of 10 ms, and only while it lives.
static double ThreadMs(DWORD threadId)
{
    const HANDLE hThread = OpenThread(THREAD_QUERY_INFORMATION, FALSE, threadId);
    FILETIME created, ended, kernel, user;
    const BOOL known = GetThreadTimes(hThread, &created, &ended, &kernel, &user);
    CloseHandle(hThread);
    return known ? Milliseconds(kernel) + Milliseconds(user) : 0;
}

static double SumMs(const THREADS &threads)
{
    double sum = 0;
    for (const DWORD threadId : threads)
        sum += ThreadMs(threadId);
    return sum;
}

// Wine's server opens files for a program, so that it is itself the process that a path names with "self". Below 0
// where there is none.
static double WineServerMs()
{
    std::ifstream file("Z:\\proc\\self\\schedstat");
    double nanoseconds = 0;
    return file >> nanoseconds ? nanoseconds / 1e6 : -1;
}

struct LOAD {
    double threads; // per cent of a core
    double server;  // Wine's server meanwhile
    double pauses;  // a second
};

static LOAD Watch(const THREADS &threads)
{
    const double begin = NowUs();
    const double threadsMs = SumMs(threads);
    const double serverMs = WineServerMs();
    const long pauses = FloorsSoFar().pauses;
    SleepEx(WATCH_MS, FALSE);
    const double seconds = (NowUs() - begin) / 1e6;
    return {(SumMs(threads) - threadsMs) / seconds / 10, (WineServerMs() - serverMs) / seconds / 10,
            static_cast<double>(FloorsSoFar().pauses - pauses) / seconds};
}

// ---- Measuring ----------------------------------------------------------------------------------------------------

// The loop as it must be, on a thread with a window and nothing else.
static LOAD WatchBareLoop()
{
    std::atomic<DWORD> threadId = 0;
    std::atomic<bool> stop = false;
    std::thread loop([&] {
        const HWND hWnd = CreateWindowA("STATIC", "", 0, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);
        threadId = GetCurrentThreadId();
        MSG message;
        while (!stop)
            if (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
                DispatchMessageA(&message);
            else
                Sleep(10);
        DestroyWindow(hWnd);
    });
    WaitUntil("the bare loop", [&] { return threadId != 0; });
    const LOAD load = Watch({threadId});
    stop = true;
    loop.join();
    return load;
}

// Ten reservations, far ahead, as the page loads them. The descriptor that this leaves open is closed again by the
// caller, so that the file can be deleted.
static void LoadTenReservations()
{
    std::string text;
    for (int n = 0; n < RESERVATION_COUNT; ++n)
        text += "[Timer" + std::to_string(n) +
                "]\r\ndate=2999/12/31\r\ntime=20:00\r\nenddate=2999/12/31\r\nendtime=21:00\r\nlcd=BENCH0\r\ncrtno=0\r\n"
                "channel=TV\r\n";
    IniFolder::Write(RESERVATION_FILE, text);
    g_nReservation = LoadReservations(g_Reservation, RESERVATION_FILE);
    if (g_nReservation != RESERVATION_COUNT)
        throw std::runtime_error("the reservations were not loaded");
}

static void ForgetReservations()
{
    g_nReservation = 0;
    for (RESERVATION &slot : g_Reservation)
        slot = {};
    constexpr int LAST_DESCRIPTOR = 64;
    for (int descriptor = 3; descriptor < LAST_DESCRIPTOR; ++descriptor)
        _close(descriptor);
}

void BenchIdle(REPORT *report)
{
    const LOAD bare = WatchBareLoop();
    if (bare.threads <= 0)
        throw std::runtime_error("this system does not tell the time of threads");

    BENCHSESSION session;
    session.host.monitors = MONITORS;
    PutDword(HKEY_CURRENT_USER, "Lumivane2", "DirectLink", 1);
    PutDword(HKEY_CURRENT_USER, "LumvanLauncher", "dwLTimer", 1);
    PutDword(HKEY_CURRENT_USER, "LumvanLauncher", "EndFlag", 0);
    WriteCapabilities(MONITORS);
    const THREADS before = OwnThreads();
    double requests;
    LOAD load;
    {
        const RunningPlugin plugin(&session);
        LoadTenReservations();
        if (!g_bDirectLink)
            throw std::runtime_error("DirectLink is not on");
        SleepEx(3000, FALSE); // until all timers have ticked once and the files are old enough
        THREADS threads;
        for (const DWORD threadId : OwnThreads())
            if (!before.contains(threadId))
                threads.insert(threadId);
        const long asked = session.host.Totals().requests;
        load = Watch(threads);
        requests = static_cast<double>(session.host.Totals().requests - asked) * 1000 / WATCH_MS;
    }
    ForgetReservations();

    report->Add("processor time of the plug-in's threads, of a core", load.threads, "%", 2.5);
    report->Add("rounds of its message loop", load.pauses, "/s");
    report->Add("requests to the host", requests, "/s");
    report->Add("the message loop alone, of a core", bare.threads, "%");
    report->Add("rounds of the message loop alone", bare.pauses, "/s");
    if (load.server >= 0) {
        report->Add("Wine's server meanwhile, of a core", load.server, "%");
        report->Add("Wine's server under the message loop alone, of a core", bare.server, "%");
    }
}
