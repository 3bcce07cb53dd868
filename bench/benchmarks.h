// The benchmarks, one topic a source. Each adds its figures to a report, and throws when it cannot measure.
#pragma once

#include "bench/report.h"

struct BENCHMARK {
    const char *name; // for --only
    const char *what;
    void (*run)(REPORT *report);
};

// In the order in which they are run.
extern const BENCHMARK g_Benchmarks[];
extern const size_t g_nBenchmarks;

void BenchFootprint(REPORT *report);  // footprint_bench.cpp
void BenchRequest(REPORT *report);    // request_bench.cpp
void BenchStore(REPORT *report);      // store_bench.cpp
void BenchForeground(REPORT *report); // tick_bench.cpp
void BenchScheduler(REPORT *report);
void BenchButtonPoll(REPORT *report);
void BenchServer(REPORT *report); // server_bench.cpp
void BenchStart(REPORT *report);  // start_bench.cpp
void BenchPanel(REPORT *report);  // panel_bench.cpp
void BenchIdle(REPORT *report);   // idle_bench.cpp
