// Describes monitors to the stand-in, and looks into them.
#include "tests/dxva2_stand_in/tests/stand_in_control.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <mutex>

#include "host/base/edid.h"
#include "host/base/text.h"

template <typename FUNCTION>
static FUNCTION Find(const char *name)
{
    return reinterpret_cast<FUNCTION>(reinterpret_cast<void *>(GetProcAddress(LoadLibraryW(L"dxva2.dll"), name)));
}

STANDINCONTROL g_StandIn = {Find<decltype(&StandInOpen)>("StandInOpen"), Find<decltype(&StandInSet)>("StandInSet"),
                            Find<decltype(&StandInFeature)>("StandInFeature"),
                            Find<decltype(&StandInTurn)>("StandInTurn"),
                            Find<decltype(&StandInAccesses)>("StandInAccesses")};

static std::string WriteMonitor(const TESTMONITOR &monitor)
{
    wchar_t folder[MAX_PATH] = L"";
    GetTempPathW(MAX_PATH, folder);
    std::string path = Narrow(folder) + Format("stand-in %s.ini", monitor.model);
    std::ofstream file(path);
    file << "[monitor]\nmodel = " << monitor.model << "\n"
         << (monitor.monitorLines.find("capabilities") != std::string::npos
                 ? ""
                 : Format("capabilities = (prot(monitor)type(lcd)model(%s)vcp(02 10 12 14(05 08 0B) 16 18 1A "
                          "60(01 03 11))mccs_ver(2.1))\n",
                          monitor.model))
         << monitor.monitorLines << "[vcp]\n14 = 11 / 11\n16 = 60 / 100\n18 = 60 / 100\n1A = 60 / 100\n60 = 17 / 17\n"
         << (monitor.vcpLines.find("10 =") != std::string::npos ? "" : "10 = 40 / 100\n")
         << (monitor.vcpLines.find("12 =") != std::string::npos ? "" : "12 = 50 / 100\n") << monitor.vcpLines;
    return path;
}

void OpenTestMonitors(const std::vector<TESTMONITOR> &monitors)
{
    ASSERT_NE(g_StandIn.open, nullptr) << "another dxva2.dll was loaded";
    std::string paths;
    for (const TESTMONITOR &monitor : monitors)
        paths += (paths.empty() ? "" : ",") + WriteMonitor(monitor);
    ASSERT_TRUE(g_StandIn.open(paths.c_str())) << paths;
}

int Seen(int monitor, BYTE code)
{
    WORD value = 0, maximum = 0;
    return g_StandIn.feature(monitor, code, &value, &maximum) ? value : -1;
}

// ---- The desk -------------------------------------------------------------------------------------------------------

static std::mutex s_mutex;
static std::vector<DISPLAY> s_displays; // guarded by it

static DISPLAYMONITOR DeviceOf(const DESKMONITOR &place)
{
    if (!place.hasEdid)
        return {"DISPLAY\\Default_Monitor\\1&0&UID0", "Generic Non-PnP Monitor", {}};
    const unsigned n = static_cast<unsigned>(place.monitor);
    const EDIDBLOCK edid = MakeEdid({"GSM", 0x1234, n + 1, 2016, 60, 34, "DESK"});
    return {Format("DISPLAY\\GSM1234\\5&1A2B&0&UID%u", n), "Generic PnP Monitor", {edid.begin(), edid.end()}};
}

void SetDesk(const std::vector<DESKMONITOR> &desk)
{
    std::lock_guard lock(s_mutex);
    for (int n = 0; g_StandIn.set(n, STANDIN_DISPLAY, static_cast<DWORD>(n + 1)); n++) {
        const bool isThere =
            std::any_of(desk.begin(), desk.end(), [=](const DESKMONITOR &place) { return place.monitor == n; });
        g_StandIn.set(n, STANDIN_GONE, !isThere);
    }
    s_displays.clear();
    for (const DESKMONITOR &place : desk)
        s_displays.push_back({reinterpret_cast<HMONITOR>(place.monitor + 1),
                              Format("\\\\.\\DISPLAY%u", place.display),
                              "card",
                              {0, 0, 1280, 1024},
                              s_displays.empty(),
                              {DeviceOf(place)}});
}

// In the place of the one that asks Windows.
std::vector<DISPLAY> ListDisplays()
{
    std::lock_guard lock(s_mutex);
    return s_displays;
}
