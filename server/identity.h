// The record that tells a management server who this PC is, as the settings have it now.
#pragma once

#include "kernel/link/host_protocol.h"

// Fills a record from the settings; whatever is absent, too long or of another type is zero. Any thread.
void BuildIdentity(HOSTIDENTITY *lpIdentity);

// Sends the record as the reply to a command (AnswerCommand). Says so in a message box when the reply's header cannot
// be had. Host's or kernel thread. Result: 1, or 0 when memory ran out.
int SendIdentity(const HOSTPACKET *lpCommand, DWORD dwRequestID);

// Slot 10: the record without a command. Host's or kernel thread. Result: 1, or 0 when memory ran out.
int PluginSendIdentity(void *lpUnused);
