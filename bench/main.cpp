// The benchmark program: options, the run, and the form of its output. tools/bench runs it as it should be run.
#include "bench/benchmarks.h"
#include "kernel/base/plugin_state.h"

#include <windows.h>

#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <cstring>
#include <stdexcept>

struct RUNOPTIONS {
    bool json = false;
    bool help = false;
    std::vector<std::string> only; // names; all benchmarks when empty
};

static void PrintHelp()
{
    printf("lvkernel_bench [--json] [--only NAME]...\n\n"
           "  --json       print JSON instead of a table\n"
           "  --only NAME  run this benchmark alone; may be given several times\n"
           "  --help       print this\n\nBenchmarks:\n");
    for (size_t index = 0; index < g_nBenchmarks; ++index)
        printf("  %-12s %s\n", g_Benchmarks[index].name, g_Benchmarks[index].what);
}

static bool IsBenchmark(const char *name)
{
    for (size_t index = 0; index < g_nBenchmarks; ++index)
        if (strcmp(g_Benchmarks[index].name, name) == 0)
            return true;
    return false;
}

static bool ReadOptions(RUNOPTIONS *options, int count, char **words)
{
    for (int index = 1; index < count; ++index) {
        if (strcmp(words[index], "--json") == 0) {
            options->json = true;
        } else if (strcmp(words[index], "--help") == 0) {
            options->help = true;
        } else if (strcmp(words[index], "--only") == 0 && index + 1 < count && IsBenchmark(words[index + 1])) {
            options->only.push_back(words[++index]);
        } else {
            fprintf(stderr, "lvkernel_bench: '%s' is no option, or no benchmark follows it; see --help\n",
                    words[index]);
            return false;
        }
    }
    return true;
}

static bool IsWanted(const RUNOPTIONS &options, const char *name)
{
    for (const std::string &wanted : options.only)
        if (wanted == name)
            return true;
    return options.only.empty();
}

static REPORT Measure(const BENCHMARK &benchmark)
{
    REPORT report = {benchmark.name, benchmark.what, {}, ""};
    try {
        benchmark.run(&report);
    } catch (const std::exception &error) {
        report.failure = error.what();
    }
    return report;
}

int main(int count, char **words)
{
    _setmode(_fileno(stdout), _O_BINARY); // plain line feeds: the output is read outside Wine
    RUNOPTIONS options;
    if (!ReadOptions(&options, count, words))
        return 2;
    if (options.help) {
        PrintHelp();
        return 0;
    }
    g_hInstance = GetModuleHandleA(nullptr); // whose resources the plug-in's code takes for its own

    std::vector<REPORT> reports;
    bool failed = false;
    for (size_t index = 0; index < g_nBenchmarks; ++index) {
        if (!IsWanted(options, g_Benchmarks[index].name))
            continue;
        reports.push_back(Measure(g_Benchmarks[index]));
        failed = failed || !reports.back().failure.empty();
        if (!options.json)
            PrintTable(reports.back());
    }
    if (options.json)
        PrintJson(reports);
    return failed ? 1 : 0;
}
