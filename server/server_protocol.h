// The contract between the management server and the plug-in: the datagram that carries a command, the messages that
// come back, and their numbers. Layouts only, and free of Windows, for the
// server's stand-in, too.
//
// Integers are little-endian. Addresses are IPv4 in network byte order, so their first byte is the first in memory.
//
// The server sends a command as one UDP datagram. The client carries it out and answers over TCP, with a connection of
// its own for each message: first the data message of a command that has one, then the final reply, which every command
// gets. A client receives one datagram per socket: what arrives while it is busy with a command is lost.
#pragma once

#include <cstddef>
#include <cstdint>

constexpr uint16_t SERVER_PORT = 9700; // UDP at the client, TCP at the server

constexpr size_t SERVER_DATAGRAM_SIZE = 256;  // what a client receives of a datagram; the rest is cut off
constexpr size_t SERVER_COMMAND_LENGTH = 18;  // what it reads of that
constexpr size_t SERVER_MESSAGE_OFFSET = 400; // text of SERVER_MESSAGE, zero-terminated: beyond what is received
constexpr size_t SERVER_ANSWER_SIZE = 128;    // what it receives at most of the answer to a request for settings
constexpr size_t SERVER_NAME_SIZE = 64;       // data of an identity reply: the user name, a zero, and anything

// Server to client, UDP.
struct SERVERCMD {
    uint32_t dwServerAddr; // where every reply goes
    uint32_t dwTargetAddr; // 0 = all clients, else the one client that is meant
    uint32_t dwReserved;   // not read
    uint32_t dwValue;      // SERVER_SET_FEATURE: value, the low 16 bits; all 32 bits for VCP code 0xE0
    uint8_t bCommand;
    uint8_t bVcpCode; // SERVER_SET_FEATURE
    uint16_t wReserved;
};
static_assert(sizeof(SERVERCMD) == 20 && offsetof(SERVERCMD, dwTargetAddr) == 4 && offsetof(SERVERCMD, dwValue) == 12 &&
              offsetof(SERVERCMD, bCommand) == 16 && offsetof(SERVERCMD, bVcpCode) == 17);

enum SERVERCOMMAND : uint8_t {
    SERVER_SET_FEATURE = 2,      // dwValue into bVcpCode of the client's selected monitor
    SERVER_SET_ALL = 18,         // the client asks for a SERVERCOLORS (SERVER_STATUS_DATA without data)
    SERVER_POWER_OFF = 32,       // all monitors
    SERVER_POWER_ON = 33,        //
    SERVER_ECO_OFF = 34,         //
    SERVER_ECO_ON = 35,          //
    SERVER_AUTO_ADJUST = 36,     //
    SERVER_INPUT_ANALOG = 48,    //
    SERVER_INPUT_DIGITAL = 49,   //
    SERVER_INPUT_TV = 50,        //
    SERVER_INPUT_SVIDEO = 51,    //
    SERVER_INPUT_COMPOSITE = 52, //
    SERVER_IDENTITY = 128,       // data message: SERVER_STATUS_IDENTITY with the user name
    SERVER_VERSION = 129,        // data message: SERVER_STATUS_DATA with the version text
    SERVER_ALLOW_NAMES = 130,    // lets the client's user change user and group name once
    SERVER_MESSAGE = 160,        // shows a text box; the reply comes when it is closed
};

// Client to server, TCP: this head, then dwLength bytes of data.
struct SERVERREPLY {
    uint32_t dwFrom;    // the client
    uint32_t dwTo;      // dwServerAddr of the command
    uint32_t dwUnused;  // carries no information
    uint32_t dwLength;  // of the data; a text counts its zero
    uint8_t bStatus;    // SERVERSTATUS
    uint8_t bReserved;  //
    uint16_t wReserved; //
};
static_assert(sizeof(SERVERREPLY) == 20 && offsetof(SERVERREPLY, dwLength) == 12 &&
              offsetof(SERVERREPLY, bStatus) == 16);

enum SERVERSTATUS : uint8_t {
    SERVER_STATUS_DONE = 0,       // final reply: carried out
    SERVER_STATUS_DATA = 17,      // data message, or a request for data
    SERVER_STATUS_IDENTITY = 128, // data message
    SERVER_STATUS_REFUSED = 255,  // final reply: command not supported
};

// Server to client, TCP, on the connection on which the client asked for it.
struct SERVERCOLORS {
    uint32_t dwEco;      // 0 off, else on
    uint16_t wBrightEco; // used while ECO is on
    uint16_t wBright;    // used while ECO is off
    uint16_t wContrast;
    uint16_t wRed; // the gains count in user presets (11 and above) alone
    uint16_t wGreen;
    uint16_t wBlue;
    int16_t wColorTemp; // colour preset
    uint16_t wReserved;
};
static_assert(sizeof(SERVERCOLORS) == 20 && offsetof(SERVERCOLORS, wContrast) == 8 &&
              offsetof(SERVERCOLORS, wColorTemp) == 16);
