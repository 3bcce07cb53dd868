// Which messages of Windows say that there may be other monitors than before.
#include "host/display_events.h"

#include <dbt.h>

#include <cstring>

// The interface class of monitors, which the headers for drivers name.
static const GUID s_monitorClass = {0xE6F07B5F, 0xEE97, 0x4A90, {0xB0, 0x76, 0x33, 0xF5, 0x7B, 0xF4, 0xEA, 0xA7}};

HDEVNOTIFY RegisterDisplayEvents(HWND hWnd)
{
    DEV_BROADCAST_DEVICEINTERFACE_W filter = {};
    filter.dbcc_size = sizeof filter;
    filter.dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
    filter.dbcc_classguid = s_monitorClass;
    return RegisterDeviceNotificationW(hWnd, &filter, DEVICE_NOTIFY_WINDOW_HANDLE);
}

void UnregisterDisplayEvents(HDEVNOTIFY hNotify)
{
    if (hNotify)
        UnregisterDeviceNotification(hNotify);
}

// Volumes and ports are told to every window, so it has to be a monitor.
static bool IsMonitorDevice(LPARAM lParam)
{
    const auto *header = reinterpret_cast<const DEV_BROADCAST_HDR *>(lParam);
    if (!header || header->dbch_devicetype != DBT_DEVTYP_DEVICEINTERFACE ||
        header->dbch_size < sizeof(DEV_BROADCAST_DEVICEINTERFACE_W))
        return false;
    const auto *device = reinterpret_cast<const DEV_BROADCAST_DEVICEINTERFACE_W *>(lParam);
    return memcmp(&device->dbcc_classguid, &s_monitorClass, sizeof(GUID)) == 0;
}

bool IsDisplayEvent(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_DISPLAYCHANGE:
        return true;
    case WM_DEVICECHANGE:
        return (wParam == DBT_DEVICEARRIVAL || wParam == DBT_DEVICEREMOVECOMPLETE) && IsMonitorDevice(lParam);
    default:
        return false;
    }
}
