// Ends the host in order when its console says so.
#include "host/console_end.h"

#include <mutex>

static std::mutex s_mutex;
static HOSTWINDOW *s_window; // guarded by it; null: no host runs
static HANDLE s_hHasStopped; // signalled while no host runs; never closed, since an event may wait for it

// On a thread of the system's.
static BOOL WINAPI OnConsoleEvent(DWORD event)
{
    {
        std::lock_guard lock(s_mutex);
        if (!s_window)
            return FALSE;
        EndHost(s_window, event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT);
    }
    WaitForSingleObject(s_hHasStopped, CONSOLE_END_PATIENCE);
    return TRUE;
}

void StartConsoleEnd(HOSTWINDOW *window)
{
    std::lock_guard lock(s_mutex);
    if (!s_hHasStopped)
        s_hHasStopped = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    ResetEvent(s_hHasStopped);
    s_window = window;
    SetConsoleCtrlHandler(OnConsoleEvent, TRUE);
}

void FinishConsoleEnd()
{
    std::lock_guard lock(s_mutex);
    if (!s_window)
        return;
    s_window = nullptr;
    SetConsoleCtrlHandler(OnConsoleEvent, FALSE);
    SetEvent(s_hHasStopped);
}
