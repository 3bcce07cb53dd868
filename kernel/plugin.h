// The plug-in as the host sees it: attach handler, export and slot table.
//
// Call order of the slots: 0 once, after GetPluginFunc; then 2, 3, 10 and 16 as needed; 15 once; then the library may
// be unloaded. 1 and the unused slots may be called at any time. There is no way back from 15 to 0: load the library
// afresh.
#pragma once

#include "kernel/link/host_protocol.h"

extern char g_szTitle[128]; // product title from the string table; empty before slot 0

// The slots of this module, for the table and for callers in the same process. All run on the host's thread.

// Slot 0. Packet: destination identifier = ours, data block = 4 bytes with the host's window. Completes the packet's
// destination address. Result: 1 when the kernel thread was started; 0 when not, when the block is too short, and, with
// nothing changed, while the thread runs.
int PluginInit(void *lpPacket);

// Slot 1. Points the packet's data block at a PLUGININFO. Result: 1.
int PluginGetInfo(void *lpPacket);

// Slot 3. Result: that of the kernel window's open-panel request, 0 without a kernel window.
int PluginOpenPanel(void *lpUnused);

// Slots without a function. Result: 1; the argument is not touched.
int PluginNop(void *lpUnused);

// Slot 15. Returns when the kernel thread has ended and the stop notice is sent. Result: 1, or 0 when no notice could
// be built.
int PluginStop(void *lpUnused);
