// A command of the management server over loopback, against the same sockets without the plug-in.
#include "bench/bench_session.h"
#include "bench/benchmarks.h"
#include "bench/measure.h"
#include "monitor/vcp.h"
#include "server/server_protocol.h"

#include <winsock.h>

#include <atomic>
#include <stdexcept>

constexpr int ROUNDS = 201;
constexpr int MOST_LOST = 20;        // datagrams that may be lost in all, at the start above all
constexpr DWORD CLIENT_PAUSE_MS = 5; // in which a client gets its next socket
constexpr long PATIENCE_US = 500'000;
constexpr u_short BARE_PORT = SERVER_PORT + 1;

static sockaddr_in Loopback(u_short port)
{
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

// A socket that has a port of the loopback address; INVALID_SOCKET when it cannot have it.
static SOCKET OpenAt(int type, u_short port)
{
    const SOCKET sock = socket(AF_INET, type, 0);
    const sockaddr_in address = Loopback(port);
    if (bind(sock, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0)
        return sock;
    closesocket(sock);
    return INVALID_SOCKET;
}

static void SendCommand(SOCKET sock, u_short port)
{
    const SERVERCMD command = {htonl(INADDR_LOOPBACK), 0, 0, 40, SERVER_SET_FEATURE, VCP_BRIGHTNESS, 0};
    const sockaddr_in to = Loopback(port);
    sendto(sock, reinterpret_cast<const char *>(&command), sizeof command, 0, reinterpret_cast<const sockaddr *>(&to),
           sizeof to);
}

// ---- The server's side --------------------------------------------------------------------------------------------

class CommandServer {
public:
    CommandServer()
    {
        WSADATA data;
        WSAStartup(MAKEWORD(1, 1), &data);
        m_udp = socket(AF_INET, SOCK_DGRAM, 0);
        m_listener = OpenAt(SOCK_STREAM, SERVER_PORT);
        if (m_listener == INVALID_SOCKET || listen(m_listener, 5) != 0)
            throw std::runtime_error("TCP port 9700 is taken");
    }
    ~CommandServer()
    {
        closesocket(m_listener);
        closesocket(m_udp);
        WSACleanup();
    }
    CommandServer(const CommandServer &) = delete;
    CommandServer &operator=(const CommandServer &) = delete;

    // Sends a command and reads its final reply up to the end of the connection; again when the datagram met the client
    // between two sockets. Result: microseconds, those of the last attempt.
    double Ask(u_short port)
    {
        for (; m_lost <= MOST_LOST; ++m_lost) {
            SleepEx(CLIENT_PAUSE_MS, FALSE);
            const double start = NowUs();
            SendCommand(m_udp, port);
            if (ReadReply())
                return NowUs() - start;
        }
        throw std::runtime_error("no answer from port " + std::to_string(port));
    }

private:
    bool ReadReply() const
    {
        fd_set ready = {1, {m_listener}};
        timeval patience = {0, PATIENCE_US};
        if (select(0, &ready, nullptr, nullptr, &patience) != 1)
            return false;
        const SOCKET sock = accept(m_listener, nullptr, nullptr);
        char reply[256];
        size_t length = 0;
        for (int part; (part = recv(sock, reply, sizeof reply, 0)) > 0;)
            length += static_cast<size_t>(part);
        closesocket(sock);
        return length > sizeof(SERVERREPLY);
    }

    SOCKET m_udp = INVALID_SOCKET;
    SOCKET m_listener = INVALID_SOCKET;
    int m_lost = 0;
};

// ---- A client without the plug-in ---------------------------------------------------------------------------------

// A socket for each datagram and a connection for its reply, which is as long as the plug-in's.
class BareClient {
public:
    BareClient() : m_thread([this] { Serve(); }) {}
    ~BareClient()
    {
        m_stop = true;
        const SOCKET sock = socket(AF_INET, SOCK_DGRAM, 0);
        for (; !m_over; SleepEx(CLIENT_PAUSE_MS, FALSE))
            SendCommand(sock, BARE_PORT);
        closesocket(sock);
        m_thread.join();
    }
    BareClient(const BareClient &) = delete;
    BareClient &operator=(const BareClient &) = delete;

private:
    void Serve()
    {
        char buffer[SERVER_DATAGRAM_SIZE];
        while (!m_stop) {
            const SOCKET sock = OpenAt(SOCK_DGRAM, BARE_PORT);
            if (recvfrom(sock, buffer, sizeof buffer, 0, nullptr, nullptr) > 0 && !m_stop)
                Reply();
            closesocket(sock);
        }
        m_over = true;
    }

    static void Reply()
    {
        const char reply[sizeof(SERVERREPLY) + 16] = {};
        const SOCKET sock = socket(AF_INET, SOCK_STREAM, 0);
        const sockaddr_in server = Loopback(SERVER_PORT);
        if (connect(sock, reinterpret_cast<const sockaddr *>(&server), sizeof server) == 0)
            send(sock, reply, sizeof reply, 0);
        closesocket(sock);
    }

    std::atomic<bool> m_stop = false;
    std::atomic<bool> m_over = false;
    std::thread m_thread;
};

// ---- Measuring ----------------------------------------------------------------------------------------------------

void BenchServer(REPORT *report)
{
    BENCHSESSION session;
    CommandServer server;
    const RunningPlugin plugin(&session);
    const BareClient bare;
    server.Ask(SERVER_PORT); // until the listener is there
    std::vector<double> subjects;
    std::vector<double> bases;
    for (int round = 0; round < ROUNDS; ++round) {
        subjects.push_back(server.Ask(SERVER_PORT));
        bases.push_back(server.Ask(BARE_PORT));
    }
    const COMPARISON result = Summarise(subjects, bases);
    report->Add("datagram to the end of the final reply", result.subject, "us");
    report->Add("the same sockets without the plug-in", result.base, "us");
    report->Add("ratio", result.ratio, "x");
}
