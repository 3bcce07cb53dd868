// The table of benchmarks.
#include "bench/benchmarks.h"

const BENCHMARK g_Benchmarks[] = {
    // First, while the process is still as small as the host that loads the plug-in.
    {"footprint", "size of the plug-in on disk and in memory", BenchFootprint},
    {"request", "round trip of a request to the host, against the bare calls that it needs", BenchRequest},
    {"store", "load of 16 colour profiles and 240 applications, against the same reads alone", BenchStore},
    {"foreground", "check of the program in front among 240 applications", BenchForeground},
    {"scheduler", "check of ten reservations of which none is due", BenchScheduler},
    {"poll", "poll of the front-panel buttons of ten monitors", BenchButtonPoll},
    {"server", "command of the management server, from its datagram to the final reply", BenchServer},
    {"start", "slot 0 to started, each answer of the host takes 5 ms", BenchStart},
    {"panel", "slot 3 to the painted panel, click to each painted page; three monitors, 5 ms an answer", BenchPanel},
    {"idle", "plug-in at rest: ten monitors, all features on, panel closed", BenchIdle},
};
const size_t g_nBenchmarks = sizeof g_Benchmarks / sizeof g_Benchmarks[0];
