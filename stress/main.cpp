// lvkernel_stress: drives the plug-in's code through faults, load and time, and says whether it came through them.
#include "kernel/base/plugin_state.h"
#include "stress/supervisor.h"
#include "support/resource_counts.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

const PART g_Parts[] = {
    {"faults", "every call that can fail, failing once at each place", RunFaults, 60000, true},
    {"requests", "three threads asking while the host answers late, twice, wrongly and never", RunRequests, 60000,
     false},
    {"panel", "the panel opened and every page shown", RunPanel, 60000, false},
    {"month", "a month of reservations, programs in front and button presses", RunMonth, 60000, false},
    {"restarts", "the DLL loaded, started, stopped and unloaded", RunRestarts, 60000, false},
    {"kills", "the process killed at random moments, and started again", RunKills, 60000, false},
};
const size_t g_nParts = sizeof g_Parts / sizeof g_Parts[0];

struct COMMANDLINE {
    WORKOPTIONS options;
    std::vector<const PART *> parts; // all when empty
    const PART *worker = nullptr;    // what this process is to do itself
    DWORD victim = 0;
    bool help = false;
};

static void PrintHelp()
{
    printf("lvkernel_stress [--brief] [--only PREFIX] [PART]...\n\n"
           "  --brief        a form of seconds instead of minutes\n"
           "  --only PREFIX  of the faults, only those whose position begins so, such as \"start event\"\n"
           "  --help         print this\n\nParts (all of them when none is given):\n");
    for (const PART &part : g_Parts)
        printf("  %-9s %s\n", part.name, part.what);
}

static const PART *FindPart(const char *name)
{
    for (const PART &part : g_Parts)
        if (!strcmp(part.name, name))
            return &part;
    return strcmp(g_FailingPart.name, name) ? nullptr : &g_FailingPart;
}

static bool ReadCommandLine(COMMANDLINE *line, int count, char **words)
{
    for (int index = 1; index < count && words[index]; ++index) {
        const std::string word = words[index];
        const char *value = index + 1 < count ? words[index + 1] : nullptr;
        if (word == "--help") {
            line->help = true;
        } else if (word == "--brief") {
            line->options.brief = true;
        } else if (word == "--only" && value) {
            line->options.only = words[++index];
        } else if (word == "--from" && value) {
            line->options.from = words[++index];
        } else if (word == "--worker" && value && FindPart(value)) {
            line->worker = FindPart(words[++index]);
        } else if (word == "--victim" && value) {
            line->victim = static_cast<DWORD>(atol(words[++index]));
        } else if (const PART *part = FindPart(word.c_str())) {
            line->parts.push_back(part);
        } else {
            fprintf(stderr, "lvkernel_stress: '%s' is not understood here; --help lists options and parts\n",
                    word.c_str());
            return false;
        }
    }
    return true;
}

static int Work(const COMMANDLINE &line)
{
    if (const char *deaf = FindDeafCounter())
        Bad("the counter of " + std::string(deaf) + " does not move by a leak");
    line.worker->run(line.options);
    return 0;
}

// A line for each part as it ends, with what it measured below.
static void PrintOutcome(const OUTCOME &outcome)
{
    printf("%-9s %s, %d steps, %lu s\n", outcome.part->name, outcome.problems.empty() ? "ok" : "FAILED", outcome.steps,
           outcome.seconds);
    for (const std::string &figure : outcome.figures)
        printf("          %s\n", figure.c_str());
    fflush(stdout);
}

static void PrintTable(const std::vector<OUTCOME> &outcomes)
{
    printf("\n%-9s  %8s  %8s  %8s  %s\n", "part", "steps", "seconds", "problems", "what");
    for (const OUTCOME &outcome : outcomes)
        printf("%-9s  %8d  %8lu  %8u  %s\n", outcome.part->name, outcome.steps, outcome.seconds,
               static_cast<unsigned>(outcome.problems.size()), outcome.part->what);
}

static int Run(COMMANDLINE *line)
{
    if (line->parts.empty())
        for (const PART &part : g_Parts)
            line->parts.push_back(&part);
    std::vector<OUTCOME> outcomes;
    bool good = SupervisionWorks();
    if (!good)
        printf("the supervision is blind: a worker that fails is not seen\n");
    for (const PART *part : line->parts) {
        outcomes.push_back(Supervise(*part, line->options));
        PrintOutcome(outcomes.back());
        good = good && outcomes.back().problems.empty();
    }
    PrintTable(outcomes);
    return good ? 0 : 1;
}

int main(int argc, char **argv)
{
    g_hInstance = GetModuleHandleA(nullptr);
    COMMANDLINE line;
    if (!ReadCommandLine(&line, argc, argv))
        return 2;
    if (line.help) {
        PrintHelp();
        return 0;
    }
    if (line.victim)
        RunVictim(line.victim);
    return line.worker ? Work(line) : Run(&line);
}
