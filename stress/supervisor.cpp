// The supervisor's reading of a worker.
#include "stress/supervisor.h"

#include "stress/child.h"

#include <cstdio>
#include <iterator>

constexpr size_t MOST_CRASHES = 20; // then the rest is not worth the time
constexpr DWORD STATUS_DONE = 0;

static void AddProblem(OUTCOME *outcome, const std::string &position, const std::string &what)
{
    const std::string problem = position.empty() ? what : position + ": " + what;
    outcome->problems.push_back(problem);
    if (outcome->quiet)
        return;
    printf("  %s: %s\n", outcome->part->name, problem.c_str());
    fflush(stdout);
}

static std::string Arguments(const PART &part, const WORKOPTIONS &options, const std::string &from)
{
    std::string arguments = "--worker " + std::string(part.name);
    if (options.brief)
        arguments += " --brief";
    if (!options.only.empty())
        arguments += " --only \"" + options.only + "\"";
    if (!from.empty())
        arguments += " --from \"" + from + "\"";
    return arguments;
}

// Result: the position at which the worker died; empty when it came to its end.
static std::string RunWorker(const PART &part, const WORKOPTIONS &options, const std::string &from, OUTCOME *outcome)
{
    ChildProcess worker(Arguments(part, options, from));
    std::string position = "start";
    while (const auto line = worker.ReadLine(part.silenceMs)) {
        const size_t blank = line->find(' ');
        const std::string kind = line->substr(0, blank);
        const std::string text = blank == std::string::npos ? "" : line->substr(blank + 1);
        if (kind == "step") {
            position = text;
            ++outcome->steps;
        } else if (kind == "bad") {
            AddProblem(outcome, position, text);
        } else if (kind == "figure") {
            outcome->figures.push_back(text);
        } else if (!line->empty()) {
            AddProblem(outcome, position, "unexpected output: " + *line);
        }
    }
    if (worker.Silent()) {
        AddProblem(outcome, position, "HANG: no sign of life for " + std::to_string(part.silenceMs / 1000) + " s");
        return position;
    }
    if (worker.ExitCode() == STATUS_DONE)
        return "";
    AddProblem(outcome, position, "CRASH: status " + std::to_string(worker.ExitCode()));
    return position;
}

static void RunToEnd(const WORKOPTIONS &options, OUTCOME *outcome)
{
    const PART &part = *outcome->part;
    const DWORD start = GetTickCount();
    std::string from = options.from;
    for (size_t crashes = 0; crashes < MOST_CRASHES; ++crashes) {
        const std::string died = RunWorker(part, options, from, outcome);
        if (died.empty() || !part.resumes || died == from)
            break;
        from = died;
    }
    outcome->seconds = (GetTickCount() - start + 500) / 1000;
}

OUTCOME Supervise(const PART &part, const WORKOPTIONS &options)
{
    OUTCOME outcome = {&part, {}, {}, 0, 0};
    RunToEnd(options, &outcome);
    return outcome;
}

// ---- The supervision itself ---------------------------------------------------------------------------------------

static void Fail(const WORKOPTIONS &options)
{
    if (options.from.empty()) {
        Step("first");
        Bad("complaint");
        Step("second");
        TerminateProcess(GetCurrentProcess(), static_cast<UINT>(STATUS_ACCESS_VIOLATION)); // the system would say more
    }
    if (options.from == "second") {
        Step("third");
        Sleep(INFINITE);
    }
}

const PART g_FailingPart = {"failing", "complains, crashes, hangs", Fail, 2000, true};

bool SupervisionWorks()
{
    OUTCOME outcome = {&g_FailingPart, {}, {}, 0, 0, true};
    RunToEnd({}, &outcome);
    static const char *const expected[] = {"first: complaint", "second: CRASH", "third: HANG"};
    if (outcome.problems.size() != std::size(expected))
        return false;
    for (size_t index = 0; index < outcome.problems.size(); ++index)
        if (outcome.problems[index].find(expected[index]) != 0)
            return false;
    return true;
}
