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
