// The thread that looks for monitors.
#include "host/monitor_watch.h"

#include <chrono>

enum TASK { TASK_LOOK, TASK_FIND, TASK_END };

// With the lock. Waits for what is to be done next.
static TASK NextTask(MONITORWATCH *watch, std::unique_lock<std::mutex> *lock)
{
    for (;;) {
        if (watch->stopping)
            return TASK_END;
        if (watch->findsNext)
            return TASK_FIND;
        const DWORD wait = NextLook(watch->series, GetTickCount());
        if (wait == 0)
            return TASK_LOOK;
        if (wait == INFINITE)
            watch->changed.wait(*lock);
        else
            watch->changed.wait_for(*lock, std::chrono::milliseconds(wait));
    }
}

static void WatchLoop(MONITORWATCH *watch)
{
    std::unique_lock lock(watch->mutex);
    for (;;) {
        const TASK task = NextTask(watch, &lock);
        if (task == TASK_END)
            return;
        const bool isLast = task == TASK_LOOK && TakeLook(&watch->series, GetTickCount());
        watch->findsNext = false;
        lock.unlock();
        if (task == TASK_FIND) {
            watch->find();
            watch->found();
        } else {
            watch->looked({watch->look(), isLast});
        }
        lock.lock();
    }
}

void StartMonitorWatch(MONITORWATCH *watch)
{
    watch->series = {};
    watch->findsNext = watch->stopping = false;
    watch->thread = std::thread(WatchLoop, watch);
}

void WatchMonitors(MONITORWATCH *watch)
{
    {
        std::lock_guard lock(watch->mutex);
        StartLooks(&watch->series, GetTickCount());
    }
    watch->changed.notify_one();
}

void CancelLooks(MONITORWATCH *watch)
{
    std::lock_guard lock(watch->mutex);
    watch->series = {};
}

void AskToFindMonitors(MONITORWATCH *watch)
{
    {
        std::lock_guard lock(watch->mutex);
        watch->findsNext = true;
    }
    watch->changed.notify_one();
}

void StopMonitorWatch(MONITORWATCH *watch)
{
    {
        std::lock_guard lock(watch->mutex);
        watch->stopping = true;
    }
    watch->changed.notify_one();
    if (watch->thread.joinable())
        watch->thread.join();
}
