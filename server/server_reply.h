// Messages to the server, each over a TCP connection of its own. Listener threads.
#pragma once

#include "server/server_protocol.h"

#include <windows.h>
#include <winsock.h>

constexpr size_t SERVER_REPLY_DATA_MAX = 256; // the longest data of ours; longer ones are not sent

// Connects to lpHeader->dwTo and sends one message: head and lpHeader->dwLength bytes of data; lpData may be null, then
// the length is 0. Gives up when the link ends. Result: the socket, for CloseServerSocket, also when the server did not
// take the message; INVALID_SOCKET when there is no connection.
SOCKET SendServerReply(const SERVERREPLY *lpHeader, const void *lpData);

// Receives what the server sends on a connection, with one receive. Waits half a minute at most, and no longer than the
// link lives. Result: bytes received, 0 to cbBuffer; 0 also for INVALID_SOCKET.
size_t ReceiveServerAnswer(SOCKET sock, void *lpBuffer, size_t cbBuffer);

// Shuts a connection down and closes it. INVALID_SOCKET does nothing.
void CloseServerSocket(SOCKET sock);
