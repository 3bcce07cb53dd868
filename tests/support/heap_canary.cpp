// Writes one byte behind a block of the heap. tools/check runs it first: where nobody notices that, the heap checks are
// not at work, and a run of the tests under them would prove nothing.
#include <windows.h>

int main()
{
    volatile char *block = static_cast<char *>(HeapAlloc(GetProcessHeap(), 0, 16));
    if (!block)
        return 1;
    block[16] = 1;
    HeapFree(GetProcessHeap(), 0, const_cast<char *>(block));
    return 0;
}
