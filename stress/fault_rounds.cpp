// Faults: each scenario is played once to count the calls that can fail, then once for every one of these calls, which
// fails then, and once for each kind with all of its calls failing. After each the plug-in must work as before.
#include "kernel/base/plugin_state.h"
#include "kernel/link/host_packet.h"
#include "stress/parts.h"
#include "stress/scenario.h"
#include "stress/settings_image.h"
#include "support/box_answerer.h"
#include "support/replaced_imports.h"

#include <memory>

constexpr char CAPTION[] = "Lumivane 2";
constexpr char ERROR_CAPTION[] = "Error";
constexpr int ALL_CALLS = 1'000'000;
constexpr int BRIEF_CALLS = 2;    // of each kind, in the brief form
constexpr DWORD LIMIT_MS = 12000; // of one act: no fault makes the plug-in wait longer than for one lost answer

// What fails in a run.
struct FAULTPLACE {
    Fault fault = Fault::None;
    int nth = 1;   // the first call that fails
    int count = 1; // and how many from there on
};

struct PLAY {
    const SCENARIO *scenario;
    STAGE stage;
    SETTINGSIMAGE before; // settings that each act begins with
    SETTINGSIMAGE asked;  // and those that it leads to
    SETTINGSIMAGE ended;  // and those behind the stop that follows a start: a start that cannot go on ends so
    RESOURCECOUNTS counts;
    std::array<int, FAULT_KINDS> calls; // of an act
};

// ---- One act ------------------------------------------------------------------------------------------------------

static int CountTakenNumbers()
{
    int taken = 0;
    for (DWORD id = 0; id < REQUEST_COUNT; ++id)
        taken += g_UniqueID[id].bInUse != 0 || g_ReplySlot[id].lpBuffer;
    return taken;
}

static void CallUnderFault(PLAY *play, const FAULTPLACE &place, void (*what)(STAGE *))
{
    play->stage.faulty = place.fault != Fault::None;
    InjectFault(place.fault, place.nth, place.count);
    TakeCallCounts();
    what(&play->stage);
    play->calls = TakeCallCounts();
    if (play->scenario->during == DURING::Act)
        SendMessageA(g_hKernelWnd, WM_NULL, 0, 0); // done with all that was sent before
}

// Plays the scenario from its beginning with the settings as they are, and takes the settings that it leaves.
// Result: whether a call has failed.
static bool Play(PLAY *play, const FAULTPLACE &place, SETTINGSIMAGE *after)
{
    const SCENARIO &scenario = *play->scenario;
    const BoxAnswerer answerer(CAPTION, scenario.button), errorAnswerer(ERROR_CAPTION, IDOK);
    if (scenario.during != DURING::Act)
        LoadPlugin();
    if (scenario.reset) {
        scenario.reset(&play->stage);
        PutSettings(play->before); // which an open page may have changed when it was closed
    }
    if (scenario.during == DURING::Stop)
        StartPlugin(&play->stage);
    const int taken = CountTakenNumbers();
    const DWORD start = GetTickCount();
    CallUnderFault(play, place,
                   scenario.during == DURING::Start  ? StartPlugin
                   : scenario.during == DURING::Stop ? StopPlugin
                                                     : scenario.act);
    const DWORD duration = GetTickCount() - start;
    const bool failed = FailedCalls() > 0;
    InjectFault(Fault::None);
    *after = TakeSettings();
    if (scenario.during == DURING::Act)
        Expect(CountTakenNumbers() == taken, "request numbers or reply slots are still taken");
    Expect(duration <= LIMIT_MS, "took " + std::to_string(duration) + " ms");
    return failed;
}

static void EndPlay(PLAY *play)
{
    if (play->scenario->during == DURING::Start)
        StopPlugin(&play->stage);
    TakeRecordedCalls();
}

// An act without faults does all that it is there for.
static void PlayWell(PLAY *play, const char *when)
{
    SETTINGSIMAGE after;
    Play(play, {}, &after);
    const std::string missing = play->scenario->missing(&play->stage);
    EndPlay(play);
    Expect(missing.empty(), when + missing);
    if (play->scenario->during == DURING::Act) {
        const std::string differences = FindForeignParts({&play->asked}, after);
        Expect(differences.empty(), when + ("settings differ: " + differences));
    }
}

// ---- Leaks --------------------------------------------------------------------------------------------------------

static void PlayFault(PLAY *play, const FAULTPLACE &place)
{
    SETTINGSIMAGE after;
    PutSettings(play->before);
    Play(play, place, &after);
    EndPlay(play);
}

// Something that is there once more than before may be the system's own, made at first need. A leak comes each time.
static void LookForLeak(PLAY *play, const FAULTPLACE &place)
{
    constexpr int TIMES = 3;
    if (DescribeGrowth(play->counts, CountResourcesNow()).empty())
        return;
    RESOURCECOUNTS last = CountResources();
    if (DescribeGrowth(play->counts, last).empty())
        return;
    std::array<int, RESOURCE_KINDS> growths = {};
    for (int time = 0; time < TIMES; ++time) {
        PlayFault(play, place);
        const RESOURCECOUNTS now = CountResources();
        for (size_t kind = 0; kind < now.size(); ++kind)
            growths[kind] += now[kind] > last[kind];
        last = now;
    }
    for (int kind = 0; kind < RESOURCE_KINDS; ++kind)
        Expect(growths[static_cast<size_t>(kind)] < TIMES, "leaks " + std::string(ResourceName(kind)) + " each time");
    play->counts = last;
}

// ---- All faults of a scenario -------------------------------------------------------------------------------------

// Puts what may be there in spite of all back to what it was before.
static SETTINGSIMAGE WithoutTolerated(const PLAY &play, SETTINGSIMAGE image)
{
    for (size_t index = 0; index < g_nTolerated; ++index) {
        const TOLERATED &tolerated = g_Tolerated[index];
        const std::string end = tolerated.part;
        for (auto &[name, value] : image.parts)
            if (play.scenario->name == std::string(tolerated.scenario) && value == tolerated.value &&
                name.size() > end.size() && name.compare(name.size() - end.size(), end.size(), end) == 0)
                value = play.asked.parts.at(name);
    }
    return image;
}

static void TryFault(PLAY *play, const FAULTPLACE &place)
{
    SETTINGSIMAGE after;
    PutSettings(play->before);
    const bool failed = Play(play, place, &after);
    EndPlay(play);
    if (failed) {
        const std::string foreign =
            FindForeignParts({&play->before, &play->asked, &play->ended}, WithoutTolerated(*play, after));
        Expect(foreign.empty(), "neither as before nor as asked: " + foreign);
    }
    LookForLeak(play, place);
}

static void LookWhetherItWorks(PLAY *play)
{
    PutSettings(play->before);
    PlayWell(play, "afterwards: ");
}

static std::string Position(const PLAY &play, const FAULTPLACE &place)
{
    return std::string(play.scenario->name) + " " + FaultName(place.fault) + " " +
           (place.count == ALL_CALLS ? "all" : std::to_string(place.nth));
}

// Which positions are left to do: all behind the one where the last worker died, and of these what was asked for.
struct POSITIONS {
    std::string from;
    std::string only;
    bool Take(const std::string &position)
    {
        if (!from.empty()) {
            if (position == from)
                from.clear();
            return false;
        }
        return position.compare(0, only.size(), only) == 0;
    }
};

static void TryKind(PLAY *play, Fault fault, int calls, bool brief, POSITIONS *positions)
{
    constexpr int FEW = 30; // calls, after each of which there is time for a look
    const bool lookEachTime = play->scenario->during == DURING::Act && calls <= FEW && !brief;
    // The last round of the whole form: every call of the kind.
    const int rounds = !brief ? calls + 1 : calls < BRIEF_CALLS ? calls : BRIEF_CALLS;
    bool tried = false;
    for (int nth = 1; nth <= rounds; ++nth) {
        const bool all = nth > calls;
        const FAULTPLACE place = {fault, all ? 1 : nth, all ? ALL_CALLS : 1};
        if (!positions->Take(Position(*play, place)))
            continue;
        Step(Position(*play, place));
        TryFault(play, place);
        if (lookEachTime)
            LookWhetherItWorks(play);
        tried = true;
    }
    if (tried && !lookEachTime)
        LookWhetherItWorks(play);
}

static void SetTheStage(PLAY *play)
{
    const SCENARIO &scenario = *play->scenario;
    LoadPlugin();
    play->stage.run.host.recording = false;
    scenario.prepare(&play->stage);
    if (scenario.during == DURING::Act)
        StartPlugin(&play->stage);
    if (scenario.during == DURING::Stop) // finds what a start has made of the settings
        StartPlugin(&play->stage);
    play->before = TakeSettings();
    if (scenario.during == DURING::Stop)
        StopPlugin(&play->stage);
}

// Plays it without faults until nothing new is made, and counts its calls.
static void Rehearse(PLAY *play)
{
    constexpr int WARM_UPS = 3;
    for (int round = 0; round < WARM_UPS; ++round) {
        PutSettings(play->before);
        Play(play, {}, &play->asked);
        const std::string missing = play->scenario->missing(&play->stage);
        EndPlay(play);
        play->ended = play->scenario->during == DURING::Start ? TakeSettings() : play->asked;
        Expect(missing.empty(), "without faults: " + missing);
    }
    play->counts = CountResources();
}

static bool IsLeft(const SCENARIO &scenario, const POSITIONS &positions)
{
    const std::string name = scenario.name + std::string(" ");
    const std::string &of = positions.from.empty() ? positions.only : positions.from;
    return of.empty() || name.compare(0, of.size(), of, 0, name.size()) == 0;
}

static void PlayScenario(const SCENARIO &scenario, bool brief, POSITIONS *positions)
{
    const std::string rehearsal = std::string(scenario.name) + " rehearsal";
    if (positions->from == rehearsal) { // it did not get through that: nothing here can be tried
        positions->from.clear();
        return;
    }
    Step(rehearsal);
    const auto play = std::make_unique<PLAY>();
    play->scenario = &scenario;
    SetTheStage(play.get());
    Rehearse(play.get());
    const std::array<int, FAULT_KINDS> calls = play->calls;
    int total = 0;
    for (int kind = 0; kind < FAULT_KINDS; ++kind) {
        const int count = calls[static_cast<size_t>(kind)];
        if (count > 0)
            TryKind(play.get(), static_cast<Fault>(kind), count, brief, positions);
        total += count;
    }
    if (scenario.during == DURING::Act)
        StopPlugin(&play->stage);
    Figure(std::string(scenario.name) + ": " + std::to_string(total) + " calls that can fail");
}

void RunFaults(const WORKOPTIONS &options)
{
    AimAtPlugin(true);
    POSITIONS positions = {options.from, options.only};
    for (size_t index = 0; index < g_nScenarios; ++index)
        if (IsLeft(g_Scenarios[index], positions))
            PlayScenario(g_Scenarios[index], options.brief, &positions);
}
