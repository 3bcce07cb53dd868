// Control calls of the DDC/CI I/O driver.
#include "monitor/ddc_driver.h"

// The driver's state: parameter block, buffer, family, error flag, what is open.
DDCIOPARAM g_DdcParam = {};
BYTE g_Edid[EDID_BUFFER_SIZE] = {};
LONG g_bWin9x = 0;
LONG g_bI2CError = 0;
static HANDLE s_hDriver = INVALID_HANDLE_VALUE;
static DWORD s_dwCode[DDC_ENTRY_COUNT + 1]; // by entry; 0 is none

#define DRIVER_WIN9X "\\\\.\\NRVDDCCI.VXD"
#define DRIVER_NT "\\\\.\\DDCCI_IO%d"

constexpr DWORD FIRST_CODE_NT = 0x9C402480; // device type 0x9C40, function 0x920, buffered, any access
constexpr DWORD CODE_STEP_NT = 4;           // to the next function

constexpr DWORD START_FAILED = 0xFFFFFFFF;
constexpr DWORD START_NOT_POSSIBLE = 0xFFFFFFFE;

DWORD DdcControlCode(int nEntry, bool bWin9x)
{
    const DWORD entry = static_cast<DWORD>(nEntry);
    return bWin9x ? entry : FIRST_CODE_NT + CODE_STEP_NT * (entry - 1);
}

HANDLE DdcOpenDriver()
{
    for (int entry = 1; entry <= DDC_ENTRY_COUNT; ++entry)
        s_dwCode[entry] = DdcControlCode(entry, g_bWin9x != 0);
    if (g_bWin9x) {
        // Not a file to be created: this is how that family loads a driver, which leaves when the handle is closed.
        s_hDriver = CreateFileA(DRIVER_WIN9X, 0, 0, nullptr, CREATE_NEW, FILE_FLAG_DELETE_ON_CLOSE, nullptr);
        return s_hDriver;
    }
    char name[32];
    wsprintfA(name, DRIVER_NT, g_DdcParam.dwPort);
    s_hDriver = CreateFileA(name, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                            OPEN_EXISTING, 0, nullptr);
    return s_hDriver;
}

void DdcCloseDriver()
{
    if (s_hDriver != INVALID_HANDLE_VALUE)
        CloseHandle(s_hDriver);
    s_hDriver = INVALID_HANDLE_VALUE;
}

int DdcCall(DDCENTRY nEntry)
{
    DWORD returned = 0;
    // A driver that hands nothing back must not leave us with the status of an earlier call.
    g_DdcParam.dwStatus = 0;
    return DeviceIoControl(s_hDriver, s_dwCode[nEntry], &g_DdcParam, sizeof g_DdcParam, &g_DdcParam, sizeof g_DdcParam,
                           &returned, nullptr) != FALSE;
}

// A step whose status must be 0.
static void Step(DDCENTRY nEntry)
{
    if (!DdcCall(nEntry) || g_DdcParam.dwStatus != 0)
        g_bI2CError = 1;
}

void DdcStart()
{
    if (!DdcCall(DDC_START) || g_DdcParam.dwStatus == START_FAILED || g_DdcParam.dwStatus == START_NOT_POSSIBLE)
        g_bI2CError = 1;
}

void DdcWriteByte(BYTE bData)
{
    g_DdcParam.dwCount = 1;
    g_DdcParam.lpBuf = &bData;
    Step(DDC_WRITE);
    g_DdcParam.lpBuf = nullptr; // the byte ends with this call
}

void DdcReadBlock()
{
    g_DdcParam.dwCount = EDID_SIZE;
    g_DdcParam.lpBuf = g_Edid;
    Step(DDC_READ);
    g_DdcParam.lpBuf = nullptr;
}

void DdcEndRead()
{
    Step(DDC_END_READ);
}

void DdcStop()
{
    Step(DDC_STOP);
}
