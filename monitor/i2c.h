// Whole transactions with a memory on a monitor's I2C bus, made of the driver's steps. Each opens the driver, and at
// its good end closes it and waits until the memory takes the next access.
//
// Device addresses are 8 bits wide; their lowest bit, the direction, does not count. An error flag that is already set
// ends a transaction after its start condition. Kernel thread.
#pragma once

#include <windows.h>

constexpr DWORD I2C_BLOCK_SIZE = 8;

// Reads EDID_SIZE bytes from an offset on into g_Edid. Result: 1; 0 on failure, with g_bI2CError set and the driver
// still open: the caller closes it.
int I2CReadEdid(BYTE bAddress, BYTE bOffset);

// Writes I2C_BLOCK_SIZE bytes from an offset on, one after the other. Result as above.
int I2CWriteBlock8(const BYTE *lpData, BYTE bAddress, BYTE bOffset);
