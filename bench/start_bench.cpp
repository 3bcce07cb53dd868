// Slot 0 to the end of the start-up, with a host whose every answer takes some time.
#include "bench/bench_session.h"
#include "bench/benchmarks.h"
#include "bench/measure.h"

constexpr int ROUNDS = 5;
constexpr DWORD ANSWER_MS = 5;
constexpr double START_UP_TIMER_US = 1e6; // between slot 0 and the start-up stands a timer of one second

struct START {
    double beyondUs;    // all but the timer's second
    double tickUs;      // start-up itself
    double answeringUs; // the host's share in it
    double requests;
};

static START MeasureStart(BENCHSESSION *session)
{
    const BenchHost::TOTALS before = session->host.Totals();
    const RunningPlugin plugin(session);
    const BenchHost::TOTALS after = session->host.Totals();
    return {plugin.StartUs() - START_UP_TIMER_US, plugin.StartUpTickUs(), after.answeringUs - before.answeringUs,
            static_cast<double>(after.requests - before.requests)};
}

// Starts on settings that an earlier run has left, as all but the very first are.
static std::vector<START> MeasureStarts(LONG monitors)
{
    BENCHSESSION session;
    session.host.monitors = monitors;
    session.host.later = true;
    session.host.delayMs = ANSWER_MS;
    MeasureStart(&session);
    std::vector<START> starts;
    for (int round = 0; round < ROUNDS; ++round)
        starts.push_back(MeasureStart(&session));
    return starts;
}

static double MedianOf(const std::vector<START> &starts, double (*what)(const START &))
{
    std::vector<double> values;
    for (const START &start : starts)
        values.push_back(what(start));
    return Median(values);
}

static void Add(REPORT *report, const std::string &monitors, const std::vector<START> &starts, double limit)
{
    const auto requests = static_cast<int>(starts[0].requests);
    report->Add(monitors + ": slot 0 to started, beyond the one-second timer",
                MedianOf(starts, [](const START &start) { return start.beyondUs / 1000; }), "ms");
    report->Add(monitors + ": of that the start-up itself",
                MedianOf(starts, [](const START &start) { return start.tickUs / 1000; }), "ms");
    report->Add(monitors + ": the host's " + std::to_string(requests) + " answers",
                MedianOf(starts, [](const START &start) { return start.answeringUs / 1000; }), "ms");
    report->Add(monitors + ": ratio to the answers",
                MedianOf(starts, [](const START &start) { return start.beyondUs / start.answeringUs; }), "x", limit);
}

void BenchStart(REPORT *report)
{
    Add(report, "one monitor", MeasureStarts(1), NO_LIMIT);
    Add(report, "ten monitors", MeasureStarts(10), 1.2);
}
