// A Monitor Configuration API that the tests script.
#include "host/tests/support/fake_monitor_api.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <set>
#include <utility>

#include "host/base/text.h"

static std::mutex s_mutex; // guards all that follows
static std::condition_variable s_changed;
static std::vector<DRIVERMONITOR> s_monitors;
static std::vector<DRIVERDISPLAY> s_displays;
static std::vector<DRIVERACCESS> s_accesses;
static std::map<size_t, size_t> s_handles; // to the monitor; valid ones
static std::set<size_t> s_open;            // given out and not destroyed
static size_t s_nextHandle;                // the first handle is 0, as in Windows
static int s_hanging;                      // accesses and searches
static bool s_hangsSearch;                 // the next one
static unsigned s_releases;

void SetDesktop(const std::vector<DRIVERMONITOR> &monitors, const std::vector<DRIVERDISPLAY> &displays)
{
    std::lock_guard lock(s_mutex);
    s_monitors = monitors;
    s_displays = displays;
    s_handles.clear();
    s_open.clear();
    s_accesses.clear();
    s_nextHandle = 0;
}

void InvalidateHandles()
{
    std::lock_guard lock(s_mutex);
    s_handles.clear();
}

DRIVERMONITOR *LockMonitor(size_t monitor)
{
    s_mutex.lock();
    return &s_monitors[monitor];
}

void UnlockMonitor()
{
    s_mutex.unlock();
}

bool WaitForHang()
{
    std::unique_lock lock(s_mutex);
    return s_changed.wait_for(lock, std::chrono::seconds(5), [] { return s_hanging > 0; });
}

void ReleaseHangs()
{
    std::lock_guard lock(s_mutex);
    s_releases++;
    s_changed.notify_all();
}

std::vector<DRIVERACCESS> DriverAccesses()
{
    std::lock_guard lock(s_mutex);
    return s_accesses;
}

size_t OpenHandleCount()
{
    std::lock_guard lock(s_mutex);
    return s_open.size();
}

bool WaitForNoHandle()
{
    std::unique_lock lock(s_mutex);
    return s_changed.wait_for(lock, std::chrono::seconds(5), [] { return s_open.empty(); });
}

void HangSearch()
{
    std::lock_guard lock(s_mutex);
    s_hangsSearch = true;
}

static void Hang(std::unique_lock<std::mutex> &lock)
{
    s_hanging++;
    s_changed.notify_all();
    s_changed.wait(lock, [releases = s_releases] { return s_releases != releases; });
    s_hanging--;
}

static BOOL End(DWORD error)
{
    SetLastError(error);
    return error == 0;
}

static bool IsThere(size_t monitor)
{
    return !s_monitors[monitor].isGone;
}

static std::vector<size_t> MonitorsBehind(HMONITOR hMonitor)
{
    std::vector<size_t> monitors;
    const size_t index = reinterpret_cast<size_t>(hMonitor) - 1;
    if (index < s_displays.size())
        std::copy_if(s_displays[index].monitors.begin(), s_displays[index].monitors.end(), std::back_inserter(monitors),
                     IsThere);
    return monitors;
}

static BOOL WINAPI GetCount(HMONITOR hMonitor, DWORD *count)
{
    std::lock_guard lock(s_mutex);
    *count = static_cast<DWORD>(MonitorsBehind(hMonitor).size());
    return End(s_displays[reinterpret_cast<size_t>(hMonitor) - 1].error);
}

static BOOL WINAPI GetMonitors(HMONITOR hMonitor, DWORD count, PHYSICALMONITOR *monitors)
{
    std::unique_lock lock(s_mutex);
    const std::vector<size_t> behind = MonitorsBehind(hMonitor);
    if (behind.size() != count)
        return End(ERROR_INVALID_PARAMETER);
    for (size_t i = 0; i < count; i++) {
        const std::wstring description = Widen(s_monitors[behind[i]].description);
        monitors[i].hMonitor = reinterpret_cast<HANDLE>(s_nextHandle);
        memcpy(monitors[i].szDescription, description.c_str(), 2 * description.size() + 2);
        s_open.insert(s_nextHandle);
        s_handles[s_nextHandle++] = behind[i];
    }
    if (std::exchange(s_hangsSearch, false))
        Hang(lock);
    return End(0);
}

static BOOL WINAPI Destroy(HANDLE handle)
{
    std::lock_guard lock(s_mutex);
    s_open.erase(reinterpret_cast<size_t>(handle));
    s_handles.erase(reinterpret_cast<size_t>(handle));
    s_changed.notify_all();
    return End(0);
}

// An access from its beginning to its end; `act` is what it does to the monitor when it goes well.
template <typename FUNCTION>
static BOOL Access(HANDLE handle, char kind, BYTE code, const FUNCTION &act)
{
    std::unique_lock lock(s_mutex);
    const auto found = s_handles.find(reinterpret_cast<size_t>(handle));
    if (found == s_handles.end())
        return End(GRAPHICS_INVALID_MONITOR_HANDLE);
    const size_t index = found->second;
    const DWORD start = GetTickCount();
    if (s_monitors[index].hangs > 0) {
        s_monitors[index].hangs--;
        Hang(lock);
    }
    DRIVERMONITOR &monitor = s_monitors[index];
    DWORD error = monitor.isGone ? static_cast<DWORD>(GRAPHICS_MONITOR_NO_LONGER_EXISTS) : monitor.error;
    if (!monitor.errors.empty()) {
        error = monitor.errors.front();
        monitor.errors.pop_front();
    }
    if (!error)
        error = act(monitor);
    s_accesses.push_back({index, kind, code, start, GetTickCount()});
    return End(error);
}

static BOOL WINAPI GetVcp(HANDLE handle, BYTE code, DWORD *, DWORD *value, DWORD *maximum)
{
    return Access(handle, 'r', code, [&](DRIVERMONITOR &monitor) -> DWORD {
        if (!monitor.values.contains(code))
            return GRAPHICS_VCP_NOT_SUPPORTED;
        *value = monitor.values[code].first;
        *maximum = monitor.values[code].second;
        return 0;
    });
}

static BOOL WINAPI SetVcp(HANDLE handle, BYTE code, DWORD value)
{
    return Access(handle, 'w', code, [&](DRIVERMONITOR &monitor) -> DWORD {
        monitor.values[code].first = static_cast<WORD>(value);
        return 0;
    });
}

static BOOL WINAPI GetCapabilitiesLength(HANDLE handle, DWORD *length)
{
    return Access(handle, 'c', 0, [&](DRIVERMONITOR &monitor) -> DWORD {
        *length = static_cast<DWORD>(monitor.capabilities.size() + 1);
        return 0;
    });
}

static BOOL WINAPI GetCapabilities(HANDLE handle, char *text, DWORD length)
{
    std::lock_guard lock(s_mutex);
    const auto found = s_handles.find(reinterpret_cast<size_t>(handle));
    if (found == s_handles.end())
        return End(GRAPHICS_INVALID_MONITOR_HANDLE);
    DRIVERMONITOR &monitor = s_monitors[found->second];
    std::string capabilities = monitor.capabilities;
    if (monitor.disturbances > 0 && monitor.disturbances--)
        capabilities.replace(capabilities.find("0F"), 2, "0E");
    memcpy(text, capabilities.c_str(), std::min<size_t>(length, capabilities.size() + 1));
    return End(0);
}

const MONITORAPI *FakeMonitorApi()
{
    static const MONITORAPI api = {GetCount, GetMonitors,           Destroy,        GetVcp,
                                   SetVcp,   GetCapabilitiesLength, GetCapabilities};
    return &api;
}

std::vector<DISPLAY> FakeDisplays()
{
    std::lock_guard lock(s_mutex);
    std::vector<DISPLAY> displays;
    for (size_t i = 0; i < s_displays.size(); i++) {
        DISPLAY display = {};
        display.hMonitor = reinterpret_cast<HMONITOR>(i + 1);
        display.device = Format("\\\\.\\DISPLAY%u", static_cast<unsigned>(i + 1));
        display.area = {0, 0, 1920, 1080};
        display.monitors = s_displays[i].devices;
        displays.push_back(display);
    }
    return displays;
}
