// One thread per physical monitor, and how the others wait for it.
#include "host/windows_monitors/monitor_worker.h"

#include <algorithm>
#include <chrono>

#include "host/base/detached_thread.h"

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
    worker->handle = handle;
    CallDriver(worker, lock, [&] { return worker->workshop->api.destroy(old) != 0; });
    return true;
}

static bool MayReopen(const MONITORWORKER *worker)
{
    return !worker->isLost || GetTickCount() - worker->lostTick >= REOPEN_PERIOD;
}

// One try, after the pause that it needs. `call` does the access with the worker's handle; 0, or the error.
template <typename FUNCTION>
static DWORD TryOnce(MONITORWORKER *worker, LOCK &lock, const EFFORT &effort, const FUNCTION &call)
{
    if (!Pause(worker, lock, effort, PauseBefore(effort.kind, worker->last, GetTickCount())))
        return OUR_ERROR_STOPPED;
    const DWORD error = CallDriver(worker, lock, call);
    worker->last = {true, effort.kind, GetTickCount()};
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
        if (!IsWorthRetry(error, tries, passed < effort.patience ? effort.patience - passed : 0) ||
            !Pause(worker, lock, effort, PAUSE_OF_RETRY))
            break;
        error = TryOnce(worker, lock, effort, call);
    }
    return error;
}

static ACCESSANSWER AccessMonitor(MONITORWORKER *worker, LOCK &lock, const EFFORT &effort, BYTE code, WORD written)
{
    const MONITORAPI &api = worker->workshop->api;
    DWORD type = 0, value = 0, maximum = 0;
    const DWORD error = Try(worker, lock, effort, [&] {
        if (effort.kind == ACCESS_WRITE)
            return api.setVcp(worker->handle, code, written) != 0;
        return api.getVcp(worker->handle, code, &type, &value, &maximum) != 0;
    });
    if (error)
        return {error, 0, 0};
    return {0, static_cast<WORD>(value), static_cast<WORD>(maximum)};
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

static void ReadCapabilities(MONITORWORKER *worker, LOCK &lock)
{
    WORKSHOP *workshop = worker->workshop.get();
    worker->state = CAPABILITIES_READING;
    workshop->readers++;
    workshop->readerTick = GetTickCount();
    lock.unlock();
    MarkCapabilityRead(workshop->store.get(), worker->key);
    lock.lock();
    std::string text;
    DWORD length = 0;
    EFFORT effort = {ACCESS_CAPABILITIES, GetTickCount(), ACCESS_PATIENCE, nullptr};
    DWORD error = Try(worker, lock, effort, [&] { return ReadLength(worker, &length); });
    effort.startTick = GetTickCount();
    if (!error) // tried on its own, so that a failure does not waste the length
        error = Try(worker, lock, effort, [&] { return ReadText(worker, length, &text); });
    if (!error && text.empty())
        error = OUR_ERROR_EMPTY;
    lock.unlock();
    UnmarkCapabilityRead(workshop->store.get(), worker->key);
    if (!error && worker->mayKeep)
        KeepCapabilities(workshop->store.get(), worker->key, text);
    lock.lock();
    workshop->readers--;
    worker->capabilities = text;
    worker->capabilitiesError = error;
    worker->state = error ? CAPABILITIES_FAILED : CAPABILITIES_READ;
    workshop->changed.notify_all();
}

// How long the thread waits before it reads its string: 0 now. Two reads at once would leave two markers behind if one
// of them took the process down.
static DWORD WaitForReadTurn(const WORKSHOP *workshop)
{
    const DWORD passed = GetTickCount() - workshop->readerTick;
    return workshop->readers == 0 || passed >= READ_TURN_LIMIT ? 0 : READ_TURN_LIMIT - passed;
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
        const bool wantsRead = worker->state == CAPABILITIES_WANTED && !workshop->stopping;
        const DWORD wait = wantsRead ? WaitForReadTurn(workshop) : 0;
        if (wantsRead && wait == 0)
            ReadCapabilities(worker.get(), lock);
        else if (wantsRead)
            WaitFor(workshop, lock, wait);
        else
            workshop->changed.wait(lock);
    }
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
    worker->state = CAPABILITIES_NEVER;
    if (start.readsCapabilities) {
        if (start.mayKeep)
            worker->capabilities = FindKeptCapabilities(workshop->store.get(), start.key);
        worker->state = worker->capabilities.empty() ? CAPABILITIES_WANTED : CAPABILITIES_KEPT;
        if (worker->state == CAPABILITIES_WANTED && IsCapabilityReadMarked(workshop->store.get(), start.key)) {
            worker->state = CAPABILITIES_NEVER;
            worker->capabilitiesError = OUR_ERROR_SKIPPED;
        }
    }
    if (!StartDetachedThread([worker] { WorkerLoop(worker); })) // then every access fails at once
        worker->ended = true;
    LOCK lock(workshop->mutex);
    workshop->workers.push_back(worker);
    return worker;
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
        return AccessMonitor(worker, lock, {kind, start, patience, worker->job.get()}, code, value);
    const auto answer = std::make_shared<ACCESSANSWER>();
    const auto job = std::make_shared<WORKERJOB>(WORKERJOB{{}, {}, start, patience, {}, {}, {}});
    job->run = [=] { // on a thread that holds the worker, and the job
        LOCK ownLock(worker->workshop->mutex);
        *answer = AccessMonitor(worker, ownLock, {kind, start, patience, worker->job.get()}, code, value);
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
        const DWORD passed = GetTickCount() - start, wait = WaitForReadTurn(workshop);
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
        UnmarkCapabilityRead(worker->workshop->store.get(), worker->key);
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
