// One thread per physical monitor, and how the others wait for it.
#include "host/windows_monitors/monitor_worker.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "host/base/detached_thread.h"
#include "host/base/packet_log.h"
#include "host/base/text.h"
#include "host/windows_monitors/plain_capabilities.h"

typedef std::unique_lock<std::mutex> LOCK;

static void WaitFor(WORKSHOP *workshop, LOCK &lock, DWORD milliseconds)
{
    workshop->changed.wait_for(lock, std::chrono::milliseconds(milliseconds));
}

// ---- On the worker's thread -----------------------------------------------------------------------------------------

// Calls a function of the API without the lock; 0, or why it failed.
template <typename FUNCTION>
static DWORD CallDriver(MONITORWORKER *worker, LOCK &lock, const FUNCTION &function)
{
    worker->inDriver = true;
    worker->driverTick = GetTickCount();
    lock.unlock();
    SetLastError(0);
    const bool done = function();
    const DWORD code = GetLastError();
    lock.lock();
    worker->inDriver = false;
    worker->workshop->changed.notify_all();
    return done ? 0 : code ? code : ERROR_GEN_FAILURE;
}

// How long a worker may be at something, and for whom.
struct EFFORT {
    ACCESSKIND kind;
    BYTE code; // of a read or write
    DWORD startTick, patience;
    const WORKERJOB *job; // null: goes on though nobody may wait for it
};

// Leaves the monitor alone for so long. Returns false when the thread shall end, or nobody waits for the access.
static bool Pause(MONITORWORKER *worker, LOCK &lock, const EFFORT &effort, DWORD milliseconds)
{
    WORKSHOP *workshop = worker->workshop.get();
    const DWORD start = GetTickCount();
    for (;;) {
        if (workshop->closing || (effort.job && effort.job->abandoned))
            return false;
        const DWORD passed = GetTickCount() - start;
        if (passed >= milliseconds)
            return true;
        WaitFor(workshop, lock, milliseconds - passed);
    }
}

// A handle becomes invalid with each change of the display mode, though the monitor is still there.
static bool Reopen(MONITORWORKER *worker, LOCK &lock, DWORD error)
{
    HANDLE handle = nullptr;
    const bool found = CallDriver(worker, lock, [&] {
                           return worker->workshop->reopen && worker->workshop->reopen(worker->identity, &handle);
                       }) == 0;
    worker->isLost = !found;
    worker->lostTick = GetTickCount();
    worker->lostError = error;
    if (!found)
        return false;
    const HANDLE old = worker->handle;
    const bool hadHandle = worker->hasHandle;
    worker->handle = handle;
    worker->hasHandle = true;
    ForgetValues(&worker->known); // it was asleep, or another program's
    if (hadHandle)
        CallDriver(worker, lock, [&] { return worker->workshop->api.destroy(old) != 0; });
    return true;
}

// From now on the handle is no good.
static void Lose(MONITORWORKER *worker)
{
    worker->isLost = true;
    worker->lostTick = GetTickCount();
    worker->lostError = GRAPHICS_MONITOR_NO_LONGER_EXISTS;
}

static bool MayReopen(const MONITORWORKER *worker)
{
    return !worker->isLost || GetTickCount() - worker->lostTick >= REOPEN_PERIOD;
}

// One try, after the pause that it needs. `call` does the access with the worker's handle; 0, or the error.
template <typename FUNCTION>
static DWORD TryOnce(MONITORWORKER *worker, LOCK &lock, const EFFORT &effort, const FUNCTION &call)
{
    const bool hurried = worker->workshop->stopping;
    if (!Pause(worker, lock, effort, PauseBefore(effort.kind, worker->last, GetTickCount(), worker->manners, hurried)))
        return OUR_ERROR_STOPPED;
    const DWORD error = CallDriver(worker, lock, call);
    worker->last = {true, effort.kind, effort.code, GetTickCount()};
    return error;
}

// Tries as often as it makes sense, and once more with a new handle.
template <typename FUNCTION>
static DWORD Try(MONITORWORKER *worker, LOCK &lock, const EFFORT &effort, const FUNCTION &call)
{
    DWORD error = worker->isLost ? worker->lostError : TryOnce(worker, lock, effort, call);
    if (error && AccessFault(error) == FAULT_GONE) {
        if (!MayReopen(worker) || !Reopen(worker, lock, error))
            return error;
        error = TryOnce(worker, lock, effort, call);
    }
    for (int tries = 1; error && !worker->workshop->stopping; tries++) {
        const DWORD passed = GetTickCount() - effort.startTick;
        const DWORD left = passed < effort.patience ? effort.patience - passed : 0;
        const DWORD pause = PauseOfRetry(error, tries, left, worker->manners);
        if (pause == 0 || !Pause(worker, lock, effort, pause))
            break;
        error = TryOnce(worker, lock, effort, call);
    }
    return error;
}

static ACCESSANSWER CallMonitor(MONITORWORKER *worker, LOCK &lock, const EFFORT &effort, WORD written)
{
    const MONITORAPI &api = worker->workshop->api;
    const BYTE code = effort.code;
    DWORD type = 0, value = 0, maximum = 0;
    const DWORD error = Try(worker, lock, effort, [&] {
        if (effort.kind == ACCESS_WRITE)
            return api.setVcp(worker->handle, code, written) != 0;
        return api.getVcp(worker->handle, code, &type, &value, &maximum) != 0;
    });
    if (effort.kind == ACCESS_WRITE)
        LearnWrite(&worker->known, code, written, error == 0, GetTickCount());
    if (error)
        return {error, 0, 0};
    const ACCESSANSWER answer = {0, static_cast<WORD>(value), static_cast<WORD>(maximum)};
    if (effort.kind == ACCESS_READ)
        LearnRead(&worker->known, code, answer.value, answer.maximum, GetTickCount());
    return answer;
}

// The first of each code, so that a log is no list of them.
static void LogRefusal(MONITORWORKER *worker, BYTE code, WORD value, WRITEVERDICT verdict)
{
    if (!std::exchange(worker->toldRefusals[code], true))
        LogEvent(Format("monitor %s: %u is not written to 0x%02X: %s", worker->key.c_str(), value, code,
                        RefusalText(verdict)));
}

static ACCESSANSWER AccessMonitor(MONITORWORKER *worker, LOCK &lock, const EFFORT &effort, WORD written)
{
    if (effort.kind != ACCESS_WRITE)
        return CallMonitor(worker, lock, effort, 0);
    WRITEVERDICT verdict = JudgeWrite(worker->known, effort.code, written, GetTickCount());
    if (verdict == WRITE_LOOK) {
        EFFORT look = effort;
        look.kind = ACCESS_READ;
        const ACCESSANSWER seen = CallMonitor(worker, lock, look, 0);
        verdict = seen.error || seen.value != written ? WRITE_SEND : WRITE_SKIP;
    }
    if (verdict == WRITE_SEND)
        return CallMonitor(worker, lock, effort, written);
    if (!IsRefused(verdict))
        return {};
    LogRefusal(worker, effort.code, written, verdict);
    return {OUR_ERROR_REFUSED, 0, 0};
}

// The driver reads the string from the monitor for its length already.
static bool ReadLength(const MONITORWORKER *worker, DWORD *length)
{
    if (!worker->workshop->api.getCapabilitiesLength(worker->handle, length))
        return false;
    if (*length <= CAPABILITY_LIMIT)
        return true;
    SetLastError(GRAPHICS_INVALID_CAPABILITIES);
    return false;
}

static bool ReadText(const MONITORWORKER *worker, DWORD length, std::string *text)
{
    std::string bytes(length + 1, '\0');
    if (length > 0 && !worker->workshop->api.getCapabilities(worker->handle, bytes.data(), length))
        return false;
    bytes.resize(std::min<size_t>(bytes.find('\0'), length));
    *text = bytes;
    return true;
}

// Length and text are tried each on its own, so that a failure does not waste the length.
static DWORD ReadString(MONITORWORKER *worker, LOCK &lock, std::string *text)
{
    DWORD length = 0;
    EFFORT effort = {ACCESS_CAPABILITIES, 0, GetTickCount(), ACCESS_PATIENCE, nullptr};
    DWORD error = Try(worker, lock, effort, [&] { return ReadLength(worker, &length); });
    effort.startTick = GetTickCount();
    if (!error)
        error = Try(worker, lock, effort, [&] { return ReadText(worker, length, text); });
    return !error && text->empty() ? DWORD{OUR_ERROR_EMPTY} : error;
}

// Reads the string with its marker up, which says who was at it if that takes the process down.
static DWORD ReadMarkedString(MONITORWORKER *worker, LOCK &lock, std::string *text)
{
    WORKSHOP *workshop = worker->workshop.get();
    workshop->readers++;
    workshop->suspects += worker->isSuspect;
    workshop->readerTick = GetTickCount();
    lock.unlock();
    MarkCapabilityRead(workshop->store.get(), worker->key);
    lock.lock();
    const DWORD error = ReadString(worker, lock, text);
    lock.unlock();
    UnmarkCapabilityRead(workshop->store.get(), worker->key);
    lock.lock();
    workshop->readers--;
    workshop->suspects -= worker->isSuspect;
    worker->isSuspect = false;
    return error;
}

static void ReadCapabilities(MONITORWORKER *worker, LOCK &lock)
{
    std::string text;
    worker->state = CAPABILITIES_READING;
    const DWORD error = ReadMarkedString(worker, lock, &text);
    worker->capabilities = text;
    worker->capabilitiesError = error;
    worker->state = error ? CAPABILITIES_FAILED : CAPABILITIES_READ;
    worker->isToBeKept = !error && worker->mayKeep && !CapabilityFault(text);
    worker->workshop->changed.notify_all();
}

// A string that was disturbed on its way counts for this run at most: only one that comes a second time is kept for
// those to come.
static void ProveCapabilities(MONITORWORKER *worker, LOCK &lock)
{
    std::string again;
    worker->isToBeKept = false;
    if (ReadMarkedString(worker, lock, &again) != 0 || again != worker->capabilities)
        return;
    lock.unlock();
    KeepCapabilities(worker->workshop->store.get(), worker->key, again);
    lock.lock();
}

// How long the thread waits before it reads its string: 0 now. Two reads at once leave two markers behind if one of
// them takes the process down, so a read that is under suspicion has nobody beside it.
static DWORD WaitForReadTurn(const MONITORWORKER *worker)
{
    const WORKSHOP *workshop = worker->workshop.get();
    const DWORD passed = GetTickCount() - workshop->readerTick;
    const bool mustWait = worker->isSuspect ? workshop->readers > 0 : workshop->suspects > 0;
    return !mustWait || passed >= READ_TURN_LIMIT ? 0 : READ_TURN_LIMIT - passed;
}

static void RunNextJob(MONITORWORKER *worker, LOCK &lock)
{
    worker->job = worker->jobs.front();
    worker->jobs.pop_front();
    worker->job->begun = true;
    lock.unlock();
    worker->job->run();
    lock.lock();
    worker->job->done = true;
    worker->job = nullptr;
    worker->workshop->changed.notify_all();
}

static void WorkerLoop(const std::shared_ptr<MONITORWORKER> &worker)
{
    WORKSHOP *workshop = worker->workshop.get();
    LOCK lock(workshop->mutex);
    worker->threadId = GetCurrentThreadId();
    while (!workshop->closing) {
        if (!worker->jobs.empty()) {
            RunNextJob(worker.get(), lock);
            continue;
        }
        const bool isUnread = worker->state == CAPABILITIES_WANTED;
        const bool wantsRead = (isUnread || worker->isToBeKept) && !workshop->stopping && !workshop->resting;
        const DWORD wait = wantsRead ? WaitForReadTurn(worker.get()) : 0;
        if (wantsRead && wait == 0)
            (isUnread ? ReadCapabilities : ProveCapabilities)(worker.get(), lock);
        else if (wantsRead)
            WaitFor(workshop, lock, wait);
        else
            workshop->changed.wait(lock);
    }
    if (worker->hasHandle)
        CallDriver(worker.get(), lock, [&] { return workshop->api.destroy(worker->handle) != 0; });
    worker->ended = true;
    workshop->changed.notify_all();
}

std::shared_ptr<MONITORWORKER> StartMonitorWorker(const std::shared_ptr<WORKSHOP> &workshop, const WORKERSTART &start)
{
    auto worker = std::make_shared<MONITORWORKER>();
    worker->workshop = workshop;
    worker->identity = start.identity;
    worker->key = start.key;
    worker->mayKeep = start.mayKeep;
    worker->handle = start.handle;
    worker->known = NoKnowledge();
    worker->hasHandle = !start.isAway;
    if (start.isAway)
        Lose(worker.get());
    worker->state = CAPABILITIES_NEVER;
    if (start.readsCapabilities) {
        if (start.mayKeep)
            worker->capabilities = FindKeptCapabilities(workshop->store.get(), start.key);
        worker->state = worker->capabilities.empty() ? CAPABILITIES_WANTED : CAPABILITIES_KEPT;
        const size_t strikes = CapabilityReadStrikes(workshop->store.get(), start.key);
        worker->isSuspect = strikes > 0;
        if (worker->state == CAPABILITIES_WANTED && strikes >= CAPABILITY_STRIKES) {
            worker->state = CAPABILITIES_NEVER;
            worker->capabilitiesError = OUR_ERROR_SKIPPED;
        } else if (worker->state == CAPABILITIES_WANTED && start.keptOnly) {
            worker->state = CAPABILITIES_NEVER;
        }
    }
    if (!StartDetachedThread([worker] { WorkerLoop(worker); })) // then every access fails at once
        worker->ended = true;
    LOCK lock(workshop->mutex);
    workshop->workers.push_back(worker);
    return worker;
}

void TellMonitorWorker(MONITORWORKER *worker, bool isThere)
{
    LOCK lock(worker->workshop->mutex);
    if (!isThere && !worker->isLost)
        Lose(worker);
    if (isThere)
        worker->lostTick = GetTickCount() - REOPEN_PERIOD;
}

// ---- Patience ------------------------------------------------------------------------------------------

// ms that somebody may wait who began to at `start`.
static DWORD Limit(const WORKSHOP *workshop, DWORD start, DWORD patience)
{
    if (!workshop->stopping)
        return patience;
    const DWORD before = workshop->stopTick - start; // what had passed at the stop
    const bool beganBefore = static_cast<LONG>(before) > 0;
    return std::min(patience, beganBefore ? before + STOP_PATIENCE : STOP_PATIENCE);
}

// ms until the thread has been in the driver for so long that waiting for it makes no sense; 0: it has.
static DWORD UntilStuck(const MONITORWORKER *worker)
{
    if (!worker->inDriver)
        return INFINITE;
    const DWORD limit = worker->workshop->stopping ? STOP_PATIENCE : ACCESS_PATIENCE;
    const DWORD passed = GetTickCount() - worker->driverTick;
    return passed >= limit ? 0 : limit - passed;
}

static bool IsStuck(const MONITORWORKER *worker)
{
    return UntilStuck(worker) == 0;
}

// Waits until `done` says so; 0, or why it is over without it.
template <typename FUNCTION>
static DWORD WaitUntil(MONITORWORKER *worker, LOCK &lock, DWORD start, DWORD patience, const FUNCTION &done)
{
    WORKSHOP *workshop = worker->workshop.get();
    for (;;) {
        if (done())
            return 0;
        if (workshop->closing || worker->ended)
            return OUR_ERROR_STOPPED;
        if (IsStuck(worker))
            return OUR_ERROR_STUCK;
        const DWORD limit = Limit(workshop, start, patience), passed = GetTickCount() - start;
        if (passed >= limit)
            return OUR_ERROR_TIMEOUT;
        WaitFor(workshop, lock, std::min(limit - passed, UntilStuck(worker)));
    }
}

// ---- On the asker's thread ------------------------------------------------------------------------------------------

static bool IsOwnThread(const MONITORWORKER *worker)
{
    return worker->threadId == GetCurrentThreadId();
}

static void PushJob(MONITORWORKER *worker, const std::shared_ptr<WORKERJOB> &job)
{
    worker->jobs.push_back(job);
    worker->workshop->changed.notify_all();
}

static void AbandonJob(MONITORWORKER *worker, const std::shared_ptr<WORKERJOB> &job)
{
    job->abandoned = true;
    worker->jobs.erase(std::remove(worker->jobs.begin(), worker->jobs.end(), job), worker->jobs.end());
}

ACCESSANSWER AskMonitorWorker(MONITORWORKER *worker, ACCESSKIND kind, BYTE code, WORD value, DWORD patience)
{
    const DWORD start = GetTickCount();
    LOCK lock(worker->workshop->mutex);
    if (patience == 0)
        return {OUR_ERROR_TIMEOUT, 0, 0};
    if (IsOwnThread(worker))
        return AccessMonitor(worker, lock, {kind, code, start, patience, worker->job.get()}, value);
    const auto answer = std::make_shared<ACCESSANSWER>();
    const auto job = std::make_shared<WORKERJOB>(WORKERJOB{{}, {}, start, patience, {}, {}, {}});
    job->run = [=] { // on a thread that holds the worker, and the job
        LOCK ownLock(worker->workshop->mutex);
        *answer = AccessMonitor(worker, ownLock, {kind, code, start, patience, worker->job.get()}, value);
    };
    PushJob(worker, job);
    const DWORD error = WaitUntil(worker, lock, start, patience, [&] { return job->done; });
    if (!error)
        return *answer;
    AbandonJob(worker, job);
    return {error, 0, 0};
}

// On the worker's own thread. What keeps others from asking keeps it from reading, too.
static void ReadWantedCapabilities(MONITORWORKER *worker, LOCK &lock, DWORD start, DWORD patience)
{
    WORKSHOP *workshop = worker->workshop.get();
    for (;;) {
        const DWORD passed = GetTickCount() - start, wait = WaitForReadTurn(worker);
        if (workshop->stopping || workshop->closing || passed >= patience)
            return;
        if (wait == 0)
            return ReadCapabilities(worker, lock);
        WaitFor(workshop, lock, std::min(wait, patience - passed));
    }
}

DWORD AskMonitorCapabilities(MONITORWORKER *worker, DWORD patience, std::string *text)
{
    const DWORD start = GetTickCount();
    LOCK lock(worker->workshop->mutex);
    const bool mayPass =
        worker->state == CAPABILITIES_FAILED && AccessFault(worker->capabilitiesError) == FAULT_PASSING;
    if (mayPass && patience > 0 && !worker->workshop->stopping) {
        worker->state = CAPABILITIES_WANTED;
        worker->workshop->changed.notify_all();
    }
    const bool isOwn = IsOwnThread(worker);
    if (isOwn && worker->state == CAPABILITIES_WANTED)
        ReadWantedCapabilities(worker, lock, start, patience);
    const DWORD error = WaitUntil(worker, lock, start, isOwn ? 0 : patience, [&] {
        return worker->state != CAPABILITIES_WANTED && worker->state != CAPABILITIES_READING;
    });
    if (error)
        return error;
    if (worker->state == CAPABILITIES_READ || worker->state == CAPABILITIES_KEPT)
        *text = worker->capabilities;
    return worker->capabilitiesError;
}

// ---- Jobs that nobody waits for -------------------------------------------------------------------------------------

// ms until a job of a worker has taken too long; 0: it has, and INFINITE: never.
static DWORD UntilDue(const MONITORWORKER *worker, const WORKERJOB &job)
{
    if (!job.giveUp || job.abandoned)
        return INFINITE;
    if (worker->ended)
        return 0;
    const DWORD limit = Limit(worker->workshop.get(), job.startTick, job.patience);
    const DWORD passed = GetTickCount() - job.startTick;
    return passed >= limit ? 0 : std::min(limit - passed, UntilStuck(worker));
}

// The next job to be given up and its worker, or neither and how long that lasts.
struct DUEJOB {
    std::shared_ptr<MONITORWORKER> worker;
    std::shared_ptr<WORKERJOB> job;
    DWORD wait;
};

static DUEJOB FindDueJob(const WORKSHOP *workshop)
{
    DUEJOB due = {nullptr, nullptr, INFINITE};
    for (const std::shared_ptr<MONITORWORKER> &worker : workshop->workers) {
        std::deque<std::shared_ptr<WORKERJOB>> jobs = worker->jobs;
        if (worker->job)
            jobs.push_front(worker->job);
        for (const std::shared_ptr<WORKERJOB> &job : jobs) {
            const DWORD wait = UntilDue(worker.get(), *job);
            if (wait == 0)
                return {worker, job, 0};
            due.wait = std::min(due.wait, wait);
        }
    }
    return due;
}

// Never calls the driver, so it comes back whatever that does.
static void WatchLoop(const std::shared_ptr<WORKSHOP> &workshop)
{
    LOCK lock(workshop->mutex);
    while (!workshop->closing) {
        const DUEJOB due = FindDueJob(workshop.get());
        if (due.job) {
            AbandonJob(due.worker.get(), due.job);
            lock.unlock();
            due.job->giveUp();
            lock.lock();
        } else if (due.wait == INFINITE) {
            workshop->changed.wait(lock);
        } else {
            WaitFor(workshop.get(), lock, due.wait);
        }
    }
    workshop->isWatched = false;
    workshop->changed.notify_all();
}

bool PostToMonitorWorker(const std::shared_ptr<MONITORWORKER> &worker, const MONITORJOB &job)
{
    const std::shared_ptr<WORKSHOP> workshop = worker->workshop;
    LOCK lock(workshop->mutex);
    if (!workshop->isWatched)
        workshop->isWatched = !workshop->closing && StartDetachedThread([workshop] { WatchLoop(workshop); });
    if (!workshop->isWatched)
        return false;
    PushJob(worker.get(),
            std::make_shared<WORKERJOB>(WORKERJOB{job.run, job.giveUp, GetTickCount(), ACCESS_PATIENCE, {}, {}, {}}));
    return true;
}

void RestWorkshop(WORKSHOP *workshop, bool rests)
{
    LOCK lock(workshop->mutex);
    workshop->resting = rests;
    for (const std::shared_ptr<MONITORWORKER> &worker : workshop->workers) {
        if (rests)
            continue;
        Lose(worker.get());
        worker->lostTick -= REOPEN_PERIOD;
    }
    workshop->changed.notify_all();
}

// ---- The end --------------------------------------------------------------------------------------------------------

void StopWorkshop(WORKSHOP *workshop)
{
    LOCK lock(workshop->mutex);
    if (!workshop->stopping)
        workshop->stopTick = GetTickCount();
    workshop->stopping = true;
    workshop->changed.notify_all();
}

// A read that has not had its time leaves no marker: somebody ended the program, the driver did not.
static void TakeMarkerBack(MONITORWORKER *worker)
{
    const bool hadItsTime = worker->inDriver && GetTickCount() - worker->driverTick >= ACCESS_PATIENCE;
    if (worker->state == CAPABILITIES_READING && !hadItsTime)
        TakeBackCapabilityMark(worker->workshop->store.get(), worker->key);
}

bool CloseWorkshop(WORKSHOP *workshop)
{
    LOCK lock(workshop->mutex);
    workshop->closing = true;
    workshop->changed.notify_all();
    std::deque<std::shared_ptr<MONITORWORKER>> workers;
    workers.swap(workshop->workers); // they hold the workshop, and it them
    const auto allEnded = [&] {
        return !workshop->isWatched &&
               std::all_of(workers.begin(), workers.end(), [](const auto &worker) { return worker->ended; });
    };
    if (workshop->changed.wait_for(lock, std::chrono::milliseconds(STOP_PATIENCE), allEnded))
        return true;
    for (const auto &worker : workers)
        TakeMarkerBack(worker.get());
    return false;
}
