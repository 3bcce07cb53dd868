// A thread by CreateThread, with its function on the heap.
#include "host/base/detached_thread.h"

#include <windows.h>

#include <memory>
#include <utility>

static DWORD WINAPI Run(void *parameter)
{
    const std::unique_ptr<std::function<void()>> what(static_cast<std::function<void()> *>(parameter));
    (*what)();
    return 0;
}

bool StartDetachedThread(std::function<void()> what)
{
    auto function = std::make_unique<std::function<void()>>(std::move(what));
    const HANDLE thread = CreateThread(nullptr, 0, Run, function.get(), 0, nullptr);
    if (!thread)
        return false;
    function.release(); // NOLINT(bugprone-unused-return-value): the thread's now
    CloseHandle(thread);
    return true;
}
