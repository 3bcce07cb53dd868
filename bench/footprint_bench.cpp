// The plug-in as a file and in memory. It is the DLL itself here, loaded as a host loads it.
#include "bench/bench_session.h"
#include "bench/benchmarks.h"
#include "bench/measure.h"
#include "kernel/base/texts.h"
#include "kernel/plugin.h"

#include <psapi.h>

#include <stdexcept>

constexpr double KB = 1024;

// ---- On disk ------------------------------------------------------------------------------------------------------

static std::string LibraryPath()
{
    return IniFolder::Path("lvkernel.dll");
}

static double FileSize(const std::string &path)
{
    WIN32_FILE_ATTRIBUTE_DATA data;
    if (!GetFileAttributesExA(path.c_str(), GetFileExInfoStandard, &data))
        throw std::runtime_error("lvkernel.dll is not beside the program");
    return data.nFileSizeLow;
}

static BOOL CALLBACK AddBitmapSize(HMODULE hModule, LPCSTR lpszType, LPSTR lpszName, LONG_PTR sum)
{
    const HRSRC hResource = FindResourceA(hModule, lpszName, lpszType);
    *reinterpret_cast<double *>(sum) += SizeofResource(hModule, hResource);
    return TRUE;
}

static double BitmapSize(const std::string &path)
{
    double size = 0;
    const HMODULE hModule = LoadLibraryExA(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    EnumResourceNamesA(hModule, RT_BITMAP, AddBitmapSize, reinterpret_cast<LONG_PTR>(&size));
    FreeLibrary(hModule);
    return size;
}

// ---- In memory ----------------------------------------------------------------------------------------------------

// What the process has for itself. Windows calls it the page file's part.
static double PrivateBytes()
{
    PROCESS_MEMORY_COUNTERS counters = {};
    counters.cb = sizeof counters;
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return static_cast<double>(counters.PagefileUsage);
}

static const PLUGINSLOT *Slots(HMODULE hModule)
{
    const auto getPluginFunc =
        reinterpret_cast<GETPLUGINFUNC>(reinterpret_cast<void *>(GetProcAddress(hModule, "GetPluginFunc")));
    PLUGINFUNC table = {};
    if (!getPluginFunc || getPluginFunc(&table) != 1)
        throw std::runtime_error("lvkernel.dll has no slots");
    return table.lpFuncTable;
}

// The library started, and stopped at the end of the scope.
class StartedLibrary {
public:
    explicit StartedLibrary(const PLUGINSLOT *slots) : m_slots(slots), m_host(slots[PLUGIN_SLOT_RECEIVE]) {}
    ~StartedLibrary() { m_host.Stop(m_slots[PLUGIN_SLOT_STOP]); }
    StartedLibrary(const StartedLibrary &) = delete;
    StartedLibrary &operator=(const StartedLibrary &) = delete;

    // Up to where the start-up's requests have been answered.
    void Start()
    {
        m_host.Init(m_slots[PLUGIN_SLOT_INIT]);
        WaitUntil("the start of lvkernel.dll", [this] { return m_host.Totals().started; });
        for (long before = -1, now = 0; before != now; before = now, now = m_host.Totals().requests)
            SleepEx(300, FALSE);
    }

    void OpenPanel()
    {
        m_host.Run([this] { m_slots[PLUGIN_SLOT_OPEN_PANEL](nullptr); });
        WaitUntil("the panel", [] { return FindWindowA("#32770", PRODUCT_TITLE) != nullptr; });
        SleepEx(500, FALSE); // for its painting
    }

private:
    const PLUGINSLOT *const m_slots;
    BenchHost m_host;
};

static void MeasureMemory(REPORT *report, const std::string &path)
{
    const RegistrySandbox registry;
    const IniFolder ini;
    const double before = PrivateBytes();
    const HMODULE hModule = LoadLibraryA(path.c_str());
    if (!hModule)
        throw std::runtime_error("lvkernel.dll cannot be loaded");
    const PLUGINSLOT *slots = Slots(hModule);
    report->Add("private memory taken by loading it", (PrivateBytes() - before) / KB, "KB");
    {
        StartedLibrary library(slots);
        const double hosted = PrivateBytes();
        library.Start();
        const double started = PrivateBytes();
        report->Add("private memory taken by its start", (started - hosted) / KB, "KB");
        library.OpenPanel();
        report->Add("private memory taken by the open panel", (PrivateBytes() - started) / KB, "KB");
    }
    FreeLibrary(hModule);
}

void BenchFootprint(REPORT *report)
{
    const std::string path = LibraryPath();
    const double size = FileSize(path);
    const double bitmaps = BitmapSize(path);
    report->Add("lvkernel.dll", size / KB, "KB");
    report->Add("of that bitmaps", bitmaps / KB, "KB");
    report->Add("lvkernel.dll without its bitmaps", (size - bitmaps) / KB, "KB", 200);
    MeasureMemory(report, path);
}
