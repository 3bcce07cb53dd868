// One thread per physical monitor: it alone calls the driver for that monitor, with the pauses and retries that DDC/CI
// needs. Whoever asks waits for an answer as long as his patience lasts, and not longer, even when the driver hangs.
// Who does not want to wait posts a job, in which the monitor is asked on its own thread; one thread watches the jobs
// of all monitors and gives up those that take too long.
//
// Who owns what: a worker and the workshop that it shares with the others are held by its thread, too. A thread that
// does not come back from the driver keeps both, and the monitor's handle, until it does or the process ends; nobody
// waits for it.
#pragma once

#include <windows.h>

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "host/base/monitor_backend.h"
#include "host/windows_monitors/access_rules.h"
#include "host/windows_monitors/capability_store.h"
#include "host/windows_monitors/monitor_api.h"
#include "host/windows_monitors/write_rules.h"

constexpr DWORD STOP_PATIENCE = 500;    // ms that an access may still take once the end has begun
constexpr DWORD REOPEN_PERIOD = 2000;   // ms at least between two looks for a monitor whose handle is no good
constexpr DWORD READ_TURN_LIMIT = 5000; // ms that the read of a suspicious capability string may keep others waiting
constexpr size_t CAPABILITY_LIMIT = 16 * 1024; // bytes; longer is a driver's mistake

struct MONITORWORKER;

// What the workers of a set of monitors have in common.
struct WORKSHOP {
    MONITORAPI api;
    std::shared_ptr<CAPABILITYSTORE> store;
    // Opens the monitor of this identity anew. Called without the lock, on the worker's thread.
    std::function<bool(const std::string &identity, HANDLE *handle)> reopen;

    std::mutex mutex; // guards all that follows, and what the workers say so of
    std::condition_variable changed;
    bool resting = false;  // no capability string is read unasked
    bool stopping = false; // accesses have STOP_PATIENCE
    DWORD stopTick = 0;
    bool closing = false;   // the threads end
    int readers = 0;        // capability strings being read: side by side
    int suspects = 0;       // those of them whose read a process did not survive before: such a one is read alone
    DWORD readerTick = 0;   // when the latest of these reads began
    bool isWatched = false; // there is a thread that gives jobs up
    std::deque<std::shared_ptr<MONITORWORKER>> workers; // until the end
};

// How an access went. error: 0, or the reason; the values are then 0.
struct ACCESSANSWER {
    DWORD error;
    WORD value, maximum; // of a read
};

// What a worker's thread does for others, in the order in which it was asked for.
struct WORKERJOB {
    std::function<void()> run;    // without the lock
    std::function<void()> giveUp; // null: whoever waits for the job gives it up himself
    DWORD startTick, patience;
    bool begun, done;
    bool abandoned; // nobody waits for it any more
};

enum CAPABILITYSTATE {
    CAPABILITIES_WANTED,  // to be read when the thread has nothing else to do
    CAPABILITIES_READING, // the driver is at it
    CAPABILITIES_READ,    // from the monitor, in this run
    CAPABILITIES_KEPT,    // from the file
    CAPABILITIES_FAILED,  // see the error; asking again reads again, if that may help
    CAPABILITIES_NEVER,   // not read in this run: see the error
};

struct MONITORWORKER {
    std::shared_ptr<WORKSHOP> workshop;
    std::string identity; // of the monitor, for reopening
    std::string key;      // of the monitor in the store
    bool mayKeep;         // the key is of this monitor alone: its string may be kept

    // The thread's own.
    HANDLE handle;
    bool hasHandle;
    LASTACCESS last;

    // Guarded by the workshop's mutex.
    bool isLost; // the handle is no good
    DWORD lostTick;
    DWORD lostError;
    std::deque<std::shared_ptr<WORKERJOB>> jobs;
    std::shared_ptr<WORKERJOB> job; // in hand
    DWORD threadId;
    ACCESSMANNERS manners;
    MONITORKNOWLEDGE known;
    std::array<bool, 256> toldRefusals; // of which codes the log has one
    CAPABILITYSTATE state;
    bool isSuspect;  // a process did not survive the read of the string
    bool isToBeKept; // once a second read has given the same
    std::string capabilities;
    DWORD capabilitiesError;
    bool inDriver;
    DWORD driverTick; // since when
    bool ended;       // the thread does nothing more
};

// What a worker starts with. It then owns the handle.
struct WORKERSTART {
    HANDLE handle;
    std::string identity, key;
    bool mayKeep;
    bool readsCapabilities; // false: they are known from elsewhere
    bool keptOnly;          // not from the monitor
    bool isAway;            // there is no handle yet; the monitor may come back
};
std::shared_ptr<MONITORWORKER> StartMonitorWorker(const std::shared_ptr<WORKSHOP> &workshop, const WORKERSTART &start);

// Somebody has looked for the monitor. When it is away accesses fail, with a look for it now and then; when it is there
// again the next one opens it anew at once. Any thread.
void TellMonitorWorker(MONITORWORKER *worker, bool isThere);

// Runs a job on the worker's thread, with ACCESS_PATIENCE. See MONITORBACKEND::post, also for what false means. Any
// thread.
bool PostToMonitorWorker(const std::shared_ptr<MONITORWORKER> &worker, const MONITORJOB &job);

// Reads or writes a VCP code: at once on the worker's own thread, after what waits there on any other. A write that
// write_rules.h refuses has failed; one that would change nothing is done without an access. Returns within `patience`
// ms, or sooner when the workshop stops; on its own thread when the driver does. Any thread.
ACCESSANSWER AskMonitorWorker(MONITORWORKER *worker, ACCESSKIND kind, BYTE code, WORD value, DWORD patience);

// The capability string, waited for in the same way. Returns 0 or the error; *text is then untouched. Any thread.
DWORD AskMonitorCapabilities(MONITORWORKER *worker, DWORD patience, std::string *text);

// No capability string is read unasked from now on, or again; then each monitor is opened anew at its next access: a
// handle from before a sleep may be good for nothing without saying so. Any thread.
void RestWorkshop(WORKSHOP *workshop, bool rests);

// From now on accesses have STOP_PATIENCE; those that wait, too.
void StopWorkshop(WORKSHOP *workshop);

// Ends the threads and waits up to STOP_PATIENCE for them. Returns whether all have ended; one that has not hangs in
// the driver and goes its own way.
bool CloseWorkshop(WORKSHOP *workshop);
