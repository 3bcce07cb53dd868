// trayhub_bench.exe: what the host costs with real monitors behind it. They stand behind the stand-in for dxva2.dll,
// which lies beside the program; all else is what trayhub.exe is made of.
//
//   trayhub_bench          measures and prints
//   trayhub_bench --host   is the host for a measurement: with the panel, and settings of its own
#include <windows.h>

#include <commctrl.h>
#include <fcntl.h>
#include <io.h>
#include <psapi.h>

#include <atomic>
#include <cstdio>
#include <cstring>
#include <memory>
#include <stdexcept>

#include "bench/measure.h"
#include "bench/report.h"
#include "host/base/console.h"
#include "host/base/program_path.h"
#include "host/base/text.h"
#include "host/host_app.h"
#include "monitor/vcp_codes.h"
#include "panel/resources/resource.h"
#include "tests/dxva2_stand_in/stand_in.h"
#include "tests/support/handle_count.h"
#include "tour/tour_settings.h"

// ---- The host -------------------------------------------------------------------------------------------------------

static int RunPrivateHost(HOSTAPP *app, const std::vector<std::string> &words)
{
    std::string error;
    app->hInstance = GetModuleHandleW(nullptr);
    for (const char *left : {"\\profile.ini", "\\ontimer.ini"}) // by a measurement that was ended on the way
        DeleteFileW(Widen(ProgramFolder() + left).c_str());
    if (ParseOptions(words, &app->options, &error) && OpenTourSettings(&error)) {
        const int status = RunHost(app);
        CloseTourSettings();
        return status;
    }
    ConsoleError(error);
    return 2;
}

// ---- Start ----------------------------------------------------------------------------------------------------------

constexpr int START_ROUNDS = 5;
static const wchar_t s_szFirstMonitor[] = L"1: U3011 ("; // as the panel's list has it, with its input behind
static const wchar_t s_szContrast[] = L"75";             // of that monitor

struct PANELSEARCH {
    DWORD process;
    HWND panel;
};

static BOOL CALLBACK TakeIfPanel(HWND hWnd, LPARAM data)
{
    PANELSEARCH *search = reinterpret_cast<PANELSEARCH *>(data);
    DWORD process = 0;
    GetWindowThreadProcessId(hWnd, &process);
    if (process != search->process || !IsWindowVisible(hWnd) || !GetDlgItem(hWnd, IDC_PANEL_TREE))
        return TRUE;
    search->panel = hWnd;
    return FALSE;
}

static HWND FindPanelOf(DWORD process)
{
    PANELSEARCH search = {process, nullptr};
    EnumWindows(TakeIfPanel, reinterpret_cast<LPARAM>(&search));
    return search.panel;
}

static std::wstring TextIn(HWND dialog, int control)
{
    wchar_t text[128] = L"";
    SendMessageW(GetDlgItem(dialog, control), WM_GETTEXT, ARRAYSIZE(text), reinterpret_cast<LPARAM>(text));
    return text;
}

// The item of the colour page lies below that of the applications, below the root.
static void ChooseColorPage(HWND panel)
{
    const HWND tree = GetDlgItem(panel, IDC_PANEL_TREE);
    LRESULT item = SendMessageW(tree, TVM_GETNEXTITEM, TVGN_ROOT, 0);
    for (int level = 0; level < 2; level++)
        item = SendMessageW(tree, TVM_GETNEXTITEM, TVGN_CHILD, item);
    SendMessageW(tree, TVM_SELECTITEM, TVGN_CARET, item);
}

static bool ShowsContrast(HWND panel)
{
    HWND page = nullptr;
    while ((page = FindWindowExW(panel, page, L"#32770", nullptr)) != nullptr)
        if (TextIn(page, IDC_COLOR_CONTRAST_EDIT) == s_szContrast)
            return true;
    return false;
}

static PROCESS_INFORMATION StartHostProcess()
{
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    std::wstring line = L"\"" + Widen(ProgramFolder()) + L"\\trayhub_bench.exe\" --host";
    if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process))
        throw std::runtime_error("the host cannot be started: " + SystemErrorText(GetLastError()));
    return process;
}

static void EndHostProcess(const PROCESS_INFORMATION &process)
{
    PostMessageW(FindWindowW(L"TrayhubHost", nullptr), WM_CLOSE, 0, 0);
    if (WaitForSingleObject(process.hProcess, 10000) != WAIT_OBJECT_0)
        TerminateProcess(process.hProcess, 1);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
}

static void MeasureStart(REPORT *report)
{
    std::vector<double> lists, pages;
    for (int round = 0; round < START_ROUNDS; round++) {
        const double start = NowUs();
        const PROCESS_INFORMATION process = StartHostProcess();
        HWND panel = nullptr;
        WaitUntil("the panel's list of monitors", [&] {
            panel = FindPanelOf(process.dwProcessId);
            return panel && TextIn(panel, IDC_PANEL_MONITOR).rfind(s_szFirstMonitor, 0) == 0;
        });
        lists.push_back((NowUs() - start) / 1000);
        ChooseColorPage(panel);
        WaitUntil("the right contrast on the colour page", [&] { return ShowsContrast(panel); });
        pages.push_back((NowUs() - start) / 1000);
        EndHostProcess(process);
    }
    report->Add("process to the first monitor and its input in the panel", Median(lists), "ms");
    report->Add("the same, its colour page chosen, to the right contrast", Median(pages), "ms");
}

// ---- An hour of polling ---------------------------------------------------------------------------------------------

constexpr int POLLED_MONITORS = 10;
constexpr int HOUR_OF_POLLS = 3600 / 2; // the plug-in looks every two seconds for pressed buttons
constexpr int FIRST_POLLS = 50;         // until all that comes into being with use is there

template <typename FUNCTION>
static FUNCTION FindInStandIn(const char *name)
{
    const auto function =
        reinterpret_cast<FUNCTION>(reinterpret_cast<void *>(GetProcAddress(LoadLibraryW(L"dxva2.dll"), name)));
    if (!function)
        throw std::runtime_error("dxva2.dll is not the stand-in");
    return function;
}

static void OpenTenMonitors()
{
    std::string paths;
    for (int i = 0; i < POLLED_MONITORS; i++)
        paths += (i ? "," : "") + ProgramFolder() + "\\stand_in\\08-mp76.ini";
    if (!FindInStandIn<decltype(&StandInOpen)>("StandInOpen")(paths.c_str()))
        throw std::runtime_error(paths + " cannot be read");
}

// A request as the plug-in makes it. The window's thread.
static void Ask(HOSTAPP *app, DWORD monitor, WORD command, BYTE code, const std::vector<DWORD> &more)
{
    std::vector<BYTE> payload;
    AppendDword(&payload, monitor);
    for (const DWORD number : more)
        AppendDword(&payload, number);
    PACKET packet = MakePacket({PLUGIN_ENDPOINT_ID, ENDPOINT_CLASS, ENDPOINT_SUBCLASS_PLUGIN}, HostEndpoint(), command,
                               code, 100 + monitor, payload);
    packet.header.lpData = PacketData(&packet);
    RouterTakePacket(&app->plugin.router, &packet.header);
}

// As the plug-in does it, but all monitors at a time.
static void Poll(HOSTAPP *app, int polls)
{
    const auto accesses = FindInStandIn<decltype(&StandInAccesses)>("StandInAccesses");
    for (int poll = 0; poll < polls; poll++) {
        const DWORD before = accesses(POLLED_MONITORS - 1);
        CallOnWindow(&app->window, [&] {
            for (DWORD monitor = 0; monitor < POLLED_MONITORS; monitor++)
                Ask(app, monitor, HOST_GET_VCP, VCP_BUTTON_PRESSED, {});
        });
        WaitUntil("the monitors' answers", [&] { return IsLinkQuiet(&app->plugin.router, 0); });
        if (accesses(POLLED_MONITORS - 1) == before)
            throw std::runtime_error("a poll did not reach its monitor");
    }
}

// ---- An hour of DirectLink ------------------------------------------------------------------------------------------

constexpr int LINK_ROUNDS = 15; // of those of an hour: it passes as slowly as on a desk
constexpr int HOUR_OF_ROUNDS = 3600 / 2;

// While a registered program stays in front, DirectLink writes its values every two seconds, whether or not the monitor
// has them already. Gives the accesses that come of an hour of that.
static double AccessesOfAnHourOfLink(HOSTAPP *app)
{
    static constexpr struct {
        BYTE code;
        DWORD value;
    } values[] = {{VCP_BRIGHTNESS, 50}, {VCP_CONTRAST, 60}, {VCP_RED_GAIN, 70}, {VCP_GREEN_GAIN, 80}};
    const auto accesses = FindInStandIn<decltype(&StandInAccesses)>("StandInAccesses");
    const auto writeAll = [&] {
        CallOnWindow(&app->window, [&] {
            for (const auto &value : values)
                Ask(app, 0, HOST_SET_VCP, value.code, {value.value});
        });
        WaitUntil("the writes", [&] { return IsLinkQuiet(&app->plugin.router, 0); });
    };
    writeAll(); // which the monitor has not yet
    const DWORD before = accesses(0);
    for (int round = 0; round < LINK_ROUNDS; round++) {
        SleepEx(2000, FALSE);
        writeAll();
    }
    return static_cast<double>(accesses(0) - before) * HOUR_OF_ROUNDS / LINK_ROUNDS;
}

// ---- Memory and handles ---------------------------------------------------------------------------------------------

static double PrivateKilobytes()
{
    PROCESS_MEMORY_COUNTERS counters = {};
    counters.cb = sizeof counters;
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return static_cast<double>(counters.PagefileUsage) / 1024;
}

// What the system takes for a thread that does nothing: most of the host's memory is that of its threads.
static double KilobytesOfThread()
{
    constexpr int THREADS = 10;
    const double before = PrivateKilobytes();
    const HANDLE hEnd = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    std::vector<std::thread> threads;
    std::atomic<int> running{0};
    for (int i = 0; i < THREADS; i++) {
        threads.emplace_back([&] {
            running++;
            WaitForSingleObject(hEnd, INFINITE);
        });
    }
    WaitUntil("the threads", [&] { return running == THREADS; });
    const double after = PrivateKilobytes();
    SetEvent(hEnd);
    for (std::thread &thread : threads)
        thread.join();
    CloseHandle(hEnd);
    return (after - before) / THREADS;
}

static void MeasurePolling(REPORT *report)
{
    OpenTenMonitors();
    report->Add("private memory of a process without a host", PrivateKilobytes(), "KB");
    report->Add("and of each thread that does nothing", KilobytesOfThread(), "KB");
    HOSTAPP app = {};
    std::thread host([&] { RunPrivateHost(&app, {"--fresh", "--no-tray"}); });
    WaitUntil("the start-up", [&] { return HasNotice(&app.plugin.router, HOST_NOTICE_STARTED); });
    WaitUntil("its end", [&] { return IsLinkQuiet(&app.plugin.router, QUIET_TIME); });
    Poll(&app, FIRST_POLLS);
    const double memory = PrivateKilobytes(), handles = CountHandles(), start = NowUs();
    Poll(&app, HOUR_OF_POLLS);
    const double milliseconds = (NowUs() - start) / 1000;
    report->Add("the same after the start of the host with ten monitors", memory, "KB");
    report->Add("the same after an hour's polls of them", PrivateKilobytes(), "KB");
    report->Add("handles after the start of the host with ten monitors", handles, "");
    report->Add("the same after an hour's polls of them", CountHandles(), "");
    report->Add("one of these polls, of all monitors at a time", milliseconds / HOUR_OF_POLLS, "ms");
    report->Add("writes of an hour of DirectLink, of values that a monitor has", 4.0 * HOUR_OF_ROUNDS, "");
    report->Add("accesses to it that come of them", AccessesOfAnHourOfLink(&app), "");
    EndHost(&app.window, 0);
    host.join();
}

int main(int count, char **words)
{
    if (count > 1 && strcmp(words[1], "--host") == 0) {
        OpenConsole(false);
        HOSTAPP app = {};
        return RunPrivateHost(&app, {"--fresh", "--no-tray", "--panel"});
    }
    _setmode(_fileno(stdout), _O_BINARY); // plain line feeds: the output is read outside Wine
    REPORT report = {"host", "trayhub.exe on monitors that it takes for real ones", {}, ""};
    try {
        MeasureStart(&report);
        MeasurePolling(&report);
    } catch (const std::exception &error) {
        report.failure = error.what();
    }
    PrintTable(report);
    fflush(stdout);
    return report.failure.empty() ? 0 : 1;
}
