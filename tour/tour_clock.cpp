// The plug-in has no clock but GetLocalTime, so that entry of its import table is all that a tour changes.
#include "tour/tour_clock.h"

#include <cstring>
#include <mutex>

static std::mutex s_mutex;
static ULONGLONG s_advance; // units of 100 ns that the tour's clock is ahead of the real one, modulo 2^64

// ---- Import tables --------------------------------------------------------------------------------------------------

// The loader has checked the image; its addresses are relative to where it stands.
template <typename T>
static T *At(HMODULE module, DWORD offset)
{
    return reinterpret_cast<T *>(reinterpret_cast<BYTE *>(module) + offset);
}

static void *Exchange(ULONG_PTR *entry, void *replacement)
{
    DWORD protection = 0;
    if (!VirtualProtect(entry, sizeof *entry, PAGE_READWRITE, &protection))
        return nullptr;
    void *original = reinterpret_cast<void *>(*entry);
    *entry = reinterpret_cast<ULONG_PTR>(replacement);
    VirtualProtect(entry, sizeof *entry, protection, &protection);
    return original;
}

void *ReplaceImport(HMODULE module, const char *function, void *replacement)
{
    const auto *dos = At<const IMAGE_DOS_HEADER>(module, 0);
    const auto *nt = At<const IMAGE_NT_HEADERS>(module, static_cast<DWORD>(dos->e_lfanew));
    const IMAGE_DATA_DIRECTORY &directory = nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    if (directory.Size == 0)
        return nullptr;
    for (auto *library = At<const IMAGE_IMPORT_DESCRIPTOR>(module, directory.VirtualAddress); library->Name;
         library++) {
        auto *name = At<const IMAGE_THUNK_DATA>(module, library->OriginalFirstThunk);
        auto *entry = At<IMAGE_THUNK_DATA>(module, library->FirstThunk);
        for (; name->u1.AddressOfData; name++, entry++) {
            if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal))
                continue;
            const auto *import = At<const IMAGE_IMPORT_BY_NAME>(module, name->u1.AddressOfData);
            if (strcmp(reinterpret_cast<const char *>(import->Name), function) == 0)
                return Exchange(reinterpret_cast<ULONG_PTR *>(&entry->u1.Function), replacement);
        }
    }
    return nullptr;
}

// ---- The clock ------------------------------------------------------------------------------------------------------

static ULONGLONG Units(const SYSTEMTIME &time)
{
    FILETIME file = {};
    SystemTimeToFileTime(&time, &file);
    return static_cast<ULONGLONG>(file.dwHighDateTime) << 32 | file.dwLowDateTime;
}

SYSTEMTIME TourClock()
{
    SYSTEMTIME time;
    GetLocalTime(&time);
    std::lock_guard lock(s_mutex);
    const ULONGLONG units = Units(time) + s_advance;
    const FILETIME file = {static_cast<DWORD>(units), static_cast<DWORD>(units >> 32)};
    FileTimeToSystemTime(&file, &time);
    return time;
}

void SetTourClock(const SYSTEMTIME &time)
{
    SYSTEMTIME now;
    GetLocalTime(&now);
    std::lock_guard lock(s_mutex);
    s_advance = Units(time) - Units(now);
}

static void WINAPI GiveTourTime(SYSTEMTIME *time)
{
    *time = TourClock();
}

bool InstallTourClock(HMODULE plugin)
{
    return ReplaceImport(plugin, "GetLocalTime", reinterpret_cast<void *>(GiveTourTime)) != nullptr;
}
