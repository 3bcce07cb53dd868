// What the plug-in asks of the host: one function per request. Each sends a packet and waits for its answer, up to
// about 10 s, or up to about a second once the plug-in stops.
//
// Monitor indexes are zero-based in the host's order. VCP codes and values are those of the MCCS standard. All
// functions may run on any thread but the host's own outside slot 16.
#pragma once

#include <windows.h>

#include <cstdint>

// Writes a VCP feature. Result: the host's; -1 without an answer.
LONG HostSetVCP(LONG nMonitor, BYTE bCode, WORD wValue);

// Reads a VCP feature. lpMaximum may be null; it is written only when the wait was over in time. Result: the current
// value; -1 without an answer.
LONG HostGetVCP(LONG nMonitor, BYTE bCode, LONG *lpMaximum);

// Tells which input sources (VCP 0x60 values 0 to 15) a monitor offers; lpFlags: 16 words, 0 or 1. Result: 1, also
// without an answer; 0 when the host says so, when the plug-in stops, or when the request could not be sent.
int HostSetInputList(LONG nMonitor, const uint32_t *lpFlags);

// Tells that the colours follow the foreground program (1) or no longer (0), on one monitor or on all (-1).
// Result: the host's; the monitor argument without an answer.
LONG HostSetDirectLink(LONG nMonitor, LONG bOn);

// Result: the number of monitors; -1 without an answer.
LONG HostGetMonitorCount();

// Model name: 12 bytes, not always terminated. Result: 1 when the wait is over, whether or not an answer came (then the
// buffer is as it was); 0 when the request could not be sent.
int HostGetMonitorName(LONG nMonitor, char *lpName);

// Capability string: 512 bytes, not always terminated. Result: as HostGetMonitorName.
int HostGetCapabilities(LONG nMonitor, char *lpText);

// EDID base block: 128 bytes. Result: 128 when the wait is over, whether or not an answer came; -1 when the buffer is
// smaller than that or the request could not be sent.
LONG HostGetEDID(LONG nMonitor, BYTE *lpBuffer, DWORD cbBuffer);

// Sends a notice (HOST_NOTICE_...). Nothing is waited for, and its request number is not given back.
void SendNotice(WORD wNotice);
