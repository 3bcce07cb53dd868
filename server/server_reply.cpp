// TCP connections to the server. They are made without blocking, so that a server that is switched off does not hold up
// the plug-in's end for minutes.
#include "server/server_reply.h"

#include "server/server_datagram.h"
#include "server/server_state.h"

constexpr DWORD CONNECT_LIMIT_MS = 60000; // the system mostly gives up before
constexpr DWORD ANSWER_LIMIT_MS = 30000;  // a server that stays silent must not silence the link for good
constexpr long SLICE_US = 100000;         // how often a wait looks whether the link still lives
constexpr int SHUTDOWN_BOTH = 2;

enum class WAITFOR { Connection, Data };

// Waits until a socket is ready. False when its connection has failed, and when the wait took too long or the link has
// ended. A wait that is over at once does not ask for the link's life.
static bool WaitForSocket(SOCKET sock, WAITFOR what, DWORD dwLimit)
{
    const bool connecting = what == WAITFOR::Connection;
    const DWORD start = GetTickCount();
    do {
        fd_set ready = {1, {sock}};
        fd_set failed = {1, {sock}};
        timeval slice = {0, SLICE_US};
        const int count = select(0, connecting ? nullptr : &ready, connecting ? &ready : nullptr,
                                 connecting ? &failed : nullptr, &slice);
        if (count != 0)
            return count > 0 && ready.fd_count == 1;
    } while (g_ServerThreadCtx.bRunning && GetTickCount() - start < dwLimit);
    return false;
}

static bool SetBlocking(SOCKET sock, bool bBlocking)
{
    u_long nonBlocking = bBlocking ? 0 : 1;
    return ioctlsocket(sock, static_cast<long>(FIONBIO), &nonBlocking) == 0;
}

static bool ConnectToServer(SOCKET sock, DWORD dwServerAddr)
{
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(SERVER_PORT);
    address.sin_addr.s_addr = dwServerAddr;
    if (!SetBlocking(sock, false))
        return false;
    if (connect(sock, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0 &&
        (WSAGetLastError() != WSAEWOULDBLOCK || !WaitForSocket(sock, WAITFOR::Connection, CONNECT_LIMIT_MS)))
        return false;
    return SetBlocking(sock, true);
}

SOCKET SendServerReply(const SERVERREPLY *lpHeader, const void *lpData)
{
    // Not shared: two listeners may answer at the same time.
    char message[sizeof(SERVERREPLY) + SERVER_REPLY_DATA_MAX];
    const size_t length = BuildServerReply(message, sizeof message, lpHeader, lpData);
    const SOCKET sock = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    if (sock == INVALID_SOCKET)
        return INVALID_SOCKET;
    if (!ConnectToServer(sock, lpHeader->dwTo)) {
        CloseServerSocket(sock);
        return INVALID_SOCKET;
    }
    send(sock, message, static_cast<int>(length), 0);
    return sock;
}

size_t ReceiveServerAnswer(SOCKET sock, void *lpBuffer, size_t cbBuffer)
{
    if (sock == INVALID_SOCKET || !WaitForSocket(sock, WAITFOR::Data, ANSWER_LIMIT_MS))
        return 0;
    const int received = recv(sock, static_cast<char *>(lpBuffer), static_cast<int>(cbBuffer), 0);
    return received > 0 ? static_cast<size_t>(received) : 0;
}

void CloseServerSocket(SOCKET sock)
{
    if (sock == INVALID_SOCKET)
        return;
    shutdown(sock, SHUTDOWN_BOTH);
    closesocket(sock);
}
