// The capability string of a monitor (MCCS): which VCP codes it has, which values of the two that matter here.
// Free of Windows, so that it can be compiled and fuzzed anywhere.
#pragma once

#include <cstddef>
#include <cstdint>

constexpr int VCP_VALUE_COUNT = 16; // values 0 to 15 of a listed code

// One monitor of the table.
struct MONITORENTRY {
    char szModel[13];                       // as the host names it; section name in INI files
    char szMccsVer[8];                      // version text, such as "2.0"
    uint32_t bVcpCode[256];                 // 1: the code is in the vcp list
    uint32_t bColorPreset[VCP_VALUE_COUNT]; // 1: the value is listed for 0x14
    uint32_t bInputSource[VCP_VALUE_COUNT]; // 1: the value is listed for 0x60
    uint32_t bTuner;                        // 1: a TV tuner is listed
    char szInputName[VCP_VALUE_COUNT][10];  // names of the inputs; nothing fills them
};

// Reads a capability string into an entry, whose flags it only sets. The text need not be terminated; it is changed in
// place (lower-cased, some ")" replaced by blanks). True when the vcp list was read up to its ")".
//
// Monitors of this make are read right; of any other string the result is what the walk in the source makes of it,
// which takes for the end of the vcp list any ")" that a list of another code than 0x14 and 0x60 ends with.
bool ParseCapabilityText(MONITORENTRY *lpEntry, char *lpText, size_t cbText);
