// Bytes directly in front of a page that must not be touched: reading or writing past them is a fault.
#pragma once

#include <windows.h>

#include <cstring>
#include <string>

class GuardedBytes {
public:
    explicit GuardedBytes(const std::string &bytes)
    {
        constexpr size_t PAGE = 4096;
        const size_t room = (bytes.size() / PAGE + 1) * PAGE;
        m_pages = static_cast<char *>(VirtualAlloc(nullptr, room + PAGE, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
        DWORD old;
        VirtualProtect(m_pages + room, PAGE, PAGE_NOACCESS, &old);
        data = m_pages + room - bytes.size();
        memcpy(data, bytes.data(), bytes.size());
    }
    ~GuardedBytes() { VirtualFree(m_pages, 0, MEM_RELEASE); }
    GuardedBytes(const GuardedBytes &) = delete;
    GuardedBytes &operator=(const GuardedBytes &) = delete;

    char *data;

private:
    char *m_pages;
};
