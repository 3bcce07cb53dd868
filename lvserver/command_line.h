// What the user asked for: the words of the command line, read into a datagram.
#pragma once

#include "server/server_protocol.h"

#include <optional>
#include <string>
#include <vector>

struct REQUEST {
    bool bHelp = false;
    bool bJson = false;
    uint32_t dwTo = 0x0100007F; // where the datagram goes, network byte order; this PC unless said otherwise
    uint32_t dwTarget = 0;      // which client is meant; 0 = each that receives it
    uint32_t dwServer = 0;      // where clients answer to; 0 = the address of ours that reaches dwTo
    uint32_t dwTimeoutMs = 15000;
    std::string name; // the command's words, for the report
    uint8_t bCommand = 0;
    uint8_t bVcpCode = 0;
    uint32_t dwValue = 0;
    std::string message;                // text of SERVER_MESSAGE
    std::optional<SERVERCOLORS> colors; // what is sent when a client asks for settings
};

// Reads the arguments without the program's name. Result: empty, or what is wrong with them.
std::string ParseCommandLine(REQUEST *lpRequest, const std::vector<std::string> &arguments);

// The text of --help.
std::string HelpText();

// The datagram of a request, to be sent by the server with this address.
std::vector<uint8_t> BuildDatagram(const REQUEST *lpRequest, uint32_t dwServerAddr);

// An address as "1.2.3.4".
std::string AddressText(uint32_t dwAddress);
