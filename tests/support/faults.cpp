// Stand-ins that pass a call on or let it fail: the linker takes their symbols before those of the import libraries.
#include "support/faults.h"

#include <fcntl.h>
#include <io.h>
#include <winsock.h>

#include <atomic>
#include <cstdarg>
#include <cstring>

// No lock and no guarded static on the way of the calls below: the run-time library makes its locks with them.
static std::atomic<Fault> s_Fault = Fault::None;
static std::atomic<int> s_Skip = 0;  // calls that still succeed
static std::atomic<int> s_Fails = 0; // calls that fail then
static std::atomic<int> s_Failed = 0;
static std::atomic<int> s_Counts[FAULT_KINDS];
static std::atomic<bool> s_PluginOnly = false;
static std::atomic<int> s_Threads = 0; // of the plug-in
// Thread-local without the run-time library, which would allocate: not null while the plug-in's code runs.
static std::atomic<DWORD> s_Owner = TLS_OUT_OF_INDEXES;

const char *FaultName(Fault fault)
{
    static const char *const names[FAULT_KINDS] = {"event",  "thread", "library",  "timer", "memory", "window",
                                                   "dialog", "bitmap", "registry", "file",  "socket", "process"};
    return fault < Fault::None ? names[static_cast<int>(fault)] : "none";
}

Fault FaultOfName(const char *faultName)
{
    for (int kind = 0; kind < FAULT_KINDS; ++kind)
        if (!strcmp(FaultName(static_cast<Fault>(kind)), faultName))
            return static_cast<Fault>(kind);
    return Fault::None;
}

void InjectFault(Fault fault, int nth, int count)
{
    s_Fault = Fault::None;
    s_Skip = nth - 1;
    s_Fails = count;
    s_Failed = 0;
    s_Fault = fault;
}

int FailedCalls()
{
    return s_Failed;
}

std::array<int, FAULT_KINDS> TakeCallCounts()
{
    std::array<int, FAULT_KINDS> counts;
    for (int kind = 0; kind < FAULT_KINDS; ++kind)
        counts[static_cast<size_t>(kind)] = s_Counts[kind].exchange(0);
    return counts;
}

void AimAtPlugin(bool on)
{
    if (s_Owner == TLS_OUT_OF_INDEXES)
        s_Owner = TlsAlloc();
    s_PluginOnly = on;
}

int PluginThreads()
{
    return s_Threads;
}

static void *SetOwner(void *owner)
{
    if (s_Owner == TLS_OUT_OF_INDEXES)
        return nullptr;
    const DWORD error = GetLastError(); // which TlsGetValue clears
    void *before = TlsGetValue(s_Owner);
    TlsSetValue(s_Owner, owner);
    SetLastError(error);
    return before;
}

PluginCode::PluginCode(bool plugin) : m_before(SetOwner(plugin ? this : nullptr)) {}

PluginCode::~PluginCode()
{
    SetOwner(m_before);
}

static bool IsMeant()
{
    if (!s_PluginOnly)
        return true;
    const DWORD error = GetLastError();
    const bool plugin = TlsGetValue(s_Owner) != nullptr;
    SetLastError(error);
    return plugin;
}

bool ShallFail(Fault fault)
{
    if (!IsMeant())
        return false;
    ++s_Counts[static_cast<int>(fault)];
    if (s_Fault != fault || --s_Skip >= 0 || --s_Fails < 0)
        return false;
    ++s_Failed;
    return true;
}

// ---- Functions that differ by their names alone -------------------------------------------------------------------

// The body of a stand-in, for whatever arguments its function has.
template <typename FUNCTION>
struct StandIn;

template <typename RESULT, typename... ARGUMENTS>
struct StandIn<RESULT(WINAPI *)(ARGUMENTS...)> {
    template <Fault FAULT, DWORD ERROR_CODE, LONG_PTR FAILURE, typename REAL>
    static RESULT WINAPI Call(ARGUMENTS... arguments)
    {
        if (ShallFail(FAULT)) {
            SetLastError(ERROR_CODE);
            return (RESULT)(FAILURE); // a number or a handle, as the function has it
        }
        return REAL::Get()(arguments...);
    }
};

// NOLINTBEGIN(bugprone-macro-parentheses): names cannot stand in parentheses.
// CAN_FAIL(kind, DLL, function, size of its arguments, what it returns then, the error that it leaves)
#define CAN_FAIL(KIND, LIBRARY, NAME, BYTES, FAILURE, ERROR_CODE)                                                      \
    struct Real##NAME {                                                                                                \
        static decltype(&NAME) Get()                                                                                   \
        {                                                                                                              \
            static std::atomic<decltype(&NAME)> real;                                                                  \
            if (!real)                                                                                                 \
                real = RealFunction<decltype(&NAME)>(LIBRARY, #NAME);                                                  \
            return real;                                                                                               \
        }                                                                                                              \
    };                                                                                                                 \
    extern "C" {                                                                                                       \
    extern void *fail##NAME asm("__imp__" #NAME "@" #BYTES);                                                           \
    void *fail##NAME = reinterpret_cast<void *>(                                                                       \
        &StandIn<decltype(&NAME)>::Call<Fault::KIND, ERROR_CODE, LONG_PTR(FAILURE), Real##NAME>);                      \
    }
// NOLINTEND(bugprone-macro-parentheses)

CAN_FAIL(Event, "kernel32", CreateEventA, 16, 0, ERROR_NO_SYSTEM_RESOURCES)
CAN_FAIL(Library, "kernel32", LoadLibraryA, 4, 0, ERROR_MOD_NOT_FOUND)
CAN_FAIL(Window, "user32", CreateWindowExA, 48, 0, ERROR_NOT_ENOUGH_MEMORY)
CAN_FAIL(Window, "user32", RegisterClassExA, 4, 0, ERROR_NOT_ENOUGH_MEMORY)
CAN_FAIL(Dialog, "user32", CreateDialogParamA, 20, 0, ERROR_NOT_ENOUGH_MEMORY)
CAN_FAIL(Dialog, "user32", MessageBoxA, 16, 0, ERROR_NOT_ENOUGH_MEMORY)
CAN_FAIL(Registry, "advapi32", RegCreateKeyExA, 36, ERROR_ACCESS_DENIED, 0)
CAN_FAIL(Registry, "advapi32", RegDeleteValueA, 8, ERROR_ACCESS_DENIED, 0)
CAN_FAIL(Registry, "advapi32", RegQueryValueExA, 24, ERROR_ACCESS_DENIED, 0)
CAN_FAIL(Registry, "advapi32", RegSetValueExA, 24, ERROR_DISK_FULL, 0)
CAN_FAIL(File, "kernel32", DeleteFileA, 4, 0, ERROR_ACCESS_DENIED)
CAN_FAIL(File, "kernel32", ReadFile, 20, 0, ERROR_LOCK_VIOLATION)
CAN_FAIL(File, "kernel32", SetEndOfFile, 4, 0, ERROR_DISK_FULL)
CAN_FAIL(File, "kernel32", WriteFile, 20, 0, ERROR_DISK_FULL)
CAN_FAIL(File, "kernel32", WritePrivateProfileSectionA, 12, 0, ERROR_DISK_FULL)
CAN_FAIL(Process, "kernel32", OpenProcess, 12, 0, ERROR_ACCESS_DENIED)
CAN_FAIL(Process, "advapi32", OpenProcessToken, 12, 0, ERROR_ACCESS_DENIED)
CAN_FAIL(Socket, "wsock32", WSAStartup, 8, WSASYSNOTREADY, 0)
CAN_FAIL(Socket, "wsock32", bind, 12, -1, WSAEADDRINUSE)
CAN_FAIL(Socket, "wsock32", connect, 12, -1, WSAECONNREFUSED)
CAN_FAIL(Socket, "wsock32", gethostbyname, 4, 0, WSAHOST_NOT_FOUND)
CAN_FAIL(Socket, "wsock32", gethostname, 8, -1, WSAENETDOWN)
CAN_FAIL(Socket, "wsock32", ioctlsocket, 12, -1, WSAENETDOWN)
CAN_FAIL(Socket, "wsock32", recv, 16, -1, WSAECONNRESET)
CAN_FAIL(Socket, "wsock32", recvfrom, 24, -1, WSAECONNRESET)
CAN_FAIL(Socket, "wsock32", select, 20, -1, WSAENETDOWN)
CAN_FAIL(Socket, "wsock32", send, 16, -1, WSAECONNRESET)
CAN_FAIL(Socket, "wsock32", setsockopt, 20, -1, WSAENETDOWN)
CAN_FAIL(Socket, "wsock32", socket, 12, -1, WSAEMFILE)

// ---- Functions with a body of their own ---------------------------------------------------------------------------

struct THREADSTART {
    LPTHREAD_START_ROUTINE lpfnStart;
    void *lpParameter;
};

static DWORD WINAPI RunThread(void *parameter)
{
    const THREADSTART start = *static_cast<THREADSTART *>(parameter);
    delete static_cast<THREADSTART *>(parameter);
    const PluginCode inside;
    const DWORD exitCode = start.lpfnStart(start.lpParameter);
    --s_Threads;
    return exitCode;
}

// The run-time library starts its threads without this: all that come here are the plug-in's.
static HANDLE WINAPI FailCreateThread(SECURITY_ATTRIBUTES *security, SIZE_T stack, LPTHREAD_START_ROUTINE start,
                                      void *parameter, DWORD flags, DWORD *id)
{
    if (ShallFail(Fault::Thread)) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return nullptr;
    }
    ++s_Threads;
    auto *block = new THREADSTART{start, parameter};
    const HANDLE thread =
        RealFunction<decltype(&CreateThread)>("kernel32", "CreateThread")(security, stack, RunThread, block, flags, id);
    if (!thread) {
        delete block;
        --s_Threads;
    }
    return thread;
}

// With the mode only when a file is made; the product makes none this way.
static int FailOpen(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const int mode = flags & _O_CREAT ? va_arg(arguments, int) : 0;
    va_end(arguments);
    if (ShallFail(Fault::File))
        return -1;
    return RealFunction<int (*)(const char *, int, ...)>("msvcrt", "_open")(path, flags, mode);
}

// Without a section it only drops the system's copy of the file, and has no result to speak of.
static BOOL WINAPI FailWritePrivateProfileString(LPCSTR section, LPCSTR key, LPCSTR value, LPCSTR path)
{
    if (section && ShallFail(Fault::File)) {
        SetLastError(ERROR_DISK_FULL);
        return FALSE;
    }
    const auto real = RealFunction<decltype(&WritePrivateProfileStringA)>("kernel32", "WritePrivateProfileStringA");
    return real(section, key, value, path);
}

STAND_IN(FailCreateThread, "CreateThread@24")
STAND_IN(FailOpen, "_open")
STAND_IN(FailWritePrivateProfileString, "WritePrivateProfileStringA@16")
