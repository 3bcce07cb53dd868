// Stand-ins for imported functions: the linker takes these symbols before those of the import libraries.
#include "support/replaced_imports.h"

#include <shellapi.h>

#include <atomic>
#include <cstdio>
#include <mutex>
#include <utility>

static std::mutex s_Lock; // of the recorded calls
static std::vector<std::string> s_Calls;

// No lock and no guarded static on the way of the calls below: the run-time library makes its locks with them.
static std::atomic<Fault> s_Fault = Fault::None;
static std::atomic<int> s_Skip = 0;  // calls that still succeed
static std::atomic<int> s_Fails = 0; // calls that fail then

static std::vector<BOOL> s_ExitResults; // of ExitWindowsEx, next first
static std::function<void()> s_ExitLook;
static std::atomic<bool> s_SkipPauses = false;
static std::atomic<HWND> s_ShellOwner = nullptr;

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

void InjectFault(Fault fault, int nth, int count)
{
    s_Fault = Fault::None;
    s_Skip = nth - 1;
    s_Fails = count;
    s_Fault = fault;
}

static bool ShallFail(Fault fault)
{
    return s_Fault == fault && --s_Skip < 0 && --s_Fails >= 0;
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

HWND ShellExecuteOwner()
{
    return s_ShellOwner;
}

static HINSTANCE WINAPI FakeShellExecute(HWND owner, LPCSTR verb, LPCSTR file, LPCSTR parameters, LPCSTR directory,
                                         INT show)
{
    s_ShellOwner = owner;
    RecordCall("ShellExecute " + OrNull(verb) + "|" + OrNull(file) + "|" + OrNull(parameters) + "|" +
               OrNull(directory) + "|" + std::to_string(show));
    return reinterpret_cast<HINSTANCE>(33);
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

void SkipPauses(bool on)
{
    s_SkipPauses = on;
}

static void WINAPI FakeSleep(DWORD milliseconds)
{
    if (s_SkipPauses && milliseconds >= 20)
        RecordCall("Sleep " + std::to_string(milliseconds));
    else
        RealFunction<decltype(&Sleep)>("kernel32", "Sleep")(milliseconds);
}

static HANDLE WINAPI FakeCreateEvent(SECURITY_ATTRIBUTES *security, BOOL manual, BOOL initial, LPCSTR name)
{
    const auto real = RealFunction<decltype(&CreateEventA)>("kernel32", "CreateEventA");
    return ShallFail(Fault::Event) ? nullptr : real(security, manual, initial, name);
}

static HANDLE WINAPI FakeCreateThread(SECURITY_ATTRIBUTES *security, SIZE_T stack, LPTHREAD_START_ROUTINE start,
                                      void *parameter, DWORD flags, DWORD *id)
{
    const auto real = RealFunction<decltype(&CreateThread)>("kernel32", "CreateThread");
    return ShallFail(Fault::Thread) ? nullptr : real(security, stack, start, parameter, flags, id);
}

static HMODULE WINAPI FakeLoadLibrary(LPCSTR name)
{
    const auto real = RealFunction<decltype(&LoadLibraryA)>("kernel32", "LoadLibraryA");
    return ShallFail(Fault::Library) ? nullptr : real(name);
}

static std::atomic<UINT_PTR> s_HeldTimer = 0;

void HoldTimer(UINT_PTR id)
{
    s_HeldTimer = id;
}

static UINT_PTR WINAPI FakeSetTimer(HWND window, UINT_PTR id, UINT period, TIMERPROC procedure)
{
    constexpr UINT LONGER_THAN_ANY_TEST = 3'600'000;
    if (id != 0 && id == s_HeldTimer)
        period = LONGER_THAN_ANY_TEST;
    const auto real = RealFunction<decltype(&SetTimer)>("user32", "SetTimer");
    return ShallFail(Fault::Timer) ? 0 : real(window, id, period, procedure);
}

// Of the product's own blocks: the run-time library allocates elsewhere.
static void *WINAPI FakeHeapAlloc(HANDLE heap, DWORD flags, SIZE_T size)
{
    const auto real = RealFunction<decltype(&HeapAlloc)>("kernel32", "HeapAlloc");
    return ShallFail(Fault::Memory) ? nullptr : real(heap, flags, size);
}

extern "C" {
extern void *fakeWinExec asm("__imp__WinExec@8");
extern void *fakeShellExecute asm("__imp__ShellExecuteA@24");
extern void *fakeExitWindowsEx asm("__imp__ExitWindowsEx@8");
extern void *fakeSleep asm("__imp__Sleep@4");
extern void *fakeCreateEvent asm("__imp__CreateEventA@16");
extern void *fakeCreateThread asm("__imp__CreateThread@24");
extern void *fakeLoadLibrary asm("__imp__LoadLibraryA@4");
extern void *fakeSetTimer asm("__imp__SetTimer@16");
extern void *fakeHeapAlloc asm("__imp__HeapAlloc@12");
void *fakeWinExec = reinterpret_cast<void *>(FakeWinExec);
void *fakeShellExecute = reinterpret_cast<void *>(FakeShellExecute);
void *fakeExitWindowsEx = reinterpret_cast<void *>(FakeExitWindowsEx);
void *fakeSleep = reinterpret_cast<void *>(FakeSleep);
void *fakeCreateEvent = reinterpret_cast<void *>(FakeCreateEvent);
void *fakeCreateThread = reinterpret_cast<void *>(FakeCreateThread);
void *fakeLoadLibrary = reinterpret_cast<void *>(FakeLoadLibrary);
void *fakeSetTimer = reinterpret_cast<void *>(FakeSetTimer);
void *fakeHeapAlloc = reinterpret_cast<void *>(FakeHeapAlloc);
}
