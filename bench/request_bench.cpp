// A request's round trip, in the three ways in which a host may answer, against the same calls without the plug-in.
#include "bench/bench_session.h"
#include "bench/benchmarks.h"
#include "bench/measure.h"
#include "kernel/link/host_request.h"
#include "monitor/vcp.h"

constexpr int ROUNDS = 41;
constexpr int CALLS = 100;

// What no request can do without: an event, the message to the host's window, and the wait.
static void CallBare(HWND hHost)
{
    BARECALL call = {CreateEventA(nullptr, TRUE, FALSE, nullptr), {0, 0}};
    SendMessageA(hHost, WM_BARE_CALL, 0, reinterpret_cast<LPARAM>(&call));
    WaitForSingleObject(call.hEvent, INFINITE);
    CloseHandle(call.hEvent);
}

static void Request()
{
    LONG maximum;
    HostGetVCP(0, VCP_BRIGHTNESS, &maximum);
}

static void Add(REPORT *report, const std::string &way, const COMPARISON &result, double limit)
{
    report->Add(way + ": a request", result.subject, "us");
    report->Add(way + ": the bare calls", result.base, "us");
    report->Add(way + ": ratio", result.ratio, "x", limit);
}

void BenchRequest(REPORT *report)
{
    BENCHSESSION session;
    const HWND hHost = session.host.Window();
    const auto bare = [hHost] { CallBare(hHost); };

    Add(report, "answered inside the message", Compare(ROUNDS, CALLS, Request, bare), 1.10);

    session.host.later = true;
    Add(report, "answered later by another thread", Compare(ROUNDS, CALLS, Request, bare), 1.25);
    // With a pause the asker is asleep when its answer comes, as it is with any real monitor.
    session.host.delayMs = 1;
    Add(report, "answered 1 ms later", Compare(ROUNDS, CALLS / 10, Request, bare), 1.25);
    session.host.delayMs = 0;
    session.host.later = false;

    COMPARISON sameThread = {};
    session.host.Run([&] { sameThread = Compare(ROUNDS, CALLS, Request, bare); });
    Add(report, "asked on the host's own thread", sameThread, NO_LIMIT);
}
