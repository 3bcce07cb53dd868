// Finds the functions of Windows' Monitor Configuration API in dxva2.dll.
#include "host/windows_monitors/monitor_api.h"

#include "host/base/text.h"

template <typename FUNCTION>
static bool Find(HMODULE module, const char *name, FUNCTION *function, std::string *error)
{
    *function = reinterpret_cast<FUNCTION>(reinterpret_cast<void *>(GetProcAddress(module, name)));
    if (!*function)
        *error = Format("dxva2.dll lacks %s", name);
    return *function != nullptr;
}

bool LoadMonitorApi(MONITORAPI *api, std::string *error)
{
    const HMODULE module = LoadLibraryW(MonitorLibraryPath().c_str());
    if (!module) {
        *error = "dxva2.dll cannot be loaded (Windows has it from Vista on): " + SystemErrorText(GetLastError());
        return false;
    }
    MONITORAPI found = {};
    const bool complete = Find(module, "GetNumberOfPhysicalMonitorsFromHMONITOR", &found.getCount, error) &&
                          Find(module, "GetPhysicalMonitorsFromHMONITOR", &found.getMonitors, error) &&
                          Find(module, "DestroyPhysicalMonitor", &found.destroy, error) &&
                          Find(module, "GetVCPFeatureAndVCPFeatureReply", &found.getVcp, error) &&
                          Find(module, "SetVCPFeature", &found.setVcp, error) &&
                          Find(module, "GetCapabilitiesStringLength", &found.getCapabilitiesLength, error) &&
                          Find(module, "CapabilitiesRequestAndCapabilitiesReply", &found.getCapabilities, error);
    if (complete)
        *api = found;
    else
        FreeLibrary(module);
    return complete;
}
