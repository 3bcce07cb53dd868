// A counter of windows, and all counters together.
#include "support/resource_counts.h"

#include <windows.h>

// ---- Windows ------------------------------------------------------------------------------------------------------

static BOOL CALLBACK CountChild(HWND, LPARAM sum)
{
    ++*reinterpret_cast<int *>(sum);
    return TRUE;
}

static BOOL CALLBACK CountOwnWindow(HWND window, LPARAM sum)
{
    DWORD process;
    GetWindowThreadProcessId(window, &process);
    if (process != GetCurrentProcessId())
        return TRUE;
    ++*reinterpret_cast<int *>(sum);
    EnumChildWindows(window, CountChild, sum);
    return TRUE;
}

int CountWindows()
{
    int count = 0;
    EnumWindows(CountOwnWindow, reinterpret_cast<LPARAM>(&count));
    return count;
}

// ---- All ----------------------------------------------------------------------------------------------------------

static const struct {
    const char *name;
    int (*count)();
} s_Kinds[RESOURCE_KINDS] = {
    {"handles", CountHandles},
    {"windows", CountWindows},
    {"GDI objects", CountGdiObjects},
    {"heap blocks", CountHeapBlocks},
};

RESOURCECOUNTS CountResources()
{
    RESOURCECOUNTS counts;
    for (size_t kind = 0; kind < counts.size(); ++kind)
        counts[kind] = s_Kinds[kind].count();
    return counts;
}

RESOURCECOUNTS CountResourcesNow()
{
    return {CountHandlesNow(), CountWindows(), CountGdiObjects(), CountHeapBlocks()};
}

const char *ResourceName(int kind)
{
    return s_Kinds[kind].name;
}

static const char *FindUnmoved(const RESOURCECOUNTS &before, const RESOURCECOUNTS &after, int by)
{
    for (size_t kind = 0; kind < before.size(); ++kind)
        if (after[kind] < before[kind] + by || (by == 0 && after[kind] > before[kind]))
            return s_Kinds[kind].name;
    return nullptr;
}

const char *FindDeafCounter()
{
    // Once for what the first window, font and so on of a program bring along for good.
    for (int round = 0;; ++round) {
        const RESOURCECOUNTS before = CountResources();
        const HANDLE event = CreateEventA(nullptr, TRUE, FALSE, nullptr);
        const HWND window = CreateWindowA("STATIC", "", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
        const LOGFONTA description = {};
        const HFONT font = CreateFontIndirectA(&description);
        void *block = HeapAlloc(GetProcessHeap(), 0, 10);
        const RESOURCECOUNTS leaked = CountResources();
        HeapFree(GetProcessHeap(), 0, block);
        DeleteObject(font);
        DestroyWindow(window);
        CloseHandle(event);
        if (round > 0) {
            const char *deaf = FindUnmoved(before, leaked, 1);
            return deaf ? deaf : FindUnmoved(before, CountResources(), 0);
        }
    }
}
