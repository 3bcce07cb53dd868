// Looks for monitors with a limit on the time it takes.
#include "host/windows_monitors/timed_search.h"

#include <chrono>
#include <condition_variable>
#include <mutex>

#include "host/base/detached_thread.h"
#include "host/windows_monitors/access_error.h"

struct MONITORSEARCH {
    std::mutex mutex;
    std::condition_variable changed;
    bool done, abandoned;
    FINDING finding;
};

static void Search(const std::shared_ptr<MONITORSEARCH> &search, const MONITORAPI &api, LISTDISPLAYS listDisplays)
{
    const FINDING finding = FindPhysicalMonitors(api, listDisplays());
    std::unique_lock lock(search->mutex);
    if (search->abandoned) {
        lock.unlock();
        DestroyFoundMonitors(api, finding.monitors);
        lock.lock();
    }
    search->finding = finding;
    search->done = true;
    search->changed.notify_all();
}

FINDING SearchMonitors(const MONITORAPI &api, LISTDISPLAYS listDisplays, DWORD patience,
                       std::shared_ptr<MONITORSEARCH> *search)
{
    const auto started = std::make_shared<MONITORSEARCH>();
    *search = started;
    if (!StartDetachedThread([started, api, listDisplays] { Search(started, api, listDisplays); })) {
        started->done = true;
        return {{}, ERROR_NOT_ENOUGH_MEMORY, "looking for monitors: " + AccessErrorText(ERROR_NOT_ENOUGH_MEMORY)};
    }
    std::unique_lock lock(started->mutex);
    if (started->changed.wait_for(lock, std::chrono::milliseconds(patience), [&] { return started->done; }))
        return started->finding;
    started->abandoned = true;
    return {{}, OUR_ERROR_STUCK, "looking for monitors: " + AccessErrorText(OUR_ERROR_STUCK)};
}

bool IsSearching(MONITORSEARCH *search)
{
    std::lock_guard lock(search->mutex);
    return !search->done;
}
