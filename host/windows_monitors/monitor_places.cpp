// Which index each monitor gets when those that are there are taken up.
#include "host/windows_monitors/monitor_places.h"

#include <algorithm>

static bool HasDevice(const FOUNDMONITOR &monitor, const std::string &device)
{
    return std::find(monitor.devices.begin(), monitor.devices.end(), device) != monitor.devices.end();
}

// Of a monitor that is away: whether it may come back, as far as those that are there let it.
static bool MayComeBack(const FOUNDMONITOR &monitor, const std::vector<FOUNDMONITOR> &present)
{
    const auto hasItsDevice = [&](const std::string &device) {
        return std::any_of(present.begin(), present.end(),
                           [&](const FOUNDMONITOR &other) { return HasDevice(other, device); });
    };
    return !monitor.isVague && std::none_of(monitor.devices.begin(), monitor.devices.end(), hasItsDevice);
}

static size_t FindIdentity(const std::vector<FOUNDMONITOR> &monitors, const std::string &identity)
{
    const auto isIt = [&](const FOUNDMONITOR &monitor) { return monitor.identity == identity; };
    return static_cast<size_t>(std::find_if(monitors.begin(), monitors.end(), isIt) - monitors.begin());
}

std::vector<MONITORPLACE> ArrangeMonitors(const std::vector<FOUNDMONITOR> &former,
                                          const std::vector<FOUNDMONITOR> &present)
{
    std::vector<MONITORPLACE> places;
    size_t free = FOUND_MONITOR_LIMIT - std::min(present.size(), FOUND_MONITOR_LIMIT);
    for (size_t i = 0; i < former.size(); i++) {
        const size_t found = FindIdentity(present, former[i].identity);
        if (found < present.size()) {
            places.push_back({true, found});
        } else if (free > 0 && MayComeBack(former[i], present)) {
            places.push_back({false, i});
            free--;
        }
    }
    for (size_t i = 0; i < present.size(); i++)
        if (FindIdentity(former, present[i].identity) == former.size())
            places.push_back({true, i});
    return places;
}
