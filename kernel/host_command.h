// Commands that the host gives the plug-in through slot 16: their numbers and payloads stand in host_protocol.h.
//
// Host's thread. A command returns when it is carried out and its reply is sent.
#pragma once

#include "kernel/link/host_protocol.h"

// Slot 16. Result: 1, also for a command that is ignored; 0 for a packet without a block or with sizes that disagree.
int PluginCommand(void *lpPacket);

// Carries out a command. Unknown numbers and blocks shorter than the command's payload do nothing. Answers are written
// into the packet's own block as well; after PLUGIN_COMMAND_SHUT_DOWN that block is gone.
void HandleHostCommand(WORD wCommand, const HOSTPACKET *lpPacket);

// Allows (payload word 1) or forbids (any other) the Display control panel by the user's policy. Result: 1 when it was
// allowed or when the packet's sizes are wrong, 0 when it was forbidden, -1 when the policy was as asked already: only
// for the payload words 1 and 0. A policy that cannot be written counts as written.
int SetDisplayCplPolicy(const HOSTPACKET *lpCommand);
