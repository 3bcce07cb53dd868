// One thread per physical monitor, and how the others wait for it.
#include "host/windows_monitors/monitor_worker.h"

#include <algorithm>
#include <chrono>

#include "host/base/detached_thread.h"
#include "host/base/monitor_backend.h"

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

// Leaves the monitor alone for so long. Returns false when the thread shall end, or nobody waits for the access.
static bool Pause(MONITORWORKER *worker, LOCK &lock, const ACCESS *access, DWORD milliseconds)
{
    WORKSHOP *workshop = worker->workshop.get();
    const DWORD start = GetTickCount();
    for (;;) {
        if (workshop->closing || (access && access->abandoned))
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
static DWORD TryOnce(MONITORWORKER *worker, LOCK &lock, ACCESSKIND kind, const ACCESS *access, const FUNCTION &call)
{
    if (!Pause(worker, lock, access, PauseBefore(kind, worker->last, GetTickCount())))
        return OUR_ERROR_STOPPED;
    const DWORD error = CallDriver(worker, lock, call);
    worker->last = {true, kind, GetTickCount()};
    return error;
}

// Tries as often as it makes sense, and once more with a new handle. `access` is null for a capability string.
template <typename FUNCTION>
static DWORD Try(MONITORWORKER *worker, LOCK &lock, ACCESSKIND kind, const ACCESS *access, const FUNCTION &call)
{
    const DWORD start = access ? access->startTick : GetTickCount();
    const DWORD patience = access ? access->patience : ACCESS_PATIENCE;
    DWORD error = worker->isLost ? worker->lostError : TryOnce(worker, lock, kind, access, call);
    if (error && AccessFault(error) == FAULT_GONE) {
        if (!MayReopen(worker) || !Reopen(worker, lock, error))
            return error;
        error = TryOnce(worker, lock, kind, access, call);
    }
    for (int tries = 1; error && !worker->workshop->stopping; tries++) {
        const DWORD passed = GetTickCount() - start;
        if (!IsWorthRetry(error, tries, passed < patience ? patience - passed : 0) ||
            !Pause(worker, lock, access, PAUSE_OF_RETRY))
            break;
        error = TryOnce(worker, lock, kind, access, call);
    }
    return error;
}

static void WorkOffAccess(MONITORWORKER *worker, LOCK &lock, ACCESS *access)
{
    const MONITORAPI &api = worker->workshop->api;
    DWORD type = 0, value = 0, maximum = 0;
    access->begun = true;
    const DWORD error = Try(worker, lock, access->kind, access, [&] {
        if (access->kind == ACCESS_WRITE)
            return api.setVcp(worker->handle, access->code, access->value) != 0;
        return api.getVcp(worker->handle, access->code, &type, &value, &maximum) != 0;
    });
    if (error)
        access->answer = {error, 0, 0};
    else
        access->answer = {0, static_cast<WORD>(value), static_cast<WORD>(maximum)};
    access->done = true;
    worker->workshop->changed.notify_all();
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
    DWORD error = Try(worker, lock, ACCESS_CAPABILITIES, nullptr, [&] { return ReadLength(worker, &length); });
    if (!error) // tried on its own, so that a failure does not waste the length
        error = Try(worker, lock, ACCESS_CAPABILITIES, nullptr, [&] { return ReadText(worker, length, &text); });
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

static void WorkerLoop(const std::shared_ptr<MONITORWORKER> &worker)
{
    WORKSHOP *workshop = worker->workshop.get();
    LOCK lock(workshop->mutex);
    while (!workshop->closing) {
        if (!worker->accesses.empty()) {
            const std::shared_ptr<ACCESS> access = worker->accesses.front();
            worker->accesses.pop_front();
            if (!access->abandoned)
                WorkOffAccess(worker.get(), lock, access.get());
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
    return worker;
}

// ---- On the asker's thread ------------------------------------------------------------------------------------------

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

ACCESSANSWER AskMonitorWorker(MONITORWORKER *worker, ACCESSKIND kind, BYTE code, WORD value, DWORD patience)
{
    const auto access = std::make_shared<ACCESS>(ACCESS{kind, code, value, GetTickCount(), patience, {}, {}, {}, {}});
    LOCK lock(worker->workshop->mutex);
    worker->accesses.push_back(access);
    worker->workshop->changed.notify_all();
    const DWORD error = WaitUntil(worker, lock, access->startTick, patience, [&] { return access->done; });
    if (!error)
        return access->answer;
    access->abandoned = true;
    if (!access->begun)
        worker->accesses.erase(std::remove(worker->accesses.begin(), worker->accesses.end(), access),
                               worker->accesses.end());
    return {error, 0, 0};
}

DWORD AskMonitorCapabilities(MONITORWORKER *worker, DWORD patience, std::string *text)
{
    LOCK lock(worker->workshop->mutex);
    const bool mayPass =
        worker->state == CAPABILITIES_FAILED && AccessFault(worker->capabilitiesError) == FAULT_PASSING;
    if (mayPass && !worker->workshop->stopping) {
        worker->state = CAPABILITIES_WANTED;
        worker->workshop->changed.notify_all();
    }
    const DWORD error = WaitUntil(worker, lock, GetTickCount(), patience, [&] {
        return worker->state != CAPABILITIES_WANTED && worker->state != CAPABILITIES_READING;
    });
    if (error)
        return error;
    if (worker->state == CAPABILITIES_READ || worker->state == CAPABILITIES_KEPT)
        *text = worker->capabilities;
    return worker->capabilitiesError;
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

bool CloseWorkshop(WORKSHOP *workshop, const std::deque<std::shared_ptr<MONITORWORKER>> &workers)
{
    LOCK lock(workshop->mutex);
    workshop->closing = true;
    workshop->changed.notify_all();
    const auto allEnded = [&] {
        return std::all_of(workers.begin(), workers.end(), [](const auto &worker) { return worker->ended; });
    };
    if (workshop->changed.wait_for(lock, std::chrono::milliseconds(STOP_PATIENCE), allEnded))
        return true;
    for (const auto &worker : workers)
        TakeMarkerBack(worker.get());
    return false;
}
