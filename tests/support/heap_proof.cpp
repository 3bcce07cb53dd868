// Shows whether the heap checks can be believed when several threads use the heap: correct programs, in which no byte
// is written that was not asked for, and whatever the checks say of them is not true. tools/check runs each as a
// process of its own beside heap_canary, which does what they must report.
//
//   heap_proof blocks SECONDS      three threads allocate, reallocate and free blocks of 8 to 4,100 bytes
//   heap_proof windows SECONDS     two threads create and destroy an edit control each
//   heap_proof one SECONDS         the blocks once more, from one thread
#include <windows.h>

#include <cstdlib>
#include <cstring>
#include <iterator>

static DWORD s_End; // tick count

static DWORD WINAPI UseBlocks(void *parameter)
{
    constexpr SIZE_T SMALLEST = 8, LARGEST = 4100;
    void *blocks[16] = {};
    DWORD random = GetTickCount() + static_cast<DWORD>(reinterpret_cast<UINT_PTR>(parameter));
    const auto next = [&random](DWORD below) {
        random = random * 1664525u + 1013904223u;
        return (random >> 8) % below;
    };
    while (static_cast<LONG>(s_End - GetTickCount()) > 0) {
        void *&block = blocks[next(static_cast<DWORD>(std::size(blocks)))];
        const SIZE_T size = SMALLEST + next(LARGEST - SMALLEST + 1);
        if (block && next(3) == 0) {
            HeapFree(GetProcessHeap(), 0, block);
            block = nullptr;
            continue;
        }
        void *fresh = block ? HeapReAlloc(GetProcessHeap(), 0, block, size) : HeapAlloc(GetProcessHeap(), 0, size);
        if (fresh) {
            block = fresh;
            memset(block, 0x5A, size);
        }
    }
    for (void *block : blocks)
        HeapFree(GetProcessHeap(), 0, block);
    return 0;
}

static DWORD WINAPI UseWindows(void *)
{
    while (static_cast<LONG>(s_End - GetTickCount()) > 0)
        DestroyWindow(CreateWindowA("EDIT", "text", WS_POPUP, 0, 0, 100, 20, nullptr, nullptr, nullptr, nullptr));
    return 0;
}

int main(int argc, char **argv)
{
    static const struct {
        const char *name;
        LPTHREAD_START_ROUTINE use;
        DWORD threads;
    } kinds[] = {{"blocks", UseBlocks, 3}, {"windows", UseWindows, 2}, {"one", UseBlocks, 1}};
    for (const auto &kind : kinds) {
        if (argc != 3 || strcmp(argv[1], kind.name) != 0)
            continue;
        s_End = GetTickCount() + static_cast<DWORD>(atoi(argv[2])) * 1000;
        HANDLE threads[3];
        for (DWORD n = 0; n < kind.threads; ++n)
            threads[n] =
                CreateThread(nullptr, 0, kind.use, reinterpret_cast<void *>(static_cast<UINT_PTR>(n)), 0, nullptr);
        WaitForMultipleObjects(kind.threads, threads, TRUE, INFINITE);
        return 0;
    }
    return 2;
}
