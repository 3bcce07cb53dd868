// Stands in for the Windows header where product code is built natively for the fuzzers: the types and string functions
// that the parsed-out modules use, with the meanings that Windows gives them.
#pragma once

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>

#define WINAPI
#define MAX_PATH 260
#define INVALID_FILE_ATTRIBUTES 0xFFFFFFFFu
#define INVALID_HANDLE_VALUE nullptr
#define ARRAYSIZE(ARRAY) (sizeof(ARRAY) / sizeof(*(ARRAY)))
#define __mingw_vsnprintf vsnprintf
#define MAKELANGID(LANGUAGE, SUBLANGUAGE) 0

typedef int BOOL;
typedef unsigned UINT;
typedef long LONG_PTR;
typedef void *HANDLE;
typedef void *HMODULE;
typedef uint8_t BYTE;
typedef uint16_t WORD;
typedef uint32_t DWORD;
typedef int16_t SHORT;
typedef int32_t LONG;
typedef struct HWND__ *HWND;
typedef const char *LPCSTR;

struct SYSTEMTIME {
    WORD wYear, wMonth, wDayOfWeek, wDay, wHour, wMinute, wSecond, wMilliseconds;
};
static_assert(sizeof(SYSTEMTIME) == 16);

inline int lstrlenA(LPCSTR text)
{
    return text ? static_cast<int>(strlen(text)) : 0;
}

// Copies at most size - 1 characters and always terminates; does nothing for a size of 0.
inline char *lstrcpynA(char *buffer, LPCSTR text, int size)
{
    if (size <= 0)
        return buffer;
    const size_t length = strnlen(text, static_cast<size_t>(size) - 1);
    memcpy(buffer, text, length);
    buffer[length] = '\0';
    return buffer;
}

// Writes at most 1024 characters with their NUL, wherever the buffer ends: the sanitizer sees what goes beyond.
__attribute__((format(printf, 2, 3))) inline int wsprintfA(char *buffer, LPCSTR format, ...)
{
    char text[1024];
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    const size_t length = strlen(text);
    memcpy(buffer, text, length + 1);
    return static_cast<int>(length);
}

// ---- What the host's parsers stand beside ---------------------------------------------------------------------------

// Files and texts in UTF-16, which the fuzzers give none of: nothing is there, and nothing is converted.
constexpr int FALSE = 0;
constexpr UINT CP_ACP = 0, CP_UTF8 = 65001;
constexpr DWORD WC_NO_BEST_FIT_CHARS = 0x400;
constexpr DWORD GENERIC_READ = 0x80000000, FILE_SHARE_READ = 1, FILE_SHARE_WRITE = 2, OPEN_EXISTING = 3;
constexpr DWORD FORMAT_MESSAGE_FROM_SYSTEM = 0x1000, FORMAT_MESSAGE_IGNORE_INSERTS = 0x200;
constexpr DWORD FILE_ATTRIBUTE_DIRECTORY = 0x10;

struct WIN32_FIND_DATAW {
    DWORD dwFileAttributes;
    wchar_t cFileName[MAX_PATH];
};

#define NOTHING_IS_THERE(RESULT, NAME, VALUE)                                                                          \
    template <typename... ARGUMENTS>                                                                                   \
    RESULT NAME(ARGUMENTS...)                                                                                          \
    {                                                                                                                  \
        return VALUE;                                                                                                  \
    }
NOTHING_IS_THERE(int, MultiByteToWideChar, 0)
NOTHING_IS_THERE(int, WideCharToMultiByte, 0)
NOTHING_IS_THERE(HANDLE, CreateFileW, INVALID_HANDLE_VALUE)
NOTHING_IS_THERE(BOOL, ReadFile, FALSE)
NOTHING_IS_THERE(BOOL, CloseHandle, FALSE)
NOTHING_IS_THERE(DWORD, GetFileSize, 0)
NOTHING_IS_THERE(DWORD, GetLastError, 2)
NOTHING_IS_THERE(DWORD, FormatMessageW, 0)
NOTHING_IS_THERE(DWORD, GetFileAttributesW, INVALID_FILE_ATTRIBUTES)
NOTHING_IS_THERE(HANDLE, FindFirstFileW, INVALID_HANDLE_VALUE)
NOTHING_IS_THERE(BOOL, FindNextFileW, FALSE)
NOTHING_IS_THERE(BOOL, FindClose, FALSE)
