// The plug-in as it ships, loaded, started, stopped and unloaded again and again by a host that comes and goes with it.
#include "kernel/base/plugin_state.h"
#include "kernel/kernel_window.h"
#include "stress/panel_hands.h"
#include "stress/parts.h"
#include "support/ini_folder.h"
#include "support/own_objects.h"
#include "support/registry_sandbox.h"

constexpr int ROUNDS = 500;
constexpr int ROUNDS_BRIEF = 10;
constexpr int WARM_UPS = 5;

static HWND WaitForKernelWindow()
{
    constexpr int LOOKS = 1000;
    for (int look = 0; look < LOOKS; ++look) {
        if (const HWND window = FindWindowA(KERNEL_WINDOW_CLASS, nullptr))
            return window;
        Sleep(10);
    }
    return nullptr;
}

// Every third start is stopped before it has got to its monitors, as by a user who logs off.
static void StartAndStop(const PLUGINSLOT *slots, int round)
{
    TestHost host(slots[PLUGIN_SLOT_RECEIVE]);
    host.monitors = FullMonitors();
    HWND window = host.Window();
    HOSTPACKET packet = {};
    packet.dst.wID = 3;
    packet.dwDataSize = sizeof window;
    packet.lpData = reinterpret_cast<HOSTDATA *>(&window);
    int started = 0, stopped = 0;
    const int blocks = CountHeapBlocks();
    host.Run([&] { started = slots[PLUGIN_SLOT_INIT](&packet); });
    Expect(CountHeapBlocks() > blocks, "the plug-in runs without a block that is counted");
    if (round % 3 != 0) {
        const HWND kernel = WaitForKernelWindow();
        SendMessageA(kernel, WM_TIMER, TIMER_START_UP, 0);
        Expect(host.WaitFor("notice 9"), "did not start up");
    }
    host.Run([&] { stopped = slots[PLUGIN_SLOT_STOP](nullptr); });
    Expect(started == 1 && stopped == 1,
           "slots 0 and 15 gave " + std::to_string(started) + ", " + std::to_string(stopped));
    Expect(host.Log().back() == "notice 3", "no stop notice");
}

static bool RunRound(int round)
{
    const HMODULE module = LoadLibraryA("lvkernel.dll");
    const auto function =
        module ? reinterpret_cast<GETPLUGINFUNC>(reinterpret_cast<void *>(GetProcAddress(module, "GetPluginFunc")))
               : nullptr;
    PLUGINFUNC table = {};
    if (!function || function(&table) != 1 || !table.lpFuncTable) {
        FreeLibrary(module);
        return Expect(false, "lvkernel.dll cannot be loaded");
    }
    Expect(CountObjectsOf(module), "its blocks and GDI objects cannot be counted");
    StartAndStop(table.lpFuncTable, round);
    FreeLibrary(module);
    return Expect(GetModuleHandleA("lvkernel.dll") == nullptr, "lvkernel.dll stays loaded");
}

void RunRestarts(const WORKOPTIONS &options)
{
    const RegistrySandbox registry;
    const IniFolder ini;
    WriteMonitorFiles();
    // The system's own libraries stay, as in a host that uses them itself: some of Wine's leave a handle at each load.
    // cppcheck-suppress leakReturnValNotUsed ; until the process ends
    LoadLibraryA("comdlg32.dll");
    for (int round = 0; round < WARM_UPS; ++round)
        if (!RunRound(round))
            return;
    const RESOURCECOUNTS before = CountResources();
    const int rounds = options.brief ? ROUNDS_BRIEF : ROUNDS;
    for (int round = 0; round < rounds; ++round) {
        if (round % 10 == 0)
            Step("start " + std::to_string(round));
        if (!RunRound(round))
            return;
    }
    Step("end");
    ExpectNoGrowth(before);
    Figure(std::to_string(rounds) + " times loaded, started, stopped and unloaded");
}
