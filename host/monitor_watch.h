// The thread that looks for monitors: that can take seconds, and the host window's thread has packets to serve.
#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

#include "host/redetection.h"

// What a look has seen.
struct LOOK {
    std::vector<MONITORIDENTITY> seen;
    bool isLast; // of its series
};

struct MONITORWATCH {
    std::function<std::vector<MONITORIDENTITY>()> look; // what is there now
    std::function<void()> find;                         // takes up what is there now
    std::function<void(LOOK)> looked;                   // tells of a look, and
    std::function<void()> found;                        // that find is over

    std::mutex mutex; // guards all that follows
    std::condition_variable changed;
    LOOKSERIES series;
    bool findsNext;
    bool stopping;
    std::thread thread;
};

// Starts the thread, on which all four functions are called; they are set already.
void StartMonitorWatch(MONITORWATCH *watch);

// An event: a series of looks begins. Any thread.
void WatchMonitors(MONITORWATCH *watch);

// The series is over. A look that is being made goes on. Any thread.
void CancelLooks(MONITORWATCH *watch);

// Has the thread find the monitors, after the look that is being made. Any thread.
void AskToFindMonitors(MONITORWATCH *watch);

// Waits for what the thread is at, and ends it. Harmless when it was not started.
void StopMonitorWatch(MONITORWATCH *watch);
