// The management server in a test: sends datagrams to the plug-in's link and takes its connections, on the loopback
// address alone.
#pragma once

#include "server/server_protocol.h"

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

// A message of the client.
struct ServerMessage {
    uint8_t status;
    std::string data;
    uint32_t from;
    uint32_t to;
};
bool operator==(const ServerMessage &message, const std::pair<uint8_t, std::string> &expected);

// A datagram of this server: 20 bytes, as a bare command has.
std::string Datagram(uint8_t command, uint8_t vcpCode = 0, uint32_t value = 0, uint32_t target = 0);

class TestServer {
public:
    TestServer();
    ~TestServer();
    TestServer(const TestServer &) = delete;
    TestServer &operator=(const TestServer &) = delete;

    // What a request for settings is answered with; then, or at once without an answer, the connection is closed.
    std::optional<std::string> answer;

    // How long Ask waits for a client that does not connect, how often it sends again then, and how long it waits for
    // the message behind the last one. In milliseconds; the first is longer than any command here takes.
    DWORD repeatAfter = 1500;
    int mostRepeats = 3;
    DWORD patience = 10000;

    // What Ask sent again, because the client was between two sockets.
    int lost = 0;

    // Takes no connections any more.
    void StopListening();

    // Sends a datagram and looks no further.
    void Send(const std::string &datagram);

    // Sends a datagram and takes messages up to the final reply. None when there is no answer also to repetitions.
    std::vector<ServerMessage> Ask(const std::string &datagram);

    // Takes whatever messages still come, until none has for a moment.
    void Drain();

    // Takes the next connection and leaves it open, unanswered, until the server goes. False after ten seconds.
    bool HoldConnection();

    // Whether nobody connects for a while.
    bool IsLeftAlone();

private:
    bool WaitForConnection(DWORD milliseconds);
    std::optional<ServerMessage> TakeMessage();

    UINT_PTR m_udp;
    UINT_PTR m_listener;
    std::vector<UINT_PTR> m_held;
};

// Waits until UDP port 9700 is taken, or free; false after ten seconds.
bool WaitForPort(bool taken);

// Whether UDP port 9700 can be had beside who has it.
bool IsPortShared();

// While it exists, UDP port 9700 is taken and not shared.
class TakenPort {
public:
    TakenPort();
    ~TakenPort();
    TakenPort(const TakenPort &) = delete;
    TakenPort &operator=(const TakenPort &) = delete;

private:
    UINT_PTR m_socket;
};
