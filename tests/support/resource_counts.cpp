// Counters of windows and GDI objects, and all counters together.
#include "support/resource_counts.h"

#include <windows.h>

#include <cstring>
#include <iterator>
#include <utility>

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

// ---- GDI objects --------------------------------------------------------------------------------------------------

// Wine keeps its table where 32-bit Windows of those days did, and tells nothing through GetGuiResources.
static int CountGdiTable()
{
    constexpr size_t TABLE_OFFSET = 0x94; // in the process environment block
    constexpr size_t ENTRIES = 0x4000, ENTRY_SIZE = 24, TYPE_OFFSET = 14;
    const auto environment = reinterpret_cast<const BYTE *(WINAPI *)()>(
        reinterpret_cast<void *>(GetProcAddress(GetModuleHandleA("ntdll"), "RtlGetCurrentPeb")));
    const BYTE *block = environment();
    const BYTE *table;
    memcpy(&table, block + TABLE_OFFSET, sizeof table);
    int count = 0;
    for (size_t entry = 0; table && entry < ENTRIES; ++entry)
        count += table[entry * ENTRY_SIZE + TYPE_OFFSET] != 0;
    return count;
}

// Wine keeps a device context for each window that was painted lately, up to 64 of them, each with a region and a
// bitmap. Filled before the first count, that cache does not grow between two counts.
static void FillContextCache()
{
    static bool filled;
    if (std::exchange(filled, true))
        return;
    HWND windows[80];
    HDC contexts[80];
    for (size_t n = 0; n < std::size(windows); ++n) {
        windows[n] = CreateWindowA("STATIC", "", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
        contexts[n] = GetDC(windows[n]);
    }
    for (size_t n = 0; n < std::size(windows); ++n) {
        ReleaseDC(windows[n], contexts[n]);
        DestroyWindow(windows[n]);
    }
}

static bool IsWine()
{
    return GetProcAddress(GetModuleHandleA("ntdll"), "wine_get_version") != nullptr;
}

int CountGdiObjects()
{
    FillContextCache();
    return IsWine() ? CountGdiTable() : static_cast<int>(GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS));
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
    FillContextCache();
    RESOURCECOUNTS counts;
    for (size_t kind = 0; kind < counts.size(); ++kind)
        counts[kind] = s_Kinds[kind].count();
    return counts;
}

RESOURCECOUNTS CountResourcesNow()
{
    FillContextCache();
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
        const HBRUSH brush = CreateSolidBrush(RGB(1, 2, 3));
        void *block = HeapAlloc(GetProcessHeap(), 0, 10);
        const RESOURCECOUNTS leaked = CountResources();
        HeapFree(GetProcessHeap(), 0, block);
        DeleteObject(brush);
        DestroyWindow(window);
        CloseHandle(event);
        if (round > 0) {
            const char *deaf = FindUnmoved(before, leaked, 1);
            return deaf ? deaf : FindUnmoved(before, CountResources(), 0);
        }
    }
}
