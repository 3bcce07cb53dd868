// Sockets of the test's server. They block no longer than a test may take.
#include "support/test_server.h"

#include <winsock.h>

#include <cstring>
#include <stdexcept>

constexpr DWORD PATIENCE_MS = 10000;
constexpr DWORD CLIENT_PAUSE_MS = 3; // in which the client gets its next socket
constexpr DWORD SILENCE_MS = 300;

bool operator==(const ServerMessage &message, const std::pair<uint8_t, std::string> &expected)
{
    return message.status == expected.first && message.data == expected.second;
}

static uint32_t Loopback()
{
    return htonl(INADDR_LOOPBACK);
}

static sockaddr_in Address(uint32_t address)
{
    sockaddr_in result = {};
    result.sin_family = AF_INET;
    result.sin_port = htons(SERVER_PORT);
    result.sin_addr.s_addr = address;
    return result;
}

std::string Datagram(uint8_t command, uint8_t vcpCode, uint32_t value, uint32_t target)
{
    const SERVERCMD datagram = {Loopback(), target, 0, value, command, vcpCode, 0};
    return std::string(reinterpret_cast<const char *>(&datagram), sizeof datagram);
}

TestServer::TestServer()
{
    WSADATA data;
    WSAStartup(MAKEWORD(1, 1), &data);
    m_udp = socket(AF_INET, SOCK_DGRAM, IPPROTO_UDP);
    m_listener = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    const sockaddr_in own = Address(Loopback());
    // Another run of these tests on this machine has the port for some seconds.
    for (DWORD waited = 0; bind(m_listener, reinterpret_cast<const sockaddr *>(&own), sizeof own) != 0; waited += 50) {
        if (waited >= 3 * PATIENCE_MS)
            throw std::runtime_error("TCP port 9700 is taken");
        Sleep(50);
    }
    listen(m_listener, 20);
}

TestServer::~TestServer()
{
    for (const UINT_PTR held : m_held)
        closesocket(held);
    StopListening();
    closesocket(m_udp);
    WSACleanup();
}

void TestServer::StopListening()
{
    if (m_listener != INVALID_SOCKET)
        closesocket(m_listener);
    m_listener = INVALID_SOCKET;
}

void TestServer::Send(const std::string &datagram)
{
    const sockaddr_in to = Address(Loopback());
    sendto(m_udp, datagram.data(), static_cast<int>(datagram.size()), 0, reinterpret_cast<const sockaddr *>(&to),
           sizeof to);
}

static bool WaitReadable(UINT_PTR sock, DWORD milliseconds)
{
    fd_set ready = {1, {sock}};
    timeval limit = {static_cast<long>(milliseconds / 1000), static_cast<long>(milliseconds % 1000 * 1000)};
    return select(0, &ready, nullptr, nullptr, &limit) == 1;
}

bool TestServer::WaitForConnection(DWORD milliseconds)
{
    return WaitReadable(m_listener, milliseconds);
}

static bool Receive(UINT_PTR sock, void *buffer, size_t size)
{
    for (char *place = static_cast<char *>(buffer); size > 0;) {
        const int received =
            WaitReadable(sock, PATIENCE_MS) ? recv(sock, place, static_cast<int>(size), 0) : SOCKET_ERROR;
        if (received <= 0)
            return false;
        place += received;
        size -= static_cast<size_t>(received);
    }
    return true;
}

std::optional<ServerMessage> TestServer::TakeMessage()
{
    const UINT_PTR sock = accept(m_listener, nullptr, nullptr);
    SERVERREPLY head;
    std::optional<ServerMessage> message;
    if (Receive(sock, &head, sizeof head)) {
        std::string data(head.dwLength, '\0');
        if (Receive(sock, data.data(), data.size()))
            message = {head.bStatus, data, head.dwFrom, head.dwTo};
    }
    if (message && message->status == SERVER_STATUS_DATA && message->data.empty() && answer)
        // NOLINTNEXTLINE(clang-analyzer-cplusplus.InnerPointer): nothing changes the answer meanwhile
        send(sock, answer->data(), static_cast<int>(answer->size()), 0);
    closesocket(sock);
    return message;
}

std::vector<ServerMessage> TestServer::Ask(const std::string &datagram)
{
    Sleep(CLIENT_PAUSE_MS);
    Send(datagram);
    for (int repeats = 0; repeats < mostRepeats && !WaitForConnection(repeatAfter); ++repeats) {
        ++lost;
        Send(datagram);
    }
    std::vector<ServerMessage> messages;
    while (WaitForConnection(patience)) {
        const auto message = TakeMessage();
        if (!message)
            break;
        messages.push_back(*message);
        if (message->status == SERVER_STATUS_DONE || message->status == SERVER_STATUS_REFUSED)
            break;
    }
    return messages;
}

void TestServer::Drain()
{
    while (WaitForConnection(SILENCE_MS))
        TakeMessage();
}

bool TestServer::HoldConnection()
{
    if (!WaitForConnection(PATIENCE_MS))
        return false;
    m_held.push_back(accept(m_listener, nullptr, nullptr));
    return true;
}

bool TestServer::IsLeftAlone()
{
    return !WaitForConnection(SILENCE_MS);
}

// A socket that has the port, if need be for itself; INVALID_SOCKET when somebody else has it.
static UINT_PTR TakePort(BOOL shared = FALSE)
{
    const UINT_PTR sock = socket(AF_INET, SOCK_DGRAM, IPPROTO_UDP);
    setsockopt(sock, SOL_SOCKET, SO_REUSEADDR, reinterpret_cast<const char *>(&shared), sizeof shared);
    const sockaddr_in own = Address(INADDR_ANY);
    if (bind(sock, reinterpret_cast<const sockaddr *>(&own), sizeof own) == 0)
        return sock;
    closesocket(sock);
    return INVALID_SOCKET;
}

bool WaitForPort(bool taken)
{
    for (DWORD waited = 0; waited < PATIENCE_MS; waited += 10) {
        const UINT_PTR sock = TakePort();
        if (sock != INVALID_SOCKET)
            closesocket(sock);
        if (taken == (sock == INVALID_SOCKET))
            return true;
        Sleep(10);
    }
    return false;
}

bool IsPortShared()
{
    const UINT_PTR sock = TakePort(TRUE);
    closesocket(sock);
    return sock != INVALID_SOCKET;
}

TakenPort::TakenPort() : m_socket(TakePort())
{
    if (m_socket == INVALID_SOCKET)
        throw std::runtime_error("UDP port 9700 is taken");
}

TakenPort::~TakenPort()
{
    closesocket(m_socket);
}
