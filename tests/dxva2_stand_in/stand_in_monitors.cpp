// The monitors behind the stand-in's functions: which there are, what is wrong with them, and who has a handle.
#include "tests/dxva2_stand_in/stand_in_monitors.h"

#include <algorithm>

#include "host/base/text.h"
#include "tests/dxva2_stand_in/error_codes.h"

static const wchar_t s_szVariable[] = L"DXVA2_STAND_IN"; // names another control file
static const wchar_t s_szControlFile[] = L"stand_in.ini";
static const wchar_t s_szMonitorFolder[] = L"stand_in";

// The faults' names in the control file, in the order of STANDINFAULT.
static const wchar_t *const s_faultNames[] = {L"display", L"answers-every", L"fails",           L"hangs",
                                              L"gone",    L"gone-after",    L"no-capabilities", L"reads-as"};
static_assert(std::size(s_faultNames) == STANDIN_FAULT_COUNT);

// Never destroyed: a hanging access may still be in there when the process ends.
static std::mutex &s_mutex = *new std::mutex;
static std::shared_ptr<STANDINMONITORS> &s_present = *new std::shared_ptr<STANDINMONITORS>; // guarded by it

STANDINMONITORS::~STANDINMONITORS()
{
    for (const STANDINMONITOR &monitor : monitors)
        CloseHandle(monitor.hGoOn);
    CloseSimulation(&simulation);
}

static void ApplyFault(STANDINMONITOR *monitor, int fault, DWORD n)
{
    if (fault == STANDIN_GONE && n && !monitor->faults[fault])
        monitor->plugs++;
    monitor->faults[fault] = n;
    if (fault == STANDIN_ANSWERS_EVERY)
        monitor->accessesBefore = monitor->accesses;
    if (fault == STANDIN_HANGS && n)
        ResetEvent(monitor->hGoOn);
    else if (fault == STANDIN_HANGS)
        SetEvent(monitor->hGoOn);
}

// ---- Which there are ------------------------------------------------------------------------------------------------

static std::shared_ptr<STANDINMONITORS> MakeMonitors(const std::vector<MONITORFILE> &files)
{
    auto all = std::make_shared<STANDINMONITORS>();
    OpenSimulation(&all->simulation);
    for (const MONITORFILE &file : files) {
        AddSimulatedMonitor(&all->simulation, file);
        all->monitors.push_back({{}, 0, 0, 0, CreateEventW(nullptr, TRUE, TRUE, nullptr)});
    }
    return all;
}

// Puts others in the place of the present ones, and ends what is under way there.
static void ReplaceMonitors(const std::shared_ptr<STANDINMONITORS> &others)
{
    if (s_present) {
        std::lock_guard lock(s_present->mutex);
        s_present->closed = true;
        EndSimulationDelays(&s_present->simulation);
        for (const STANDINMONITOR &monitor : s_present->monitors)
            SetEvent(monitor.hGoOn);
    }
    s_present = others;
}

static std::wstring LibraryFolder()
{
    HMODULE hModule = nullptr;
    wchar_t path[MAX_PATH] = L"";
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       s_szVariable, &hModule);
    GetModuleFileNameW(hModule, path, MAX_PATH - 1);
    const std::wstring text = path;
    return text.substr(0, text.find_last_of(L'\\') + 1);
}

static std::wstring ControlFile()
{
    wchar_t path[MAX_PATH] = L"";
    const DWORD length = GetEnvironmentVariableW(s_szVariable, path, MAX_PATH);
    return length && length < MAX_PATH ? path : LibraryFolder() + s_szControlFile;
}

// [monitors] names the descriptions, [monitor 1] and so on what is wrong with each.
static std::shared_ptr<STANDINMONITORS> ReadControlFile()
{
    const std::wstring file = ControlFile(), folder = LibraryFolder() + s_szMonitorFolder;
    wchar_t paths[1024] = L"";
    GetPrivateProfileStringW(L"monitors", L"files", folder.c_str(), paths, ARRAYSIZE(paths), file.c_str());
    std::vector<MONITORFILE> files;
    std::string error;
    if (!ReadMonitorFiles(SplitAt(Narrow(paths), ','), &files, &error))
        OutputDebugStringW(Widen(error + "\n").c_str());
    auto all = MakeMonitors(files);
    for (size_t i = 0; i < all->monitors.size(); i++) {
        const std::wstring section = Widen(Format("monitor %u", static_cast<unsigned>(i + 1)));
        for (int fault = 0; fault < STANDIN_FAULT_COUNT; fault++)
            ApplyFault(&all->monitors[i], fault,
                       GetPrivateProfileIntW(section.c_str(), s_faultNames[fault], 0, file.c_str()));
    }
    return all;
}

std::shared_ptr<STANDINMONITORS> PresentMonitors()
{
    std::lock_guard lock(s_mutex);
    if (!s_present)
        ReplaceMonitors(ReadControlFile());
    return s_present;
}

std::vector<int> MonitorsBehind(STANDINMONITORS *all, DWORD display)
{
    std::lock_guard lock(all->mutex);
    std::vector<int> found;
    for (size_t i = 0; i < all->monitors.size(); i++) {
        const DWORD *faults = all->monitors[i].faults;
        if (!faults[STANDIN_GONE] && std::max<DWORD>(faults[STANDIN_DISPLAY], 1) == display)
            found.push_back(static_cast<int>(i));
    }
    return found;
}

// ---- Handles and accesses -------------------------------------------------------------------------------------------

// With the lock; null for a handle that is none.
static STANDINMONITORS::OPENED *FindHandle(STANDINMONITORS *all, HANDLE handle)
{
    const size_t index = reinterpret_cast<ULONG_PTR>(handle);
    const bool isOpen = !all->closed && index < all->handles.size() && all->handles[index].open;
    return isOpen ? &all->handles[index] : nullptr;
}

HANDLE OpenMonitorHandle(STANDINMONITORS *all, int monitor)
{
    std::lock_guard lock(all->mutex);
    all->handles.push_back({monitor, all->monitors[static_cast<size_t>(monitor)].plugs, true});
    return reinterpret_cast<HANDLE>(all->handles.size() - 1);
}

bool CloseMonitorHandle(STANDINMONITORS *all, HANDLE handle)
{
    std::lock_guard lock(all->mutex);
    STANDINMONITORS::OPENED *opened = FindHandle(all, handle);
    if (opened)
        opened->open = false;
    return opened != nullptr;
}

// With the lock.
static DWORD CheckHandle(STANDINMONITORS *all, HANDLE handle)
{
    const STANDINMONITORS::OPENED *opened = FindHandle(all, handle);
    if (!opened)
        return ERROR_GRAPHICS_INVALID_PHYSICAL_MONITOR_HANDLE;
    const STANDINMONITOR &monitor = all->monitors[static_cast<size_t>(opened->monitor)];
    return monitor.plugs == opened->plugs ? 0 : ERROR_GRAPHICS_MONITOR_NO_LONGER_EXISTS;
}

// Counts an access, and what happens to a monitor with the number of its accesses.
static bool FailsNow(STANDINMONITOR *monitor)
{
    monitor->accesses++;
    DWORD *left = &monitor->faults[STANDIN_GONE_AFTER];
    if (*left && --*left == 0)
        ApplyFault(monitor, STANDIN_GONE, 1);
    const DWORD every = monitor->faults[STANDIN_ANSWERS_EVERY];
    return monitor->faults[STANDIN_FAILS] || (every && (monitor->accesses - monitor->accessesBefore) % every != 0);
}

DWORD BeginMonitorAccess(STANDINMONITORS *all, HANDLE handle, DWORD lineError, int *monitor)
{
    HANDLE hGoOn = nullptr;
    bool fails = false;
    {
        std::lock_guard lock(all->mutex);
        if (const DWORD error = CheckHandle(all, handle))
            return error;
        *monitor = FindHandle(all, handle)->monitor;
        hGoOn = all->monitors[static_cast<size_t>(*monitor)].hGoOn;
        fails = FailsNow(&all->monitors[static_cast<size_t>(*monitor)]);
    }
    WaitForSingleObject(hGoOn, INFINITE);
    std::lock_guard lock(all->mutex);
    const DWORD error = CheckHandle(all, handle); // much may have happened meanwhile
    return error ? error : fails ? lineError : 0;
}

DWORD FaultOf(STANDINMONITORS *all, int monitor, STANDINFAULT fault)
{
    std::lock_guard lock(all->mutex);
    return all->monitors[static_cast<size_t>(monitor)].faults[fault];
}

// ---- Control --------------------------------------------------------------------------------------------------------

BOOL WINAPI StandInOpen(const char *paths)
{
    std::vector<MONITORFILE> files;
    std::string error;
    if (!ReadMonitorFiles(SplitAt(paths, ','), &files, &error))
        return FALSE;
    std::lock_guard lock(s_mutex);
    ReplaceMonitors(MakeMonitors(files));
    return TRUE;
}

static bool IsMonitor(const STANDINMONITORS &all, int monitor)
{
    return monitor >= 0 && static_cast<size_t>(monitor) < all.monitors.size();
}

BOOL WINAPI StandInSet(int monitor, int fault, DWORD n)
{
    const auto all = PresentMonitors();
    if (!IsMonitor(*all, monitor) || fault < 0 || fault >= STANDIN_FAULT_COUNT)
        return FALSE;
    std::lock_guard lock(all->mutex);
    ApplyFault(&all->monitors[static_cast<size_t>(monitor)], fault, n);
    return TRUE;
}

BOOL WINAPI StandInFeature(int monitor, BYTE code, WORD *value, WORD *maximum)
{
    const auto all = PresentMonitors();
    if (!IsMonitor(*all, monitor))
        return FALSE;
    std::lock_guard lock(all->simulation.mutex);
    const SIMULATEDFEATURE &feature = all->simulation.monitors[static_cast<size_t>(monitor)].features[code];
    *value = feature.value;
    *maximum = feature.file.maximum;
    return feature.present;
}

BOOL WINAPI StandInTurn(int monitor, BYTE code, WORD value)
{
    const auto all = PresentMonitors();
    if (!IsMonitor(*all, monitor))
        return FALSE;
    std::lock_guard lock(all->simulation.mutex);
    SIMULATEDFEATURE &feature = all->simulation.monitors[static_cast<size_t>(monitor)].features[code];
    feature.value = value;
    return feature.present;
}

DWORD WINAPI StandInAccesses(int monitor)
{
    const auto all = PresentMonitors();
    std::lock_guard lock(all->mutex);
    return IsMonitor(*all, monitor) ? all->monitors[static_cast<size_t>(monitor)].accesses : 0;
}
