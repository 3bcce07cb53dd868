// Finds the physical monitors behind the displays, and says which monitor is which.
#include "host/windows_monitors/found_monitor.h"

#include <algorithm>
#include <cstring>

#include "host/base/capability_text.h"
#include "host/base/text.h"
#include "host/windows_monitors/access_error.h"
#include "kernel/link/host_sizes.h"

constexpr DWORD BEHIND_ONE_LIMIT = 64; // more monitors behind one display than this are a driver's mistake

int MatchMonitorDevice(const DISPLAY &display, const std::vector<std::string> &descriptions, size_t index)
{
    if (descriptions.size() == 1 && display.monitors.size() == 1)
        return 0;
    const std::string &wanted = descriptions[index];
    if (std::count(descriptions.begin(), descriptions.end(), wanted) != 1)
        return -1;
    int match = -1;
    for (size_t i = 0; i < display.monitors.size(); i++) {
        if (display.monitors[i].description != wanted)
            continue;
        if (match >= 0)
            return -1;
        match = static_cast<int>(i);
    }
    return match;
}

static void TakeEdid(const std::vector<BYTE> &bytes, FOUNDMONITOR *found)
{
    if (bytes.size() < found->edid.size()) {
        found->edidTrouble = bytes.empty() ? "Windows has no EDID of it" : "the EDID is shorter than 128 bytes";
        return;
    }
    EDIDBLOCK block;
    std::copy_n(bytes.begin(), block.size(), block.begin());
    if (const char *fault = EdidFault(block)) {
        found->edidTrouble = fault;
        return;
    }
    found->edid = block;
    found->hasEdid = true;
}

static FOUNDMONITOR MakeFound(const DISPLAY &display, const std::vector<std::string> &descriptions, size_t index)
{
    FOUNDMONITOR found = {};
    found.display = display;
    found.display.monitors.clear();
    found.description = descriptions[index];
    found.isVague = std::all_of(display.monitors.begin(), display.monitors.end(),
                                [](const DISPLAYMONITOR &device) { return device.edid.empty(); });
    const int match = MatchMonitorDevice(display, descriptions, index);
    if (match < 0) {
        found.edidTrouble = "Windows does not tell which of its monitor devices this is";
        for (const DISPLAYMONITOR &device : display.monitors) {
            found.devices.push_back(device.instance);
            found.identity += device.instance + "|";
        }
        found.identity += found.description + Format("|%u", static_cast<unsigned>(index));
        return found;
    }
    const DISPLAYMONITOR &device = display.monitors[static_cast<size_t>(match)];
    if (found.description.empty())
        found.description = device.description;
    TakeEdid(device.edid, &found);
    found.devices = {device.instance};
    found.identity = device.instance;
    if (found.hasEdid)
        found.identity += "|" + EdidKey(found.edid);
    return found;
}

// Where Windows knows no devices two may look the same; then their order tells them apart.
static void MakeUnique(const std::vector<FOUNDMONITOR> &others, FOUNDMONITOR *found)
{
    const std::string identity = found->identity;
    const auto isTaken = [&](const FOUNDMONITOR &other) { return other.identity == found->identity; };
    for (unsigned n = 2; std::any_of(others.begin(), others.end(), isTaken); n++)
        found->identity = identity + Format("#%u", n);
}

static std::string NarrowDescription(const PHYSICALMONITOR &monitor)
{
    WCHAR text[128]; // the structure is packed, so it is copied
    memcpy(text, &monitor.szDescription, sizeof text);
    return Narrow(std::wstring_view(text, wcsnlen(text, 128)));
}

// Opens the monitors behind one display; 0, or the error.
static DWORD OpenDisplay(const MONITORAPI &api, HMONITOR hMonitor, std::vector<PHYSICALMONITOR> *opened)
{
    DWORD count = 0;
    if (!api.getCount(hMonitor, &count))
        return GetLastError();
    if (count == 0 || count > BEHIND_ONE_LIMIT)
        return ERROR_NOT_FOUND;
    opened->resize(count);
    memset(opened->data(), 0, count * sizeof(PHYSICALMONITOR));
    if (api.getMonitors(hMonitor, count, opened->data()))
        return 0;
    const DWORD error = GetLastError();
    opened->clear();
    return error;
}

FINDING FindPhysicalMonitors(const MONITORAPI &api, const std::vector<DISPLAY> &displays)
{
    FINDING finding = {};
    for (const DISPLAY &display : displays) {
        std::vector<PHYSICALMONITOR> opened;
        if (const DWORD error = OpenDisplay(api, display.hMonitor, &opened)) {
            finding.error = finding.error ? finding.error : error;
            finding.trouble += (finding.trouble.empty() ? "" : "; ") + display.device + ": " + AccessErrorText(error);
            continue;
        }
        std::vector<std::string> descriptions;
        for (const PHYSICALMONITOR &monitor : opened)
            descriptions.push_back(NarrowDescription(monitor));
        for (size_t i = 0; i < opened.size(); i++) {
            if (finding.monitors.size() == FOUND_MONITOR_LIMIT) {
                api.destroy(opened[i].hMonitor);
                continue;
            }
            FOUNDMONITOR found = MakeFound(display, descriptions, i);
            MakeUnique(finding.monitors, &found);
            found.handle = opened[i].hMonitor;
            finding.monitors.push_back(found);
        }
    }
    return finding;
}

void DestroyFoundMonitors(const MONITORAPI &api, const std::vector<FOUNDMONITOR> &monitors)
{
    for (const FOUNDMONITOR &monitor : monitors)
        api.destroy(monitor.handle);
}

// ---- Names ----------------------------------------------------------------------------------------------------------

// What a name must be to be shown as it is: the plug-in takes bytes of the system's code page.
static std::string PlainName(std::string_view text)
{
    std::string name;
    for (const char c : Trim(text))
        if (c >= ' ' && c <= '~')
            name += c;
    name.resize(std::min<size_t>(name.size(), HOST_NAME_SIZE));
    return std::string(Trim(name));
}

std::string MonitorModel(const std::string &capabilities, const FOUNDMONITOR &found)
{
    std::string name = PlainName(CapabilityModel(capabilities));
    if (name.empty() && found.hasEdid)
        name = PlainName(ReadEdidFacts(found.edid).name);
    if (name.empty())
        name = PlainName(found.description);
    return name.empty() ? "Monitor" : name;
}
