// Three threads that read features at the same time, from a host that answers as hosts do on bad days. Each request is
// one of its kind, so an answer that belongs to another is seen.
#include "kernel/link/host_request.h"
#include "stress/parts.h"
#include "support/plugin_run.h"

#include <atomic>
#include <thread>

constexpr int THREADS = 3;
constexpr LONG REQUESTS = 100000;
constexpr LONG REQUESTS_BRIEF = 3000;
constexpr LONG WARM_UP = 1000;
constexpr LONG STEP = 1000;
constexpr int SILENCES = 12;             // requests that get no answer; each takes the product's ten seconds
constexpr DWORD SILENCE_LEAST_MS = 9900; // ten rounds of a second
constexpr LONG UNTOUCHED = -77;

// What the host answers to a request, by its number and feature.
static LONG CurrentOf(LONG number, WORD code)
{
    return static_cast<LONG>((static_cast<DWORD>(number) * 2654435761u ^ code) & 0x7FFFFFFF);
}

static LONG MaximumOf(LONG number, WORD code)
{
    return CurrentOf(number, code) ^ 0x5A5A5A5A;
}

struct LOAD {
    LONG requests;
    bool silences; // some are not answered
    std::atomic<LONG> next = 0;
    std::atomic<int> unanswered = 0;
    std::atomic<int> wrong = 0;
};

static bool IsSilence(const LOAD &load, LONG number)
{
    const LONG every = load.requests / SILENCES;
    return load.silences && number % every == every / 2;
}

// By the request's number: about half at once, the rest late, twice, or wrongly first.
static Answer PlanAnswer(const LOAD &load, const TestRequest &request)
{
    static const Answer plans[] = {
        {Answer::Inline}, {Answer::Twice},
        {Answer::Inline}, {Answer::WrongSize, 0, true},
        {Answer::Inline}, {Answer::Later, 0},
        {Answer::Inline}, {Answer::ShortBlock, 1, true},
        {Answer::Twice},  {Answer::WrongSource, 0, true},
        {Answer::Inline}, {Answer::Later, 2},
        {Answer::Inline}, {Answer::WrongCommand, 1, true},
        {Answer::Inline}, {Answer::WrongNumber, 0, true},
    };
    const LONG number = request.Word(0);
    if (IsSilence(load, number))
        return {Answer::Never};
    return plans[static_cast<size_t>(number) % (sizeof plans / sizeof plans[0])];
}

static void CheckAnswer(LOAD *load, LONG number, BYTE code)
{
    LONG maximum = UNTOUCHED;
    const DWORD start = GetTickCount();
    const LONG current = HostGetVCP(number, code, &maximum);
    if (!IsSilence(*load, number)) {
        if (current != CurrentOf(number, code) || maximum != MaximumOf(number, code))
            ++load->wrong;
    } else if (current == -1 && maximum == UNTOUCHED && GetTickCount() - start >= SILENCE_LEAST_MS) {
        ++load->unanswered;
    }
}

static void AskUntilAllAreAsked(LOAD *load, BYTE code)
{
    for (LONG number; (number = load->next++) < load->requests;) {
        CheckAnswer(load, number, code);
        if (number % STEP == 0)
            Step("request " + std::to_string(number));
    }
}

static void AskFromAllThreads(LOAD *load)
{
    std::thread threads[THREADS];
    for (int index = 0; index < THREADS; ++index)
        threads[index] = std::thread(AskUntilAllAreAsked, load, static_cast<BYTE>(0x10 + index));
    for (std::thread &thread : threads)
        thread.join();
}

static int CountTaken()
{
    int taken = 0;
    for (DWORD id = 0; id < REQUEST_COUNT; ++id)
        taken += g_UniqueID[id].bInUse != 0 || g_ReplySlot[id].lpBuffer || g_ReplySlot[id].hEvent;
    return taken;
}

static void Ask(TestHost *host, LOAD *load)
{
    host->plan = [load](const TestRequest &request) { return PlanAnswer(*load, request); };
    AskFromAllThreads(load);
}

void RunRequests(const WORKOPTIONS &options)
{
    HostRun run;
    run.host.recording = false;
    run.host.answer = [](const TestRequest &request) {
        return std::vector<LONG>{CurrentOf(request.Word(0), request.code), MaximumOf(request.Word(0), request.code)};
    };
    LOAD load = {options.brief ? REQUESTS_BRIEF : REQUESTS, true};

    Step("warm-up"); // the run-time library makes the events of its locks when threads first meet there
    LOAD warmUp = {WARM_UP, false};
    run.host.plan = [](const TestRequest &request) {
        return Answer{request.Word(0) % 2 ? Answer::Later : Answer::Inline};
    };
    AskFromAllThreads(&warmUp);
    const RESOURCECOUNTS before = CountResources();
    const DWORD start = GetTickCount();
    Ask(&run.host, &load);
    const DWORD duration = GetTickCount() - start;

    Step("end");
    Expect(load.wrong == 0, std::to_string(load.wrong) + " answers were not the request's own");
    Expect(load.unanswered == SILENCES, std::to_string(load.unanswered) + " of " + std::to_string(SILENCES) +
                                            " unanswered requests ended as they should");
    Expect(CountTaken() == 0, std::to_string(CountTaken()) + " request numbers are still taken");
    ExpectNoGrowth(before);
    Figure(std::to_string(load.requests) + " requests in " + std::to_string(duration / 1000) + " s, " +
           std::to_string(SILENCES) + " of them without an answer");
}
