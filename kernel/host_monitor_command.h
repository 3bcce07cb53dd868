// The host's commands that read and write features of the selected monitor, or write those of all of them. One function
// a command; the packet's block is as long as the command's payload, and carries the answer.
//
// Host's thread.
#pragma once

#include "kernel/link/host_protocol.h"

void ReadColors(const HOSTPACKET *lpCommand);
void WriteColors(const HOSTPACKET *lpCommand);
void ReadFeature(const HOSTPACKET *lpCommand);
void WriteFeature(const HOSTPACKET *lpCommand);

// SetVCP on every monitor in turn, with the low 16 bits of the value. Any thread.
void SetVCPAll(BYTE bCode, LONG nValue);

// SetVCP on the selected monitor or, in the all-monitors mode, on every one. A command of several accesses takes
// g_nCurMonitor once and hands it to each as nSelected: another may be chosen meanwhile. Any thread.
void SetSelectedOrAll(LONG nSelected, BYTE bCode, LONG nValue);
