// The panel's opening and its deferral.
#include "kernel/panel_opening.h"

#include "kernel/base/plugin_state.h"
#include "panel/panel.h"

// A pending deferral, on the heap.
struct WAITERBLOCK {
    HANDLE hStop; // event: the deferral is over
    HWND hWnd;    // whom to tell
    HANDLE hThread;
    DWORD dwThreadId;
};

constexpr int MAX_WAITERS = 16; // further requests are refused: each waiter opens the same panel
constexpr DWORD WAITER_PAUSE_MS = 1000;

static WAITERBLOCK *s_Waiters[MAX_WAITERS]; // pending deferrals; null = free

static WAITERBLOCK **FindWaiter(const WAITERBLOCK *waiter)
{
    for (WAITERBLOCK *&place : s_Waiters)
        if (place == waiter)
            return &place;
    return nullptr;
}

// Touches its own block and g_bStarted alone. Looks once a second whether the start-up is done, but ends with hStop at
// once, since whoever ends the deferral waits for this thread.
static DWORD WINAPI WaiterThreadProc(void *parameter)
{
    const WAITERBLOCK *block = static_cast<const WAITERBLOCK *>(parameter);
    DWORD stopped = WAIT_TIMEOUT;
    while (stopped == WAIT_TIMEOUT && !g_bStarted)
        stopped = WaitForSingleObject(block->hStop, WAITER_PAUSE_MS);
    const DWORD exitCode = stopped == WAIT_TIMEOUT ? 0 : 1;
    PostMessageA(block->hWnd, WM_KERNEL_PANEL_DEFERRED, 0, reinterpret_cast<LPARAM>(block));
    return exitCode;
}

static void FreeWaiter(WAITERBLOCK *block)
{
    if (block->hThread)
        CloseHandle(block->hThread);
    if (block->hStop)
        CloseHandle(block->hStop);
    HeapFree(GetProcessHeap(), 0, block);
}

static int DeferPanel(HWND hKernelWnd)
{
    WAITERBLOCK **place = FindWaiter(nullptr);
    if (!place)
        return 0;
    WAITERBLOCK *block = static_cast<WAITERBLOCK *>(HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, sizeof(WAITERBLOCK)));
    if (!block)
        return 0;
    block->hWnd = hKernelWnd;
    block->hStop = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    if (block->hStop)
        block->hThread = CreateThread(nullptr, 0, WaiterThreadProc, block, 0, &block->dwThreadId);
    if (!block->hThread) {
        FreeWaiter(block);
        return 0;
    }
    *place = block;
    return 1;
}

static void EndWaiter(WAITERBLOCK **place)
{
    WAITERBLOCK *block = *place;
    *place = nullptr;
    SetEvent(block->hStop);
    WaitForSingleObject(block->hThread, INFINITE);
    FreeWaiter(block);
}

LRESULT OpenOrDeferPanel(HWND hKernelWnd)
{
    return g_bStarted ? ShowPanel(hKernelWnd) : DeferPanel(hKernelWnd);
}

LRESULT EndPanelDeferral(HWND hKernelWnd, LPARAM block)
{
    WAITERBLOCK **place = block ? FindWaiter(reinterpret_cast<const WAITERBLOCK *>(block)) : nullptr;
    if (!place)
        return 1;
    EndWaiter(place);
    PostMessageA(hKernelWnd, WM_KERNEL_OPEN_PANEL, 0, 0);
    return 1;
}

void CancelDeferredPanels()
{
    for (WAITERBLOCK *&place : s_Waiters)
        if (place)
            EndWaiter(&place);
}
