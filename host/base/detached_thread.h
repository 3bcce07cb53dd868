// Threads that nobody joins: a driver may keep one for ever. Not by std::thread, whose detach meets the thread's end in
// the run-time library that we link: both free its record, a later thread gets it twice over, and one of thirty
// starts of its tests ended so.
#pragma once

#include <functional>

// Runs `what` on a thread of its own. It must hold all that it uses, and let no exception out. False: no thread could
// be made, and nothing runs.
bool StartDetachedThread(std::function<void()> what);
