// The log of --log FILE: one line written at once per call, whole, from any thread.
#include "host/base/packet_log.h"

#include <windows.h>

#include <mutex>

#include "host/base/text.h"

static std::mutex s_mutex;                    // one line at a time
static HANDLE s_hFile = INVALID_HANDLE_VALUE; // the open log

bool OpenPacketLog(const std::string &path, std::string *error)
{
    ClosePacketLog();
    std::lock_guard lock(s_mutex);
    s_hFile = CreateFileW(Widen(path).c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                          FILE_ATTRIBUTE_NORMAL, nullptr);
    if (s_hFile != INVALID_HANDLE_VALUE)
        return true;
    *error = SystemErrorText(GetLastError());
    return false;
}

void LogLine(const char *direction, const char *kind, const std::string &fields)
{
    std::lock_guard lock(s_mutex);
    if (s_hFile == INVALID_HANDLE_VALUE)
        return;
    SYSTEMTIME now;
    GetLocalTime(&now);
    const std::string line =
        Format("%04u-%02u-%02uT%02u:%02u:%02u.%03u %s %s %s\r\n", now.wYear, now.wMonth, now.wDay, now.wHour,
               now.wMinute, now.wSecond, now.wMilliseconds, direction, kind, fields.c_str());
    DWORD written;
    WriteFile(s_hFile, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
}

void LogEvent(const std::string &text)
{
    LogLine("host", "event", "text=" + Quoted(text));
}

void ClosePacketLog()
{
    std::lock_guard lock(s_mutex);
    if (s_hFile != INVALID_HANDLE_VALUE)
        CloseHandle(s_hFile);
    s_hFile = INVALID_HANDLE_VALUE;
}
