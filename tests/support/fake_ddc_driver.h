// The DDC/CI I/O driver in a test, for the platform family of the program: an EDID memory behind an I2C bus that takes
// its conditions and bytes in legal order only. Stands behind CreateFileA, DeviceIoControl and CloseHandle, for its own
// device alone.
#pragma once

#include <windows.h>

#include <array>
#include <map>
#include <optional>

// While it exists, and no later one does, the driver is installed. What it is called with is recorded among
// TakeRecordedCalls, in the order of all calls:
//   "open NAME ACCESS SHARE DISPOSITION FLAGS" (numbers hexadecimal), "close"
//   "start", "write XX" (hexadecimal), "read COUNT", "end read", "stop"
//   "illegal ..." before one of these that the bus does not allow; it fails then
//   "bad call" for a control code, size or pointer that is not the driver's
class FakeDdcDriver {
public:
    FakeDdcDriver();
    ~FakeDdcDriver();
    FakeDdcDriver(const FakeDdcDriver &) = delete;
    FakeDdcDriver &operator=(const FakeDdcDriver &) = delete;

    std::array<BYTE, 256> memory = {};
    bool loads = true;           // false: the device cannot be opened
    bool writeProtected = false; // bytes are taken, and lost
    bool quiet = false;          // the status is handed back only when it is not 0

    // What the nth control call (1 = the first of all) does instead of its work: reports a status, or fails as a call.
    struct Outcome {
        std::optional<DWORD> status;
    };
    std::map<int, Outcome> outcomes;

    // For the stand-ins.
    HANDLE Open(const char *name, DWORD access, DWORD share, DWORD disposition, DWORD flags);
    BOOL Control(DWORD code, void *input, DWORD inputSize, void *output, DWORD outputSize, const DWORD *returned);
    void Close();

private:
    enum class Bus { Idle, Address, Offset, Write, Read, ReadDone, Ended };
    DWORD Work(int entry, const BYTE *bytes, BYTE *buffer, DWORD count);
    DWORD TakeByte(BYTE value);

    FakeDdcDriver *const m_before;
    Bus m_bus = Bus::Idle;
    BYTE m_offset = 0;
    int m_calls = 0;
};
