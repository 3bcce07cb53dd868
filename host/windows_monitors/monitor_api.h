// The functions of Windows' Monitor Configuration API, found at run time: systems before Windows Vista have none.
#pragma once

#include <windows.h>

#include <string>

// As Windows lays it out.
#pragma pack(push, 1)
struct PHYSICALMONITOR {
    HANDLE hMonitor;
    WCHAR szDescription[128];
};
#pragma pack(pop)
static_assert(sizeof(PHYSICALMONITOR) == 260);

// Every function gives 0 when it failed, with the reason in GetLastError. All of them may take seconds.
struct MONITORAPI {
    BOOL(WINAPI *getCount)(HMONITOR hMonitor, DWORD *count);
    BOOL(WINAPI *getMonitors)(HMONITOR hMonitor, DWORD count, PHYSICALMONITOR *monitors);
    BOOL(WINAPI *destroy)(HANDLE hMonitor);
    BOOL(WINAPI *getVcp)(HANDLE hMonitor, BYTE code, DWORD *type, DWORD *value, DWORD *maximum); // type: not used
    BOOL(WINAPI *setVcp)(HANDLE hMonitor, BYTE code, DWORD value);
    BOOL(WINAPI *getCapabilitiesLength)(HANDLE hMonitor, DWORD *length); // with the zero at the end
    BOOL(WINAPI *getCapabilities)(HANDLE hMonitor, char *text, DWORD length);
};

// Where dxva2.dll is: in the system's folder, so that no other of that name is loaded, wherever the program was started
// from. A program that is to load another one (the tests' stand-in) brings a function of its own in this one's place.
std::wstring MonitorLibraryPath();

// Loads dxva2.dll, which stays loaded to the end of the process: a call into it may never come back. Returns false with
// the reason in *error (English) when it or one of its functions is missing.
bool LoadMonitorApi(MONITORAPI *api, std::string *error);
