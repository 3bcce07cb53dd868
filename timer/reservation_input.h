// Inputs of a monitor as reservations see them: their labels, which one a reservation switches to, which one comes back
// at its end, and the switch itself.
//
// Kernel thread. The functions that touch VCP codes wait for the host; the results of their writes do not matter.
#pragma once

#include "monitor/capabilities.h"

#include <windows.h>

constexpr int CHANNEL_NONE = VCP_VALUE_COUNT; // the reserved channel is none of the monitor's channel names
constexpr int INPUT_LABEL_SIZE = 32;

// VCP 0xE8 as it was before the last switch, for an end that restores the TV. One value for all reservations; lost with
// the process.
extern LONG g_nPrevTvChannel;

// Whether a monitor's model is the one that a reservation was made for: both up to their first blank, at most 12
// characters, in any case; leading blanks do not count.
bool IsSameModel(LPCSTR lpszModel, LPCSTR lpszLcd);

// Index of a channel among the monitor's channel names, all of them up to their first blank and at most 4 characters;
// CHANNEL_NONE when it is none of them.
int FindChannel(const MONITORENTRY *lpEntry, LPCSTR lpszChannel);

// What a reservation switches to: INPUT_VIDEO or INPUT_S_VIDEO for the label of such an input that the monitor has,
// else INPUT_TV. nChannel: result of FindChannel.
WORD ChooseInput(const MONITORENTRY *lpEntry, LPCSTR lpszChannel, int nChannel);

// What the end of a reservation goes back to, by the label from before its start. INPUT_TV for any label but those of
// the four other inputs, and for these where the monitor has no such input.
WORD ChooseRestoreInput(const MONITORENTRY *lpEntry, LPCSTR lpszLabel);

// Label of the input that the panel's monitor (not the reservation's) shows now. lpszBuffer: nSize bytes. Result: 1.
int GetInputLabel(char *lpszBuffer, int nSize);

// Switches a monitor to an input, for INPUT_TV to the channel first; remembers the TV channel of before. nPauseMs: what
// to wait after that is read. With the TV the call takes a second more.
void SwitchInput(LONG nMonitor, int nChannel, WORD wInput, DWORD nPauseMs);

// Tunes a monitor back to the TV channel of before the last switch; takes a second. The input stays as it is.
void RestoreTvChannel(LONG nMonitor);
