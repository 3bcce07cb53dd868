// Platform family and the process-module library.
#include "kernel/base/platform.h"

HMODULE g_hPsapi = nullptr;
ENUMPROCESSMODULES g_lpfnEnumProcessModules = nullptr;
GETMODULEFILENAMEEXA g_lpfnGetModuleFileNameExA = nullptr;

DWORD GetPlatformId()
{
    OSVERSIONINFOA version = {};
    version.dwOSVersionInfoSize = sizeof version;
    GetVersionExA(&version);
    return version.dwPlatformId;
}

int LoadPsapi()
{
    if (GetPlatformId() != PLATFORM_NT)
        return 1;
    g_hPsapi = LoadLibraryA("psapi.dll");
    if (!g_hPsapi)
        return 0;
    g_lpfnGetModuleFileNameExA = FindFunction<GETMODULEFILENAMEEXA>(g_hPsapi, "GetModuleFileNameExA");
    g_lpfnEnumProcessModules = FindFunction<ENUMPROCESSMODULES>(g_hPsapi, "EnumProcessModules");
    if (g_lpfnGetModuleFileNameExA && g_lpfnEnumProcessModules)
        return 1;
    UnloadPsapi();
    return 0;
}

void UnloadPsapi()
{
    g_lpfnGetModuleFileNameExA = nullptr;
    g_lpfnEnumProcessModules = nullptr;
    if (g_hPsapi)
        FreeLibrary(g_hPsapi);
    g_hPsapi = nullptr;
}
