// What Windows says about displays and monitors: the one place that calls its enumerations and reads EDIDs from the
// registry.
#include "host/windows_monitors/displays.h"

#include <setupapi.h>

#include <algorithm>

#include "host/base/text.h"

constexpr DWORD NAME_OF_INTERFACE = 1; // EDD_GET_DEVICE_INTERFACE_NAME
constexpr DWORD MONITOR_IN_USE = 1;    // DISPLAY_DEVICE_ACTIVE
constexpr DWORD EDID_LIMIT = 32 * 1024;

// {4d36e96e-e325-11ce-bfc1-08002be10318}: the device class of monitors.
static const GUID s_monitorClass = {0x4D36E96E, 0xE325, 0x11CE, {0xBF, 0xC1, 0x08, 0x00, 0x2B, 0xE1, 0x03, 0x18}};

std::string InstanceOfInterface(const std::string &path)
{
    const size_t end = path.rfind("#{");
    if (path.rfind("\\\\?\\", 0) != 0 || end == std::string::npos || end <= 4)
        return {};
    std::string instance = path.substr(4, end - 4);
    std::replace(instance.begin(), instance.end(), '#', '\\');
    return instance;
}

// ---- EDIDs in the registry ------------------------------------------------------------------------------------------

struct DEVICEEDID {
    std::string instance;
    std::vector<BYTE> edid;
};

static std::vector<BYTE> ReadEdidValue(HDEVINFO devices, SP_DEVINFO_DATA *device)
{
    std::vector<BYTE> edid;
    const HKEY key = SetupDiOpenDevRegKey(devices, device, DICS_FLAG_GLOBAL, 0, DIREG_DEV, KEY_QUERY_VALUE);
    if (key == INVALID_HANDLE_VALUE)
        return edid;
    DWORD type = 0, size = 0;
    if (RegQueryValueExW(key, L"EDID", nullptr, &type, nullptr, &size) == ERROR_SUCCESS && type == REG_BINARY &&
        size <= EDID_LIMIT) {
        edid.resize(size);
        if (RegQueryValueExW(key, L"EDID", nullptr, nullptr, edid.data(), &size) == ERROR_SUCCESS)
            edid.resize(std::min<size_t>(size, edid.size()));
        else
            edid.clear();
    }
    RegCloseKey(key);
    return edid;
}

// The EDIDs of all monitors that are present.
static std::vector<DEVICEEDID> ReadEdids()
{
    std::vector<DEVICEEDID> edids;
    const HDEVINFO devices =
        SetupDiGetClassDevsExW(&s_monitorClass, nullptr, nullptr, DIGCF_PRESENT, nullptr, nullptr, nullptr);
    if (devices == INVALID_HANDLE_VALUE)
        return edids;
    SP_DEVINFO_DATA device = {};
    device.cbSize = sizeof device;
    for (DWORD i = 0; SetupDiEnumDeviceInfo(devices, i, &device); i++) {
        wchar_t instance[256];
        if (SetupDiGetDeviceInstanceIdW(devices, &device, instance, 256, nullptr))
            edids.push_back({Narrow(instance), ReadEdidValue(devices, &device)});
    }
    SetupDiDestroyDeviceInfoList(devices);
    return edids;
}

static std::vector<BYTE> EdidOf(const std::vector<DEVICEEDID> &edids, const std::string &instance)
{
    for (const DEVICEEDID &entry : edids)
        if (!instance.empty() && EqualNoCase(entry.instance, instance))
            return entry.edid;
    return {};
}

// ---- Displays -------------------------------------------------------------------------------------------------------

struct LISTING {
    std::vector<DEVICEEDID> edids;
    std::vector<DISPLAY> displays;
};

static std::string AdapterName(const std::wstring &device)
{
    DISPLAY_DEVICEW adapter = {};
    adapter.cb = sizeof adapter;
    for (DWORD i = 0; EnumDisplayDevicesW(nullptr, i, &adapter, 0); i++)
        if (device == adapter.DeviceName)
            return Narrow(adapter.DeviceString);
    return {};
}

static std::vector<DISPLAYMONITOR> MonitorsOf(const std::wstring &device, const std::vector<DEVICEEDID> &edids)
{
    std::vector<DISPLAYMONITOR> monitors;
    DISPLAY_DEVICEW found = {};
    found.cb = sizeof found;
    for (DWORD i = 0; EnumDisplayDevicesW(device.c_str(), i, &found, NAME_OF_INTERFACE); i++) {
        if (!(found.StateFlags & MONITOR_IN_USE))
            continue;
        const std::string instance = InstanceOfInterface(Narrow(found.DeviceID));
        monitors.push_back({instance, Narrow(found.DeviceString), EdidOf(edids, instance)});
    }
    return monitors;
}

static BOOL CALLBACK AddDisplay(HMONITOR hMonitor, HDC, LPRECT, LPARAM context)
{
    LISTING *listing = reinterpret_cast<LISTING *>(context);
    MONITORINFOEXW info = {};
    info.cbSize = sizeof info;
    if (!GetMonitorInfoW(hMonitor, &info))
        return TRUE;
    DISPLAY display = {};
    display.hMonitor = hMonitor;
    display.device = Narrow(info.szDevice);
    display.adapter = AdapterName(info.szDevice);
    display.area = info.rcMonitor;
    display.isPrimary = (info.dwFlags & MONITORINFOF_PRIMARY) != 0;
    display.monitors = MonitorsOf(info.szDevice, listing->edids);
    listing->displays.push_back(display);
    return TRUE;
}

std::vector<DISPLAY> ListDisplays()
{
    LISTING listing = {ReadEdids(), {}};
    EnumDisplayMonitors(nullptr, nullptr, AddDisplay, reinterpret_cast<LPARAM>(&listing));
    return listing.displays;
}
