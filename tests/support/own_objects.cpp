// The functions that allocate and free, with counters: the linker takes these symbols before those of the import
// libraries.
#include "support/own_objects.h"

#include <atomic>
#include <cstring>
#include <iterator>

#include "support/faults.h"

static std::atomic<int> s_Blocks = 0;
static std::atomic<int> s_GdiObjects = 0;

// Counted in with its result, or counted out with it.
template <typename RESULT>
static RESULT In(std::atomic<int> &count, RESULT result)
{
    if (result)
        ++count;
    return result;
}

static BOOL Out(std::atomic<int> &count, BOOL result)
{
    if (result)
        --count;
    return result;
}

// The function that a stand-in passes its calls on to, looked up once.
#define REAL(LIBRARY, NAME)                                                                                            \
    [] {                                                                                                               \
        static std::atomic<decltype(&NAME)> real;                                                                      \
        if (!real)                                                                                                     \
            real = RealFunction<decltype(&NAME)>(LIBRARY, #NAME);                                                      \
        return real.load();                                                                                            \
    }()

static LPVOID WINAPI CountedHeapAlloc(HANDLE heap, DWORD flags, SIZE_T size)
{
    if (ShallFail(Fault::Memory)) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return nullptr;
    }
    return In(s_Blocks, REAL("kernel32", HeapAlloc)(heap, flags, size));
}

static BOOL WINAPI CountedHeapFree(HANDLE heap, DWORD flags, LPVOID block)
{
    const BOOL freed = REAL("kernel32", HeapFree)(heap, flags, block);
    return block ? Out(s_Blocks, freed) : freed;
}

static HFONT WINAPI CountedCreateFontIndirect(const LOGFONTA *description)
{
    return In(s_GdiObjects, REAL("gdi32", CreateFontIndirectA)(description));
}

static HANDLE WINAPI CountedLoadImage(HINSTANCE instance, LPCSTR name, UINT type, int width, int height, UINT flags)
{
    if (ShallFail(Fault::Bitmap)) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return nullptr;
    }
    const HANDLE image = REAL("user32", LoadImageA)(instance, name, type, width, height, flags);
    return type == IMAGE_BITMAP ? In(s_GdiObjects, image) : image;
}

static BOOL WINAPI CountedDeleteObject(HGDIOBJ object)
{
    return Out(s_GdiObjects, REAL("gdi32", DeleteObject)(object));
}

static HDC WINAPI CountedGetDC(HWND window)
{
    return In(s_GdiObjects, REAL("user32", GetDC)(window));
}

static int WINAPI CountedReleaseDC(HWND window, HDC context)
{
    return Out(s_GdiObjects, REAL("user32", ReleaseDC)(window, context));
}

STAND_IN(CountedHeapAlloc, "HeapAlloc@12")
STAND_IN(CountedHeapFree, "HeapFree@12")
STAND_IN(CountedCreateFontIndirect, "CreateFontIndirectA@4")
STAND_IN(CountedLoadImage, "LoadImageA@24")
STAND_IN(CountedDeleteObject, "DeleteObject@4")
STAND_IN(CountedGetDC, "GetDC@4")
STAND_IN(CountedReleaseDC, "ReleaseDC@8")

int CountHeapBlocks()
{
    return s_Blocks;
}

int CountGdiObjects()
{
    return s_GdiObjects;
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

bool CountObjectsOf(HMODULE module)
{
    const struct {
        const char *name;
        void *function;
    } counted[] = {
        {"HeapAlloc", importCountedHeapAlloc},
        {"HeapFree", importCountedHeapFree},
        {"CreateFontIndirectA", importCountedCreateFontIndirect},
        {"LoadImageA", importCountedLoadImage},
        {"DeleteObject", importCountedDeleteObject},
        {"GetDC", importCountedGetDC},
        {"ReleaseDC", importCountedReleaseDC},
    };
    for (const auto &c : counted)
        if (!Redirect(module, c.name, c.function))
            return false;
    return true;
}
