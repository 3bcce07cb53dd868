// The functions of Windows' dxva2.dll that DDC/CI programs use, with its signatures and error codes, over simulated
// monitors: for tests and for the tour, never for a user.
#include <cstring>

#include "tests/dxva2_stand_in/error_codes.h"
#include "tests/dxva2_stand_in/stand_in_monitors.h"

// How Windows lays it out.
#pragma pack(push, 1)
struct PHYSICAL_MONITOR {
    HANDLE hPhysicalMonitor;
    WCHAR szPhysicalMonitorDescription[128];
};
#pragma pack(pop)
static_assert(sizeof(PHYSICAL_MONITOR) == 260);

enum MC_VCP_CODE_TYPE { MC_MOMENTARY, MC_SET_PARAMETER };

constexpr DWORD ANY_TIME = MONITOR_DELAY_LIMIT + 1; // Windows sets an access no limit of its own

// What Windows calls every monitor that came without a driver.
static const wchar_t s_szDescription[] = L"Generic PnP Monitor";

static BOOL Fail(DWORD error)
{
    SetLastError(error);
    return FALSE;
}

// ---- Displays and handles -------------------------------------------------------------------------------------------

constexpr ULONG_PTR DISPLAY_LIMIT = 16;

struct DISPLAYSEARCH {
    HMONITOR hMonitor;
    DWORD count, found;
};

static BOOL CALLBACK CompareDisplay(HMONITOR hMonitor, HDC, LPRECT, LPARAM data)
{
    DISPLAYSEARCH *search = reinterpret_cast<DISPLAYSEARCH *>(data);
    search->count++;
    if (hMonitor == search->hMonitor)
        search->found = search->count;
    return TRUE;
}

// The display's number from 1 on; 0 for a handle that is none. Handles that are such numbers themselves are good, too,
// for tests that need more displays than there are.
static DWORD DisplayNumber(HMONITOR hMonitor)
{
    DISPLAYSEARCH search = {hMonitor, 0, 0};
    EnumDisplayMonitors(nullptr, nullptr, CompareDisplay, reinterpret_cast<LPARAM>(&search));
    const ULONG_PTR number = reinterpret_cast<ULONG_PTR>(hMonitor);
    return search.found ? search.found : number <= DISPLAY_LIMIT ? static_cast<DWORD>(number) : 0;
}

extern "C" BOOL WINAPI GetNumberOfPhysicalMonitorsFromHMONITOR(HMONITOR hMonitor, LPDWORD lpCount)
{
    const DWORD display = DisplayNumber(hMonitor);
    if (!display)
        return Fail(ERROR_INVALID_MONITOR_HANDLE);
    if (!lpCount)
        return Fail(ERROR_INVALID_PARAMETER);
    *lpCount = static_cast<DWORD>(MonitorsBehind(PresentMonitors().get(), display).size());
    return TRUE;
}

extern "C" BOOL WINAPI GetPhysicalMonitorsFromHMONITOR(HMONITOR hMonitor, DWORD dwCount, PHYSICAL_MONITOR *lpMonitors)
{
    const DWORD display = DisplayNumber(hMonitor);
    if (!display)
        return Fail(ERROR_INVALID_MONITOR_HANDLE);
    const auto all = PresentMonitors();
    const std::vector<int> found = MonitorsBehind(all.get(), display);
    if (!lpMonitors || dwCount == 0 || dwCount != found.size())
        return Fail(ERROR_INVALID_PARAMETER);
    for (const int monitor : found) {
        lpMonitors->hPhysicalMonitor = OpenMonitorHandle(all.get(), monitor);
        lstrcpyW(lpMonitors->szPhysicalMonitorDescription, s_szDescription);
        lpMonitors++;
    }
    return TRUE;
}

extern "C" BOOL WINAPI DestroyPhysicalMonitor(HANDLE hMonitor)
{
    return CloseMonitorHandle(PresentMonitors().get(), hMonitor) ||
           Fail(ERROR_GRAPHICS_INVALID_PHYSICAL_MONITOR_HANDLE);
}

extern "C" BOOL WINAPI DestroyPhysicalMonitors(DWORD dwCount, PHYSICAL_MONITOR *lpMonitors)
{
    BOOL good = TRUE;
    for (DWORD i = 0; i < dwCount; i++)
        good = DestroyPhysicalMonitor(lpMonitors[i].hPhysicalMonitor) && good;
    return good;
}

// ---- VCP codes ------------------------------------------------------------------------------------------------------

static bool HasFeature(STANDINMONITORS *all, int monitor, BYTE code, bool *momentary)
{
    std::lock_guard lock(all->simulation.mutex);
    const SIMULATEDFEATURE &feature = all->simulation.monitors[static_cast<size_t>(monitor)].features[code];
    *momentary = feature.file.momentary;
    return feature.present;
}

extern "C" BOOL WINAPI GetVCPFeatureAndVCPFeatureReply(HANDLE hMonitor, BYTE bCode, MC_VCP_CODE_TYPE *lpType,
                                                       LPDWORD lpValue, LPDWORD lpMaximum)
{
    if (!lpValue)
        return Fail(ERROR_INVALID_PARAMETER);
    const auto all = PresentMonitors();
    int monitor = 0;
    if (const DWORD error = BeginMonitorAccess(all.get(), hMonitor, ERROR_GRAPHICS_I2C_ERROR_RECEIVING_DATA, &monitor))
        return Fail(error);
    const MONITORBACKEND backend = SimulationBackend(&all->simulation);
    WORD value = 0, maximum = 0;
    const MONITORRESULT result = backend.getVcp(backend.context, monitor, ANY_TIME, bCode, &value, &maximum);
    bool momentary = false;
    if (!HasFeature(all.get(), monitor, bCode, &momentary) && result == MONITOR_FAILED)
        return Fail(ERROR_GRAPHICS_DDCCI_VCP_NOT_SUPPORTED);
    if (result != MONITOR_OK)
        return Fail(ERROR_GRAPHICS_I2C_ERROR_RECEIVING_DATA);
    const DWORD readsAs = FaultOf(all.get(), monitor, STANDIN_READS_AS);
    *lpValue = readsAs ? readsAs : value;
    if (lpMaximum)
        *lpMaximum = maximum;
    if (lpType)
        *lpType = momentary ? MC_MOMENTARY : MC_SET_PARAMETER;
    return TRUE;
}

// A monitor does not acknowledge a write: only the line itself can fail.
extern "C" BOOL WINAPI SetVCPFeature(HANDLE hMonitor, BYTE bCode, DWORD dwValue)
{
    const auto all = PresentMonitors();
    int monitor = 0;
    if (const DWORD error =
            BeginMonitorAccess(all.get(), hMonitor, ERROR_GRAPHICS_I2C_ERROR_TRANSMITTING_DATA, &monitor))
        return Fail(error);
    const MONITORBACKEND backend = SimulationBackend(&all->simulation);
    const MONITORRESULT result = backend.setVcp(backend.context, monitor, ANY_TIME, bCode, static_cast<WORD>(dwValue));
    if (result == MONITOR_OK || result == MONITOR_IGNORED)
        return TRUE;
    return Fail(ERROR_GRAPHICS_I2C_ERROR_TRANSMITTING_DATA);
}

// ---- The capability string ------------------------------------------------------------------------------------------

// Reads it from the monitor, which takes as long as an access. Returns 0 or an error code.
static DWORD ReadCapabilities(HANDLE hMonitor, char text[HOST_CAPABILITIES_SIZE])
{
    const auto all = PresentMonitors();
    int monitor = 0;
    if (const DWORD error = BeginMonitorAccess(all.get(), hMonitor, ERROR_GRAPHICS_I2C_ERROR_RECEIVING_DATA, &monitor))
        return error;
    const MONITORBACKEND backend = SimulationBackend(&all->simulation);
    if (backend.capabilities(backend.context, monitor, ANY_TIME, text) != MONITOR_OK)
        return ERROR_GRAPHICS_I2C_ERROR_RECEIVING_DATA;
    if (FaultOf(all.get(), monitor, STANDIN_NO_CAPABILITIES))
        text[0] = '\0';
    return 0;
}

extern "C" BOOL WINAPI GetCapabilitiesStringLength(HANDLE hMonitor, LPDWORD lpLength)
{
    char text[HOST_CAPABILITIES_SIZE] = "";
    if (!lpLength)
        return Fail(ERROR_INVALID_PARAMETER);
    if (const DWORD error = ReadCapabilities(hMonitor, text))
        return Fail(error);
    *lpLength = static_cast<DWORD>(strlen(text)) + 1;
    return TRUE;
}

extern "C" BOOL WINAPI CapabilitiesRequestAndCapabilitiesReply(HANDLE hMonitor, LPSTR lpText, DWORD dwLength)
{
    char text[HOST_CAPABILITIES_SIZE] = "";
    if (!lpText || !dwLength)
        return Fail(ERROR_INVALID_PARAMETER);
    if (const DWORD error = ReadCapabilities(hMonitor, text))
        return Fail(error);
    if (strlen(text) >= dwLength)
        return Fail(ERROR_INSUFFICIENT_BUFFER);
    strcpy(lpText, text);
    return TRUE;
}
