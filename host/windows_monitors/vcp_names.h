// The names that the Monitor Control Command Set gives to VCP codes.
#pragma once

#include <windows.h>

// The name of a code; "maker's own" from E0 on, "reserved" for one that has none.
const char *VcpName(BYTE code);
