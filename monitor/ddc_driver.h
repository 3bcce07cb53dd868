// The DDC/CI I/O driver of the graphics card: how it is opened on each platform family, its control codes, and the
// parameter block that goes with every call. The driver is a product of its own; the block's layout is its.
//
// All state here is process-wide and serves one transaction at a time. Kernel thread.
#pragma once

#include "monitor/edid_header.h"

#include <windows.h>

#include <cstddef>

// Input and output of every control call.
struct DDCIOPARAM {
    DWORD dwPort;   // adapter output; also the number in the device name of the Windows NT family
    DWORD dwCount;  // bytes at lpBuf
    BYTE *lpBuf;    // what to write, or where to read to
    DWORD dwStatus; // the driver's result: 0 = done; see DdcStart
    DWORD dwResult; // of a read, not used
};
static_assert(sizeof(DDCIOPARAM) == 20);
static_assert(offsetof(DDCIOPARAM, lpBuf) == 8 && offsetof(DDCIOPARAM, dwStatus) == 12);

// Control calls in use, by their number in the driver's table of 16.
enum DDCENTRY : int {
    DDC_START = 1,
    DDC_STOP = 2,
    DDC_READ = 4,
    DDC_WRITE = 5,
    DDC_END_READ = 10,
};
constexpr int DDC_ENTRY_COUNT = 16;

extern DDCIOPARAM g_DdcParam;         // dwPort is set by whoever starts a transaction
extern BYTE g_Edid[EDID_BUFFER_SIZE]; // where an EDID is read to, from the host or directly
extern LONG g_bWin9x;                 // 1: the driver is that of the Windows 95 family
extern LONG g_bI2CError;              // 1 once a step has failed; nothing here clears it

// The control code of entry 1 to 16.
DWORD DdcControlCode(int nEntry, bool bWin9x);

// Opens the driver for the platform family (g_bWin9x) and port (g_DdcParam.dwPort). Result: the handle, which is kept
// here; INVALID_HANDLE_VALUE makes the first control call fail.
HANDLE DdcOpenDriver();

// Closes what DdcOpenDriver opened; harmless when nothing is open.
void DdcCloseDriver();

// One control call with g_DdcParam. Result: 1, or 0 when the call itself failed.
int DdcCall(DDCENTRY nEntry);

// The steps of a transaction on the bus. Each sets g_bI2CError when its call fails or its status tells of a failure:
// for the start condition 0xFFFFFFFF and 0xFFFFFFFE, for all others anything but 0.
void DdcStart(); // also the repeated start
void DdcWriteByte(BYTE bData);
void DdcReadBlock(); // EDID_SIZE bytes into g_Edid
void DdcEndRead();   // after a block, before the stop
void DdcStop();
