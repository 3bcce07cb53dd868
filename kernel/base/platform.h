// What differs between the two platform families and is looked up at run time.
#pragma once

#include <windows.h>

constexpr DWORD PLATFORM_WIN95 = 1; // Windows 95 family
constexpr DWORD PLATFORM_NT = 2;    // Windows NT family

// The platform identifier of the operating system version. Any thread.
DWORD GetPlatformId();

// A function that not every system has; null where it is missing. The void pointer between says that the cast is meant.
template <typename FUNCTION>
FUNCTION FindFunction(HMODULE hModule, LPCSTR lpszName)
{
    return reinterpret_cast<FUNCTION>(reinterpret_cast<void *>(GetProcAddress(hModule, lpszName)));
}

// Process-module functions of "psapi.dll", which the Windows NT family alone has. Null unless LoadPsapi found them.
typedef BOOL(WINAPI *ENUMPROCESSMODULES)(HANDLE hProcess, HMODULE *lphModule, DWORD cb, DWORD *lpcbNeeded);
typedef DWORD(WINAPI *GETMODULEFILENAMEEXA)(HANDLE hProcess, HMODULE hModule, char *lpszName, DWORD nSize);
extern HMODULE g_hPsapi;
extern ENUMPROCESSMODULES g_lpfnEnumProcessModules;
extern GETMODULEFILENAMEEXA g_lpfnGetModuleFileNameExA;

// Loads them on the Windows NT family; does nothing on the other. Kernel thread. Result: 1, or 0 when the library or
// one of its functions is missing.
int LoadPsapi();

// Undoes LoadPsapi; harmless without it. Kernel thread.
void UnloadPsapi();
