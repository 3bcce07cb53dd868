// Stands in for the Windows header where product code is built natively for the fuzzers: the types and string functions
// that the parsed-out modules use, with the meanings that Windows gives them.
#pragma once

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>

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
