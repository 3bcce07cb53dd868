// Reading what the server sends and forming what it gets: pure functions over bytes, without sockets or windows, so
// that they can be compiled and fuzzed anywhere. Any thread.
#pragma once

#include "server/server_protocol.h"

// Reads a command from a received buffer of cbData bytes. False, with *lpCommand untouched, when it is too short for
// one (SERVER_COMMAND_LENGTH).
bool ParseServerCommand(SERVERCMD *lpCommand, const void *lpData, size_t cbData);

// Whether a command is meant for the client with this address: it names that address, or 0 for all clients.
bool IsForClient(const SERVERCMD *lpCommand, uint32_t dwMyAddr);

// Copies the text of SERVER_MESSAGE out of a received buffer, cut to cbText - 1 characters and always terminated. Empty
// when the buffer ends before the text begins. cbText: 1 or more.
void ParseServerMessage(char *lpszText, size_t cbText, const void *lpData, size_t cbData);

// Reads an answer to SERVER_SET_ALL into a record. A short one fills its beginning and leaves the rest alone; what a
// long one has beyond the record is dropped. Result: how many bytes it fills, 0 to all.
size_t ReadServerColors(SERVERCOLORS *lpColors, const void *lpAnswer, size_t cbAnswer);

// Forms a message to the server: head, then lpHeader->dwLength bytes of data (none when lpData is null).
// Result: its length; 0, with nothing written, when it does not fit into cbBuffer bytes.
size_t BuildServerReply(void *lpBuffer, size_t cbBuffer, const SERVERREPLY *lpHeader, const void *lpData);
