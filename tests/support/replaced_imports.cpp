// Stand-ins for imported functions: the linker takes these symbols before those of the import libraries.
#include "support/replaced_imports.h"

#include <commctrl.h>
#include <commdlg.h>
#include <shellapi.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <mutex>
#include <utility>

static std::mutex s_Lock; // of the recorded calls
static std::vector<std::string> s_Calls;

static std::vector<BOOL> s_ExitResults; // of ExitWindowsEx, next first
static std::function<void()> s_ExitLook;
static std::atomic<bool> s_SkipPauses = false;
static std::atomic<HWND> s_LastOwner = nullptr;

void RecordCall(const std::string &call)
{
    const std::lock_guard lock(s_Lock);
    s_Calls.push_back(call);
}

std::vector<std::string> TakeRecordedCalls()
{
    const std::lock_guard lock(s_Lock);
    return std::exchange(s_Calls, {});
}

static UINT WINAPI FakeWinExec(LPCSTR command, UINT show)
{
    RecordCall("WinExec " + std::string(command) + " " + std::to_string(show));
    return 33;
}

static std::string OrNull(LPCSTR text)
{
    return text ? text : "(null)";
}

HWND LastOwner()
{
    return s_LastOwner;
}

static HINSTANCE WINAPI FakeShellExecute(HWND owner, LPCSTR verb, LPCSTR file, LPCSTR parameters, LPCSTR directory,
                                         INT show)
{
    s_LastOwner = owner;
    RecordCall("ShellExecute " + OrNull(verb) + "|" + OrNull(file) + "|" + OrNull(parameters) + "|" +
               OrNull(directory) + "|" + std::to_string(show));
    return reinterpret_cast<HINSTANCE>(33);
}

static std::string s_ChosenPath; // of the file dialog; empty: cancelled
static DWORD s_FileDialogError = 0;
static std::function<void()> s_FileDialogLook;

void AnswerFileDialog(const std::string &path, DWORD error, std::function<void()> look)
{
    const std::lock_guard lock(s_Lock);
    s_ChosenPath = path;
    s_FileDialogError = error;
    s_FileDialogLook = std::move(look);
}

static std::atomic<bool> s_RealFileDialog = false;

void ShowRealFileDialog(bool on)
{
    // cppcheck-suppress leakReturnValNotUsed ; until the process ends
    LoadLibraryA("comdlg32"); // nothing else does, with its imports replaced
    s_RealFileDialog = on;
}

static BOOL WINAPI FakeGetOpenFileName(OPENFILENAMEA *dialog)
{
    s_LastOwner = dialog->hwndOwner;
    if (s_RealFileDialog)
        return RealFunction<decltype(&GetOpenFileNameA)>("comdlg32", "GetOpenFileNameA")(dialog);
    std::string filter;
    for (const char *end = dialog->lpstrFilter; *end; end += strlen(end) + 1)
        filter += end + std::string("/");
    char numbers[64];
    snprintf(numbers, sizeof numbers, "%lX", dialog->Flags);
    RecordCall("GetOpenFileName " + std::to_string(dialog->lStructSize) + "|" + filter + "|" +
               std::to_string(dialog->nMaxFile) + "|" + OrNull(dialog->lpstrTitle) + "|" + numbers);
    std::function<void()> look;
    {
        const std::lock_guard lock(s_Lock);
        look = s_FileDialogLook;
    }
    if (look)
        look();
    const std::lock_guard lock(s_Lock);
    const size_t size = std::min<size_t>(s_ChosenPath.size() + 1, dialog->nMaxFile);
    memcpy(dialog->lpstrFile, s_ChosenPath.c_str(), size);
    if (dialog->lpstrFileTitle)
        lstrcpynA(dialog->lpstrFileTitle, s_ChosenPath.c_str() + s_ChosenPath.rfind('\\') + 1,
                  static_cast<int>(dialog->nMaxFileTitle));
    return !s_ChosenPath.empty();
}

static DWORD WINAPI FakeCommDlgExtendedError()
{
    const std::lock_guard lock(s_Lock);
    return s_FileDialogError;
}

void SetExitWindowsResults(std::vector<BOOL> results, std::function<void()> look)
{
    const std::lock_guard lock(s_Lock);
    s_ExitLook = std::move(look);
    s_ExitResults = std::move(results);
}

static BOOL WINAPI FakeExitWindowsEx(UINT flags, DWORD)
{
    char text[32];
    snprintf(text, sizeof text, "ExitWindowsEx %X", flags);
    RecordCall(text);
    std::function<void()> look;
    {
        const std::lock_guard lock(s_Lock);
        look = s_ExitLook;
    }
    if (look)
        look();
    const std::lock_guard lock(s_Lock);
    if (s_ExitResults.empty())
        return TRUE;
    const BOOL result = s_ExitResults.front();
    s_ExitResults.erase(s_ExitResults.begin());
    return result;
}

static std::function<void(const std::string &)> s_RecordPause;

void SkipPauses(bool on, std::function<void(const std::string &)> record)
{
    s_RecordPause = std::move(record);
    s_SkipPauses = on;
}

static std::atomic<bool> s_SkipWaits = false;
static std::atomic<int> s_Waits = 0;

int SkipWaits(bool on)
{
    s_SkipWaits = on;
    return s_Waits.exchange(0);
}

static DWORD WINAPI FakeWaitForSingleObject(HANDLE object, DWORD milliseconds)
{
    constexpr DWORD SECOND = 1000;
    static std::atomic<decltype(&WaitForSingleObject)> real;
    if (!real)
        real = RealFunction<decltype(&WaitForSingleObject)>("kernel32", "WaitForSingleObject");
    if (milliseconds != SECOND || !s_SkipWaits)
        return real.load()(object, milliseconds);
    ++s_Waits;
    return real.load()(object, 0);
}

static std::atomic<bool> s_HurryPauses = false;

void HurryPauses(bool on)
{
    s_HurryPauses = on;
}

static void WINAPI FakeSleep(DWORD milliseconds)
{
    constexpr DWORD SHORT_PAUSE = 20;
    static const auto real = RealFunction<decltype(&Sleep)>("kernel32", "Sleep");
    if (milliseconds < SHORT_PAUSE)
        real(s_HurryPauses ? milliseconds / 10 : milliseconds);
    else if (s_SkipPauses)
        s_RecordPause("Sleep " + std::to_string(milliseconds));
    else
        real(milliseconds);
}

static std::atomic<UINT_PTR> s_HeldTimer = 0;

void HoldTimer(UINT_PTR id)
{
    s_HeldTimer = id;
}

static std::map<UINT_PTR, UINT> s_Periods; // of the armed timers, under the lock

std::map<UINT_PTR, UINT> ArmedTimers()
{
    const std::lock_guard lock(s_Lock);
    return s_Periods;
}

void ForgetTimers()
{
    const std::lock_guard lock(s_Lock);
    s_Periods.clear();
}

static UINT_PTR WINAPI FakeSetTimer(HWND window, UINT_PTR id, UINT period, TIMERPROC procedure)
{
    constexpr UINT LONGER_THAN_ANY_TEST = 3'600'000;
    {
        const std::lock_guard lock(s_Lock);
        s_Periods[id] = period;
    }
    if (id != 0 && (id == s_HeldTimer || s_HeldTimer == ALL_TIMERS))
        period = LONGER_THAN_ANY_TEST;
    const auto real = RealFunction<decltype(&SetTimer)>("user32", "SetTimer");
    return ShallFail(Fault::Timer) ? 0 : real(window, id, period, procedure);
}

static std::atomic<DWORD> s_ControlClasses = 0;

DWORD CommonControlClasses()
{
    return s_ControlClasses;
}

static BOOL WINAPI FakeInitCommonControlsEx(const INITCOMMONCONTROLSEX *classes)
{
    s_ControlClasses = classes->dwICC;
    return RealFunction<decltype(&InitCommonControlsEx)>("comctl32", "InitCommonControlsEx")(classes);
}

static std::atomic<REGSAM> s_RegistryAccess = 0;

REGSAM RegistryAccess()
{
    return s_RegistryAccess;
}

static LONG WINAPI FakeRegOpenKeyEx(HKEY root, LPCSTR path, DWORD options, REGSAM access, HKEY *key)
{
    s_RegistryAccess = access;
    const auto real = RealFunction<decltype(&RegOpenKeyExA)>("advapi32", "RegOpenKeyExA");
    return ShallFail(Fault::Registry) ? ERROR_ACCESS_DENIED : real(root, path, options, access, key);
}

STAND_IN(FakeWinExec, "WinExec@8")
STAND_IN(FakeShellExecute, "ShellExecuteA@24")
STAND_IN(FakeExitWindowsEx, "ExitWindowsEx@8")
STAND_IN(FakeSleep, "Sleep@4")
STAND_IN(FakeSetTimer, "SetTimer@16")
STAND_IN(FakeInitCommonControlsEx, "InitCommonControlsEx@4")
STAND_IN(FakeRegOpenKeyEx, "RegOpenKeyExA@20")
STAND_IN(FakeWaitForSingleObject, "WaitForSingleObject@8")
STAND_IN(FakeGetOpenFileName, "GetOpenFileNameA@4")
STAND_IN(FakeCommDlgExtendedError, "CommDlgExtendedError@0")
