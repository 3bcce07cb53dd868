// The bus, the memory, and the functions through which they are reached.
#include "support/fake_ddc_driver.h"

#include "support/replaced_imports.h"

#include <winioctl.h>

#include <atomic>
#include <cstdio>
#include <cstring>
#include <string>

static std::atomic<FakeDdcDriver *> s_Driver = nullptr;
static std::atomic<HANDLE> s_Handle = nullptr; // the one open handle, a real one

static const char s_DeviceWin9x[] = "\\\\.\\NRVDDCCI.VXD";
static const char s_DeviceNt[] = "\\\\.\\DDCCI_IO";

enum : int { START = 1, STOP = 2, READ = 4, WRITE = 5, END_READ = 10 };
constexpr DWORD STATUS_REFUSED = 1;
constexpr BYTE MEMORY_ADDRESS = 0xA0;

FakeDdcDriver::FakeDdcDriver() : m_before(s_Driver)
{
    s_Driver = this;
}

FakeDdcDriver::~FakeDdcDriver()
{
    s_Driver = m_before;
}

static std::string Format(const char *format, auto... values)
{
    char text[128];
    snprintf(text, sizeof text, format, values...);
    return text;
}

// ---- Bus ----------------------------------------------------------------------------------------------------------

// A byte from the plug-in: an address, an offset or data, by what came before.
DWORD FakeDdcDriver::TakeByte(BYTE value)
{
    switch (m_bus) {
    case Bus::Address:
        if ((value & 0xFE) != MEMORY_ADDRESS)
            return STATUS_REFUSED; // nobody there
        m_bus = value & 1 ? Bus::Read : Bus::Offset;
        return 0;
    case Bus::Offset:
        m_offset = value;
        m_bus = Bus::Write;
        return 0;
    case Bus::Write:
        if (!writeProtected)
            memory[m_offset] = value;
        ++m_offset;
        return 0;
    default:
        RecordCall("illegal write");
        return STATUS_REFUSED;
    }
}

// Result: the status.
DWORD FakeDdcDriver::Work(int entry, const BYTE *bytes, BYTE *buffer, DWORD count)
{
    const auto goFrom = [this](bool legal, Bus next, const char *what) {
        if (!legal)
            RecordCall(std::string("illegal ") + what);
        m_bus = legal ? next : m_bus;
        return legal ? 0 : STATUS_REFUSED;
    };
    switch (entry) {
    case START:
        return goFrom(m_bus == Bus::Idle || m_bus == Bus::Write, Bus::Address, "start");
    case WRITE:
        return TakeByte(bytes[0]);
    case READ:
        if (const DWORD status = goFrom(m_bus == Bus::Read, Bus::ReadDone, "read"))
            return status;
        for (DWORD i = 0; i < count; ++i)
            buffer[i] = memory[m_offset++];
        return 0;
    case END_READ:
        return goFrom(m_bus == Bus::ReadDone, Bus::Ended, "end of read");
    default: // a stop frees the bus in any state that a start led to
        return goFrom(m_bus != Bus::Idle, Bus::Idle, "stop");
    }
}

// ---- Device -------------------------------------------------------------------------------------------------------

HANDLE FakeDdcDriver::Open(const char *name, DWORD access, DWORD share, DWORD disposition, DWORD flags)
{
    RecordCall(Format("open %s %lX %lX %lX %lX", name, access, share, disposition, flags));
    if (!loads) {
        SetLastError(ERROR_FILE_NOT_FOUND);
        return INVALID_HANDLE_VALUE;
    }
    if (s_Handle != nullptr)
        RecordCall("illegal second open");
    m_bus = Bus::Idle;
    s_Handle = CreateSemaphoreA(nullptr, 0, 1, nullptr);
    return s_Handle;
}

void FakeDdcDriver::Close()
{
    RecordCall("close");
}

static int EntryOfCode(DWORD code)
{
    for (const int entry : {START, STOP, READ, WRITE, END_READ}) {
        const DWORD function = 0x920 + static_cast<DWORD>(entry) - 1;
        const DWORD nt = CTL_CODE(0x9C40U, function, METHOD_BUFFERED, FILE_ANY_ACCESS);
        OSVERSIONINFOA version = {};
        version.dwOSVersionInfoSize = sizeof version;
        GetVersionExA(&version);
        if (code == (version.dwPlatformId == VER_PLATFORM_WIN32_NT ? nt : static_cast<DWORD>(entry)))
            return entry;
    }
    return 0;
}

BOOL FakeDdcDriver::Control(DWORD code, void *input, DWORD inputSize, void *output, DWORD outputSize,
                            const DWORD *returned)
{
    struct {
        DWORD port, count;
        BYTE *buffer;
        DWORD status, result;
    } block;
    const int entry = EntryOfCode(code);
    if (entry == 0 || !input || input != output || inputSize != 20 || outputSize != 20 || !returned) {
        RecordCall("bad call");
        return FALSE;
    }
    memcpy(&block, input, sizeof block);
    if ((entry == WRITE && (block.count != 1 || !block.buffer)) || (entry == READ && !block.buffer)) {
        RecordCall("bad call");
        return FALSE;
    }
    RecordCall(entry == START   ? "start"
               : entry == WRITE ? Format("write %02X", block.buffer[0])
               : entry == READ  ? Format("read %lu", block.count)
               : entry == STOP  ? "stop"
                                : "end read");
    const auto outcome = outcomes.find(++m_calls);
    if (outcome != outcomes.end() && !outcome->second.status)
        return FALSE;
    DWORD status = 0;
    if (outcome == outcomes.end() || entry == START)
        status = Work(entry, block.buffer, block.buffer, block.count);
    if (outcome != outcomes.end())
        status = *outcome->second.status;
    if (status != 0 || !quiet)
        block.status = status;
    memcpy(output, &block, sizeof block);
    return TRUE;
}

// ---- Stand-ins ----------------------------------------------------------------------------------------------------

static HANDLE WINAPI FakeCreateFile(LPCSTR name, DWORD access, DWORD share, SECURITY_ATTRIBUTES *security,
                                    DWORD disposition, DWORD flags, HANDLE templateFile)
{
    FakeDdcDriver *driver = s_Driver;
    if (ShallFail(Fault::File)) {
        SetLastError(ERROR_ACCESS_DENIED);
        return INVALID_HANDLE_VALUE;
    }
    if (driver && name && (!strcmp(name, s_DeviceWin9x) || !strncmp(name, s_DeviceNt, strlen(s_DeviceNt))))
        return driver->Open(name, access, share, disposition, flags);
    const auto real = RealFunction<decltype(&CreateFileA)>("kernel32", "CreateFileA");
    return real(name, access, share, security, disposition, flags, templateFile);
}

static BOOL WINAPI FakeDeviceIoControl(HANDLE device, DWORD code, void *input, DWORD inputSize, void *output,
                                       DWORD outputSize, DWORD *returned, OVERLAPPED *overlapped)
{
    FakeDdcDriver *driver = s_Driver;
    if (driver && device && device == s_Handle)
        return driver->Control(code, input, inputSize, output, outputSize, returned);
    const auto real = RealFunction<decltype(&DeviceIoControl)>("kernel32", "DeviceIoControl");
    return real(device, code, input, inputSize, output, outputSize, returned, overlapped);
}

static BOOL WINAPI FakeCloseHandle(HANDLE handle)
{
    FakeDdcDriver *driver = s_Driver;
    HANDLE own = handle;
    if (driver && handle && s_Handle.compare_exchange_strong(own, nullptr))
        driver->Close();
    return RealFunction<decltype(&CloseHandle)>("kernel32", "CloseHandle")(handle);
}

STAND_IN(FakeCreateFile, "CreateFileA@28")
STAND_IN(FakeDeviceIoControl, "DeviceIoControl@32")
STAND_IN(FakeCloseHandle, "CloseHandle@4")
