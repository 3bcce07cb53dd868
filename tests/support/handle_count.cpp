// The counter of kernel handles. GetProcessHandleCount tells nothing under Wine; the system's table of handles does,
// there and on Windows.
#include "support/handle_count.h"

#include <windows.h>
#include <winternl.h>

#include <cstring>
#include <vector>

int CountHandlesNow()
{
    struct Entry {
        ULONG process;
        BYTE type;
        BYTE flags;
        USHORT handle;
        void *object;
        ACCESS_MASK access;
    };
    const auto query = reinterpret_cast<decltype(&NtQuerySystemInformation)>(
        reinterpret_cast<void *>(GetProcAddress(GetModuleHandleA("ntdll"), "NtQuerySystemInformation")));
    std::vector<BYTE> table(1 << 20);
    ULONG needed = 0;
    while (query(static_cast<SYSTEM_INFORMATION_CLASS>(16), table.data(), static_cast<ULONG>(table.size()), &needed) ==
           static_cast<NTSTATUS>(0xC0000004))
        table.resize(table.size() * 2);
    ULONG count;
    memcpy(&count, table.data(), sizeof count);
    int own = 0;
    for (ULONG index = 0; index < count; ++index) {
        Entry entry;
        memcpy(&entry, table.data() + sizeof count + index * sizeof entry, sizeof entry);
        own += entry.process == GetCurrentProcessId();
    }
    return own;
}

// Threads that have just ended, and a listener between two commands, close handles a moment later.
int CountHandles()
{
    constexpr int LOOKS = 200, SAME = 5;
    int count = CountHandlesNow();
    for (int look = 0, same = 0; look < LOOKS && same < SAME; ++look) {
        Sleep(10);
        const int now = CountHandlesNow();
        same = now == count ? same + 1 : 0;
        count = now;
    }
    return count;
}
