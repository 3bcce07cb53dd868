// I2C transactions.
#include "monitor/i2c.h"

#include "monitor/ddc_driver.h"

constexpr BYTE DIRECTION_READ = 1; // lowest bit of a device address
constexpr DWORD RECOVERY_MS = 20;  // the memory's write time

// One byte; false when it or anything before it has failed.
static bool WriteByte(BYTE bData)
{
    DdcWriteByte(bData);
    return !g_bI2CError;
}

// Opens the driver and leads up to where data is written, or the direction turned round. False on failure.
static bool BeginWrite(BYTE bAddress, BYTE bOffset)
{
    DdcOpenDriver();
    DdcStart();
    return !g_bI2CError && WriteByte(static_cast<BYTE>(bAddress & ~DIRECTION_READ)) && WriteByte(bOffset);
}

static int EndTransaction()
{
    DdcCloseDriver();
    Sleep(RECOVERY_MS);
    return 1;
}

int I2CReadEdid(BYTE bAddress, BYTE bOffset)
{
    if (!BeginWrite(bAddress, bOffset))
        return 0;
    DdcStart();
    if (g_bI2CError || !WriteByte(bAddress | DIRECTION_READ))
        return 0;
    DdcReadBlock();
    if (g_bI2CError)
        return 0;
    DdcEndRead();
    DdcStop(); // also after a failed end: it frees the bus
    return g_bI2CError ? 0 : EndTransaction();
}

int I2CWriteBlock8(const BYTE *lpData, BYTE bAddress, BYTE bOffset)
{
    if (!BeginWrite(bAddress, bOffset))
        return 0;
    for (DWORD index = 0; index < I2C_BLOCK_SIZE; ++index)
        if (!WriteByte(lpData[index]))
            return 0;
    DdcStop();
    return g_bI2CError ? 0 : EndTransaction();
}
