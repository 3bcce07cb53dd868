// The dxva2.dll of this Windows. A file of its own, so that a program can be linked with another one in its place.
#include "host/windows_monitors/monitor_api.h"

std::wstring MonitorLibraryPath()
{
    wchar_t folder[MAX_PATH] = L"";
    const UINT length = GetSystemDirectoryW(folder, ARRAYSIZE(folder));
    return std::wstring(folder, length < ARRAYSIZE(folder) ? length : 0) + L"\\dxva2.dll";
}
