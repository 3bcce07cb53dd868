// One command over the network: the datagram out, the connections of the answer in.
#pragma once

#include "command_line.h"

// A message of a client.
struct REPLY {
    SERVERREPLY head;
    std::string data; // head.dwLength bytes
};

struct EXCHANGE {
    uint32_t dwServer = 0;      // our address, as told to the client
    std::vector<REPLY> replies; // in the order of their arrival; the last one is the final reply when bFinal is set
    bool bFinal = false;        // the final reply came
    unsigned nBroken = 0;       // connections that brought no whole message
    std::string error;          // why the network could not be used; empty when it could
};

// Sends the request and receives messages up to the final reply or the time limit. Answers the request for settings.
EXCHANGE RunExchange(const REQUEST *lpRequest);
