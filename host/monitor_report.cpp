// What --list and --read print and --report writes.
#include "host/monitor_report.h"

#include <functional>
#include <thread>

#include "host/base/console.h"
#include "host/base/text.h"
#include "host/plugin_loader.h"
#include "host/windows_monitors/monitor_description.h"
#include "monitor/vcp_codes.h"

// ---- What the program runs on ---------------------------------------------------------------------------------------

typedef LONG(WINAPI *RTLGETVERSION)(OSVERSIONINFOEXW *);
typedef BOOL(WINAPI *ISWOW64PROCESS)(HANDLE, BOOL *);

template <typename FUNCTION>
static FUNCTION FindFunction(const wchar_t *module, const char *name)
{
    const HMODULE handle = GetModuleHandleW(module);
    return handle ? reinterpret_cast<FUNCTION>(reinterpret_cast<void *>(GetProcAddress(handle, name))) : nullptr;
}

// GetVersionEx tells newer systems' programs an older version.
static std::string WindowsVersion()
{
    OSVERSIONINFOEXW version = {};
    version.dwOSVersionInfoSize = sizeof version;
    const auto getVersion = FindFunction<RTLGETVERSION>(L"ntdll.dll", "RtlGetVersion");
    if (!getVersion || getVersion(&version) != 0)
        GetVersionExW(reinterpret_cast<OSVERSIONINFOW *>(&version));
    BOOL isOn64 = FALSE;
    if (const auto isWow64 = FindFunction<ISWOW64PROCESS>(L"kernel32.dll", "IsWow64Process"))
        isWow64(GetCurrentProcess(), &isOn64);
    return Format("%lu.%lu.%lu %s ", version.dwMajorVersion, version.dwMinorVersion, version.dwBuildNumber,
                  Narrow(version.szCSDVersion).c_str()) +
           (isOn64 ? "(64 bit)" : "(32 bit)") + Format(", code page %u", GetACP()) +
           (FindFunction<FARPROC>(L"ntdll.dll", "wine_get_version") ? ", Wine" : "") +
           (GetSystemMetrics(SM_REMOTESESSION) ? ", remote session" : "");
}

// The version resource is little more than the fixed block that begins with this signature.
static std::string FileVersion(HMODULE module)
{
    const HRSRC found = FindResourceA(module, MAKEINTRESOURCEA(VS_VERSION_INFO), RT_VERSION);
    const HGLOBAL loaded = found ? LoadResource(module, found) : nullptr;
    const BYTE *bytes = loaded ? static_cast<const BYTE *>(LockResource(loaded)) : nullptr;
    const DWORD size = bytes ? SizeofResource(module, found) : 0;
    for (DWORD at = 0; at + sizeof(VS_FIXEDFILEINFO) <= size; at += 4) {
        const VS_FIXEDFILEINFO *info = reinterpret_cast<const VS_FIXEDFILEINFO *>(bytes + at);
        if (info->dwSignature == VS_FFI_SIGNATURE)
            return Format("%u.%u, product %u.%u", HIWORD(info->dwFileVersionMS), LOWORD(info->dwFileVersionMS),
                          HIWORD(info->dwProductVersionMS), LOWORD(info->dwProductVersionMS));
    }
    return "without version";
}

static std::string PluginVersion(const std::string &path)
{
    PLUGIN plugin;
    std::string error;
    if (!LoadPlugin(path, &plugin, &error))
        return "cannot be loaded";
    std::string version = Narrow(GetPluginTexts(&plugin).version) + ", file " + FileVersion(plugin.hModule);
    UnloadPlugin(&plugin);
    return version;
}

static std::string SystemText(const OPTIONS &options)
{
    return "Windows   " + WindowsVersion() + "\n" + "trayhub   " + FileVersion(GetModuleHandleW(nullptr)) + "\n" +
           "plug-in   " + PluginVersion(options.plugin) + "\n";
}

// ---- The monitors ---------------------------------------------------------------------------------------------------

static std::string DisplaysText()
{
    std::string text;
    for (const DISPLAY &display : ListDisplays())
        text += Format("Display %s: %u monitor devices in use\n", display.device.c_str(),
                       static_cast<unsigned>(display.monitors.size()));
    return text;
}

typedef std::function<void(const std::string &text)> TELL;

// Asks all monitors at the same time, as each may take seconds, and tells of each as soon as it and those before it are
// known.
template <typename ANSWER, typename ASK, typename DESCRIBE>
static void AskAll(int count, const ASK &ask, const DESCRIBE &describe)
{
    std::vector<ANSWER> answers(static_cast<size_t>(count));
    std::vector<std::thread> threads;
    for (int i = 0; i < count; i++)
        threads.emplace_back([&answers, &ask, i] { answers[static_cast<size_t>(i)] = ask(i); });
    for (int i = 0; i < count; i++) {
        threads[static_cast<size_t>(i)].join();
        describe(i, answers[static_cast<size_t>(i)]);
    }
}

struct OUTCOME {
    bool found;   // at least one monitor
    bool isStuck; // the driver hangs: the process must be ended by force
};

// How many there are, and why not more.
static int TellCount(WINDOWSMONITORS *monitors, const TELL &tell)
{
    const int count = static_cast<int>(FoundWindowsMonitors(monitors).size());
    tell(Format(count == 1 ? "%d monitor\n" : "%d monitors\n", count));
    // A display without monitors is told even where others have some.
    const std::string trouble = WindowsMonitorsTroubleInEnglish(monitors), finding = FindingTrouble(monitors);
    if (!trouble.empty())
        tell(trouble + "\n");
    if (count > 0 && !finding.empty())
        tell(finding + "\n");
    return count;
}

static OUTCOME TellMonitors(const OPTIONS &options, bool isPrivate, const TELL &tell)
{
    WINDOWSMONITOROPTIONS source = DefaultWindowsMonitorOptions();
    source.fresh = options.fresh;
    WINDOWSMONITORS *monitors = OpenWindowsMonitors(source);
    FindWindowsMonitors(monitors);
    const int count = TellCount(monitors, tell);
    AskAll<MONITORANSWERS>(
        count, [&](int i) { return AskMonitor(monitors, i); },
        [&](int i, const MONITORANSWERS &answers) { tell("\n" + DescribeMonitor(i + 1, answers, isPrivate)); });
    return {count > 0, !CloseWindowsMonitors(monitors)};
}

static int End(const OUTCOME &outcome)
{
    const int status = outcome.found ? 0 : 1;
    if (outcome.isStuck)
        TerminateProcess(GetCurrentProcess(), static_cast<UINT>(status));
    return status;
}

// Bit by bit where that is seen; a message box is one.
static int TellOnConsole(const std::function<OUTCOME(const TELL &tell)> &work)
{
    std::string text;
    const OUTCOME outcome = work([&](const std::string &piece) {
        if (HasConsole())
            ConsoleText(piece);
        else
            text += piece;
    });
    if (!HasConsole())
        ConsoleText(text);
    return End(outcome);
}

int ListMonitors(const OPTIONS &options)
{
    return TellOnConsole([&](const TELL &tell) { return TellMonitors(options, false, tell); });
}

int ReadMonitors(const OPTIONS &options)
{
    const BYTE code = static_cast<BYTE>(options.readCode);
    return TellOnConsole([&](const TELL &tell) -> OUTCOME {
        WINDOWSMONITOROPTIONS source = DefaultWindowsMonitorOptions();
        source.keptCapabilitiesOnly = true;
        WINDOWSMONITORS *monitors = OpenWindowsMonitors(source);
        FindWindowsMonitors(monitors);
        const std::vector<WINDOWSMONITOR> found = CopyWindowsMonitors(monitors);
        bool isAnswered = false;
        if (found.empty())
            TellCount(monitors, tell);
        AskAll<ACCESSANSWER>(
            static_cast<int>(found.size()),
            [&](int i) { return ReadWindowsMonitor(found[static_cast<size_t>(i)], code, ACCESS_PATIENCE); },
            [&](int i, const ACCESSANSWER &answer) {
                isAnswered = isAnswered || !answer.error;
                const std::string model = MonitorModel("", found[static_cast<size_t>(i)].found);
                tell(Format("Monitor %d (%s): %02X %s ", i + 1, model.c_str(), code, VcpName(code)) +
                     (answer.error ? AccessErrorText(answer.error) : Format("%u of %u", answer.value, answer.maximum)) +
                     "\n");
            });
        return {isAnswered, !CloseWindowsMonitors(monitors)};
    });
}

int WriteMonitorReport(const OPTIONS &options)
{
    const HANDLE file =
        CreateFileW(Widen(options.report).c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        ConsoleError(options.report + ": the report cannot be written: " + SystemErrorText(GetLastError()));
        return 2;
    }
    std::string text = "\xEF\xBB\xBF" + SystemText(options) + DisplaysText();
    const OUTCOME outcome = TellMonitors(options, true, [&](const std::string &piece) { text += piece; });
    DWORD written = 0;
    const bool done = WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr) != 0;
    CloseHandle(file);
    if (!done)
        ConsoleError(options.report + ": the report could not be written");
    ConsoleLine(done ? "The report is in " + options.report : "");
    return done ? End(outcome) : 2;
}
