// HeapAlloc and HeapFree with a counter: the linker takes these symbols before those of the import library.
#include "support/heap_blocks.h"

#include <atomic>
#include <cstring>

#include "support/faults.h"

static std::atomic<int> s_Blocks = 0;

static LPVOID WINAPI CountedHeapAlloc(HANDLE heap, DWORD flags, SIZE_T size)
{
    static std::atomic<decltype(&HeapAlloc)> real;
    if (ShallFail(Fault::Memory)) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return nullptr;
    }
    if (!real)
        real = RealFunction<decltype(&HeapAlloc)>("kernel32", "HeapAlloc");
    void *block = real.load()(heap, flags, size);
    if (block)
        ++s_Blocks;
    return block;
}

static BOOL WINAPI CountedHeapFree(HANDLE heap, DWORD flags, LPVOID block)
{
    static std::atomic<decltype(&HeapFree)> real;
    if (!real)
        real = RealFunction<decltype(&HeapFree)>("kernel32", "HeapFree");
    const BOOL freed = real.load()(heap, flags, block);
    if (block && freed)
        --s_Blocks;
    return freed;
}

extern "C" {
extern void *countedHeapAlloc asm("__imp__HeapAlloc@12");
extern void *countedHeapFree asm("__imp__HeapFree@12");
void *countedHeapAlloc = reinterpret_cast<void *>(CountedHeapAlloc);
void *countedHeapFree = reinterpret_cast<void *>(CountedHeapFree);
}

int CountHeapBlocks()
{
    return s_Blocks;
}

// ---- Of a module that was loaded ----------------------------------------------------------------------------------

// Where the loader has put the address of a function that the module imports; null when it imports none of that name.
static void **FindImportSlot(BYTE *base, const char *name)
{
    const auto at = [base](DWORD offset) { return static_cast<void *>(base + offset); };
    const auto dos = static_cast<const IMAGE_DOS_HEADER *>(at(0));
    const auto headers = static_cast<const IMAGE_NT_HEADERS *>(at(static_cast<DWORD>(dos->e_lfanew)));
    const DWORD table = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    for (auto entry = static_cast<const IMAGE_IMPORT_DESCRIPTOR *>(at(table)); entry->Name; ++entry) {
        const auto names = static_cast<const DWORD *>(at(entry->OriginalFirstThunk));
        const auto slots = static_cast<void **>(at(entry->FirstThunk));
        for (size_t n = 0; names[n]; ++n)
            if (!(names[n] & IMAGE_ORDINAL_FLAG) &&
                !strcmp(static_cast<const IMAGE_IMPORT_BY_NAME *>(at(names[n]))->Name, name))
                return &slots[n];
    }
    return nullptr;
}

static bool Redirect(HMODULE module, const char *name, void *function)
{
    void **slot = FindImportSlot(reinterpret_cast<BYTE *>(module), name);
    DWORD before;
    if (!slot || !VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &before))
        return false;
    *slot = function;
    return VirtualProtect(slot, sizeof *slot, before, &before) != FALSE;
}

bool CountBlocksOf(HMODULE module)
{
    return Redirect(module, "HeapAlloc", countedHeapAlloc) && Redirect(module, "HeapFree", countedHeapFree);
}
