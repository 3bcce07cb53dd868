// Commands that the host gives the plug-in through slot 16: written as a line of words, sent, and the answer in words.
#pragma once

#include <string>
#include <vector>

#include "host/router.h"

// A command ready to be sent.
struct PLUGINCOMMAND {
    std::string text; // as it was written
    WORD code;        // HOSTDATA::wCode; PLUGIN_COMMAND_IS_SLOT for what is a slot of its own
    std::vector<BYTE> payload;
};
constexpr WORD PLUGIN_COMMAND_IS_SLOT = 0xFFFF; // "send-identity": slot 10

// What came back.
struct PLUGINANSWER {
    bool accepted;           // the slot returned 1
    bool answered;           // a reply with the command's own reply code and request number came
    PACKET reply;            // that reply
    std::vector<BYTE> block; // the command's payload afterwards: command 1 is answered in it
};

// Reads a line such as "set-vcp 10 50". Returns false and says why in *error.
bool ParsePluginCommand(const std::string &line, PLUGINCOMMAND *command, std::string *error);

// The commands with their words and meanings, a line each, for --help.
std::string DescribePluginCommands();

// Sends the command and collects its reply. The plug-in may ask the monitors while it works on it, so this can take
// seconds; the router answers meanwhile. Window's thread.
PLUGINANSWER SendPluginCommand(ROUTER *router, const PLUGINCOMMAND &command);

// Whether all came back that the command promises: it was accepted, and answered unless it has no answer.
bool WentWell(const PLUGINCOMMAND &command, const PLUGINANSWER &answer);

// The answer decoded, in one line without line end: "brightness (0x10): 50 of 100", "no answer".
std::string DescribePluginAnswer(const PLUGINCOMMAND &command, const PLUGINANSWER &answer);
