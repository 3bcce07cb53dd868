// Sockets of the server's side.
#include "exchange.h"

#include <winsock2.h>

#include <windows.h>

#include <cstring>

constexpr uint32_t DATA_LIMIT = 65536; // a length beyond this is no message of a client

// The end of the time that the user gives.
struct DEADLINE {
    DWORD dwStart;
    DWORD dwLimit;
};

static DWORD TimeLeft(const DEADLINE &deadline)
{
    const DWORD passed = GetTickCount() - deadline.dwStart;
    return passed < deadline.dwLimit ? deadline.dwLimit - passed : 0;
}

static sockaddr_in SocketAddress(uint32_t address, uint16_t port)
{
    sockaddr_in result = {};
    result.sin_family = AF_INET;
    result.sin_port = htons(port);
    result.sin_addr.s_addr = address;
    return result;
}

static std::string NetworkError(const std::string &what)
{
    return what + " (error " + std::to_string(WSAGetLastError()) + ")";
}

// The address of ours from which datagrams to another one go.
static bool FindOwnAddress(uint32_t *address, SOCKET udp, uint32_t to)
{
    const sockaddr_in peer = SocketAddress(to, SERVER_PORT);
    sockaddr_in own = {};
    int size = sizeof own;
    if (connect(udp, reinterpret_cast<const sockaddr *>(&peer), sizeof peer) != 0 ||
        getsockname(udp, reinterpret_cast<sockaddr *>(&own), &size) != 0)
        return false;
    *address = own.sin_addr.s_addr;
    return true;
}

static SOCKET OpenUdp()
{
    const SOCKET udp = socket(AF_INET, SOCK_DGRAM, IPPROTO_UDP);
    const BOOL broadcast = TRUE;
    if (udp != INVALID_SOCKET)
        setsockopt(udp, SOL_SOCKET, SO_BROADCAST, reinterpret_cast<const char *>(&broadcast), sizeof broadcast);
    return udp;
}

static SOCKET OpenListener(uint32_t address)
{
    const SOCKET listener = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    const sockaddr_in own = SocketAddress(address, SERVER_PORT);
    if (listener == INVALID_SOCKET)
        return INVALID_SOCKET;
    if (bind(listener, reinterpret_cast<const sockaddr *>(&own), sizeof own) == 0 && listen(listener, 5) == 0)
        return listener;
    const int error = WSAGetLastError();
    closesocket(listener);
    WSASetLastError(error);
    return INVALID_SOCKET;
}

// Waits until something can be read or accepted. False when the time is over.
static bool WaitReadable(SOCKET sock, const DEADLINE &deadline)
{
    const DWORD left = TimeLeft(deadline);
    fd_set ready = {1, {sock}};
    timeval limit = {static_cast<long>(left / 1000), static_cast<long>(left % 1000 * 1000)};
    return select(0, &ready, nullptr, nullptr, &limit) == 1;
}

static bool ReceiveAll(SOCKET sock, void *buffer, size_t size, const DEADLINE &deadline)
{
    char *place = static_cast<char *>(buffer);
    while (size > 0) {
        if (!WaitReadable(sock, deadline))
            return false;
        const int received = recv(sock, place, static_cast<int>(size), 0);
        if (received <= 0)
            return false;
        place += received;
        size -= static_cast<size_t>(received);
    }
    return true;
}

static bool ReceiveReply(REPLY *reply, SOCKET sock, const DEADLINE &deadline)
{
    if (!ReceiveAll(sock, &reply->head, sizeof reply->head, deadline) || reply->head.dwLength > DATA_LIMIT)
        return false;
    reply->data.resize(reply->head.dwLength);
    return ReceiveAll(sock, reply->data.data(), reply->data.size(), deadline);
}

static bool IsFinal(const REPLY &reply)
{
    return reply.head.bStatus == SERVER_STATUS_DONE || reply.head.bStatus == SERVER_STATUS_REFUSED;
}

// A client asks for the settings with a data message that has no data, and takes them on the same connection.
static void AnswerRequest(SOCKET sock, const REPLY &reply, const REQUEST *request)
{
    if (reply.head.bStatus == SERVER_STATUS_DATA && reply.data.empty() && request->colors)
        send(sock, reinterpret_cast<const char *>(&*request->colors), sizeof *request->colors, 0);
}

static void ReceiveReplies(EXCHANGE *exchange, SOCKET listener, const REQUEST *request, const DEADLINE &deadline)
{
    while (!exchange->bFinal && WaitReadable(listener, deadline)) {
        const SOCKET sock = accept(listener, nullptr, nullptr);
        if (sock == INVALID_SOCKET)
            continue;
        REPLY reply = {};
        if (ReceiveReply(&reply, sock, deadline)) {
            AnswerRequest(sock, reply, request);
            exchange->replies.push_back(reply);
            exchange->bFinal = IsFinal(reply);
        } else {
            ++exchange->nBroken;
        }
        closesocket(sock);
    }
}

static void RunOnSockets(EXCHANGE *exchange, SOCKET udp, const REQUEST *request)
{
    exchange->dwServer = request->dwServer;
    if (!exchange->dwServer && !FindOwnAddress(&exchange->dwServer, udp, request->dwTo)) {
        exchange->error = NetworkError("there is no way to " + AddressText(request->dwTo));
        return;
    }
    // Listening comes first: a client answers at once.
    const SOCKET listener = OpenListener(exchange->dwServer);
    if (listener == INVALID_SOCKET) {
        exchange->error =
            NetworkError("TCP port " + std::to_string(SERVER_PORT) + " of " + AddressText(exchange->dwServer) +
                         " cannot be used: another server may be running");
        return;
    }
    const DEADLINE deadline = {GetTickCount(), request->dwTimeoutMs};
    const std::vector<uint8_t> datagram = BuildDatagram(request, exchange->dwServer);
    const sockaddr_in to = SocketAddress(request->dwTo, SERVER_PORT);
    const SOCKET sender = OpenUdp(); // not connected: an earlier refusal must not fail this send
    if (sendto(sender, reinterpret_cast<const char *>(datagram.data()), static_cast<int>(datagram.size()), 0,
               reinterpret_cast<const sockaddr *>(&to), sizeof to) == SOCKET_ERROR)
        exchange->error = NetworkError("nothing can be sent to " + AddressText(request->dwTo));
    else
        ReceiveReplies(exchange, listener, request, deadline);
    closesocket(sender);
    closesocket(listener);
}

EXCHANGE RunExchange(const REQUEST *lpRequest)
{
    EXCHANGE exchange;
    WSADATA data;
    if (WSAStartup(MAKEWORD(2, 2), &data) != 0) {
        exchange.error = "there is no network";
        return exchange;
    }
    const SOCKET udp = OpenUdp();
    if (udp == INVALID_SOCKET)
        exchange.error = NetworkError("no socket can be had");
    else
        RunOnSockets(&exchange, udp, lpRequest);
    closesocket(udp);
    WSACleanup();
    return exchange;
}
