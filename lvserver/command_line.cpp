// The words of lvserver's command line, and the datagram that they make.
#include "command_line.h"

#include "monitor/vcp_codes.h"

#include <cstdlib>
#include <cstring>
#include <initializer_list>

using ARGUMENTS = std::vector<std::string>;

// ---- Numbers and addresses ----------------------------------------------------------------------------------------

// A whole number from 0 to `limit`, decimal or with 0x.
static bool ParseNumber(uint32_t *value, const std::string &text, uint32_t limit, int base = 0)
{
    if (text.empty() || !isxdigit(static_cast<unsigned char>(text[0])))
        return false;
    // A leading zero is not meant as octal.
    const bool hexadecimal = base == 16 || text.compare(0, 2, "0x") == 0 || text.compare(0, 2, "0X") == 0;
    char *end = nullptr;
    const unsigned long long number = strtoull(text.c_str(), &end, hexadecimal ? 16 : 10);
    if (*end || number > limit)
        return false;
    *value = static_cast<uint32_t>(number);
    return true;
}

static bool ParseAddress(uint32_t *address, const std::string &text)
{
    uint8_t bytes[4];
    size_t position = 0;
    for (int index = 0; index < 4; ++index) {
        const size_t end = index < 3 ? text.find('.', position) : text.size();
        uint32_t part;
        if (end == std::string::npos || !ParseNumber(&part, text.substr(position, end - position), 255))
            return false;
        bytes[index] = static_cast<uint8_t>(part);
        position = end + 1;
    }
    memcpy(address, bytes, sizeof bytes);
    return true;
}

std::string AddressText(uint32_t dwAddress)
{
    uint8_t bytes[4];
    memcpy(bytes, &dwAddress, sizeof bytes);
    return std::to_string(bytes[0]) + "." + std::to_string(bytes[1]) + "." + std::to_string(bytes[2]) + "." +
           std::to_string(bytes[3]);
}

// ---- Arguments of the commands ------------------------------------------------------------------------------------

// Each reads what follows its word. Result: empty, or what is wrong.
static std::string NoArguments(REQUEST *, const ARGUMENTS &arguments)
{
    return arguments.empty() ? "" : "'" + arguments[0] + "' is one word too many";
}

static std::string FeatureArguments(REQUEST *request, const ARGUMENTS &arguments)
{
    uint32_t code;
    if (arguments.size() != 2)
        return "set-feature needs a VCP code and a value, such as: set-feature 10 50";
    if (!ParseNumber(&code, arguments[0], 0xFF, 16))
        return "'" + arguments[0] + "' is no VCP code: 0 to FF, hexadecimal";
    if (!ParseNumber(&request->dwValue, arguments[1], 0xFFFFFFFF))
        return "'" + arguments[1] + "' is no value: 0 to 4294967295, or hexadecimal with 0x";
    request->bVcpCode = static_cast<uint8_t>(code);
    return "";
}

static std::string RawArguments(REQUEST *request, const ARGUMENTS &arguments)
{
    uint32_t command;
    if (arguments.empty() || arguments.size() == 2 || arguments.size() > 3)
        return "raw needs a command number, then nothing or a VCP code and a value";
    if (!ParseNumber(&command, arguments[0], 0xFF))
        return "'" + arguments[0] + "' is no command number: 0 to 255";
    request->bCommand = static_cast<uint8_t>(command);
    return arguments.size() == 1 ? "" : FeatureArguments(request, {arguments[1], arguments[2]});
}

static std::string MessageArguments(REQUEST *request, const ARGUMENTS &arguments)
{
    if (arguments.size() != 1 || arguments[0].size() > 1000)
        return "message needs one text of at most 1000 bytes; put it into quotation marks";
    request->message = arguments[0];
    return "";
}

// The settings of set-all, by name.
struct COLORWORD {
    const char *lpszName;
    uint16_t SERVERCOLORS::*lpValue;
    bool bNeeded;
};

static const COLORWORD s_ColorWords[] = {
    {"brightness", &SERVERCOLORS::wBright, true}, {"brightness-eco", &SERVERCOLORS::wBrightEco, false},
    {"contrast", &SERVERCOLORS::wContrast, true}, {"red", &SERVERCOLORS::wRed, false},
    {"green", &SERVERCOLORS::wGreen, false},      {"blue", &SERVERCOLORS::wBlue, false},
};

// One "name=value" of set-all. False when it is not known or its value is out of range.
static bool ParseColor(SERVERCOLORS *colors, const std::string &name, const std::string &value)
{
    uint32_t number = 0;
    if (name == "eco") {
        colors->dwEco = value == "on";
        return value == "on" || value == "off";
    }
    if (name == "preset") {
        const bool good = ParseNumber(&number, value, 15);
        colors->wColorTemp = static_cast<int16_t>(number);
        return good;
    }
    for (const COLORWORD &word : s_ColorWords)
        if (name == word.lpszName) {
            const bool good = ParseNumber(&number, value, 0xFFFF);
            colors->*word.lpValue = static_cast<uint16_t>(number);
            return good;
        }
    return false;
}

static std::string SetAllArguments(REQUEST *request, const ARGUMENTS &arguments)
{
    SERVERCOLORS colors = {};
    std::string given = " ";
    for (const std::string &argument : arguments) {
        const size_t equals = argument.find('=');
        const std::string name = argument.substr(0, equals);
        if (equals == std::string::npos || !ParseColor(&colors, name, argument.substr(equals + 1)))
            return "'" + argument + "' is no setting of set-all; see --help";
        given += name + " ";
    }
    const auto missing = [&](const std::string &name) { return given.find(" " + name + " ") == std::string::npos; };
    for (const char *name : {"eco", "preset"})
        if (missing(name))
            return std::string("set-all needs ") + name + "=...";
    for (const COLORWORD &word : s_ColorWords) {
        const bool gain = word.lpValue == &SERVERCOLORS::wRed || word.lpValue == &SERVERCOLORS::wGreen ||
                          word.lpValue == &SERVERCOLORS::wBlue;
        if (missing(word.lpszName) && (word.bNeeded || (gain && colors.wColorTemp >= COLOR_PRESET_FIRST_USER)))
            return std::string("set-all needs ") + word.lpszName + "=...";
    }
    if (missing("brightness-eco"))
        colors.wBrightEco = colors.wBright;
    request->colors = colors;
    return "";
}

// ---- Commands -----------------------------------------------------------------------------------------------------

struct COMMANDWORD {
    const char *lpszName;
    const char *lpszChoice; // second word that belongs to the name; null: none
    uint8_t bCommand;
    std::string (*lpfnArguments)(REQUEST *, const ARGUMENTS &);
};

static const COMMANDWORD s_CommandWords[] = {
    {"set-feature", nullptr, SERVER_SET_FEATURE, FeatureArguments},
    {"set-all", nullptr, SERVER_SET_ALL, SetAllArguments},
    {"power", "off", SERVER_POWER_OFF, NoArguments},
    {"power", "on", SERVER_POWER_ON, NoArguments},
    {"eco", "off", SERVER_ECO_OFF, NoArguments},
    {"eco", "on", SERVER_ECO_ON, NoArguments},
    {"auto-adjust", nullptr, SERVER_AUTO_ADJUST, NoArguments},
    {"input", "analog", SERVER_INPUT_ANALOG, NoArguments},
    {"input", "digital", SERVER_INPUT_DIGITAL, NoArguments},
    {"input", "tv", SERVER_INPUT_TV, NoArguments},
    {"input", "s-video", SERVER_INPUT_SVIDEO, NoArguments},
    {"input", "composite", SERVER_INPUT_COMPOSITE, NoArguments},
    {"identity", nullptr, SERVER_IDENTITY, NoArguments},
    {"version", nullptr, SERVER_VERSION, NoArguments},
    {"allow-names", nullptr, SERVER_ALLOW_NAMES, NoArguments},
    {"message", nullptr, SERVER_MESSAGE, MessageArguments},
    {"raw", nullptr, 0, RawArguments},
};

static std::string ParseCommand(REQUEST *request, const ARGUMENTS &words)
{
    std::string choices;
    for (const COMMANDWORD &word : s_CommandWords) {
        if (words[0] != word.lpszName)
            continue;
        const size_t used = word.lpszChoice ? 2 : 1;
        if (word.lpszChoice && (words.size() < 2 || words[1] != word.lpszChoice)) {
            choices += (choices.empty() ? "" : ", ") + std::string(word.lpszChoice);
            continue;
        }
        request->name = words[0] + (word.lpszChoice ? std::string(" ") + word.lpszChoice : "");
        request->bCommand = word.bCommand;
        return word.lpfnArguments(request, ARGUMENTS(words.begin() + static_cast<ptrdiff_t>(used), words.end()));
    }
    return choices.empty() ? "'" + words[0] + "' is no command; see --help" : words[0] + " needs one of: " + choices;
}

// ---- Options ------------------------------------------------------------------------------------------------------

static bool ParseTimeout(uint32_t *milliseconds, const std::string &text)
{
    char *end = nullptr;
    const double seconds = strtod(text.c_str(), &end);
    if (text.empty() || *end || !(seconds >= 0.1 && seconds <= 3600))
        return false;
    *milliseconds = static_cast<uint32_t>(seconds * 1000);
    return true;
}

// An option that has a value.
static bool ParseOption(REQUEST *request, const std::string &name, const std::string &value)
{
    if (name == "--timeout")
        return ParseTimeout(&request->dwTimeoutMs, value);
    uint32_t *address = name == "--to" ? &request->dwTo : name == "--target" ? &request->dwTarget : &request->dwServer;
    return ParseAddress(address, value);
}

std::string ParseCommandLine(REQUEST *lpRequest, const std::vector<std::string> &arguments)
{
    size_t index = 0;
    for (; index < arguments.size() && arguments[index].compare(0, 2, "--") == 0; ++index) {
        const std::string &name = arguments[index];
        if (name == "--help") {
            lpRequest->bHelp = true;
            return "";
        }
        if (name == "--json") {
            lpRequest->bJson = true;
            continue;
        }
        if (name != "--to" && name != "--target" && name != "--server" && name != "--timeout")
            return "'" + name + "' is no option; see --help";
        if (++index == arguments.size())
            return name + " needs a value";
        if (!ParseOption(lpRequest, name, arguments[index]))
            return "'" + arguments[index] + "' is no value for " + name + "; see --help";
    }
    if (index == arguments.size())
        return "no command given; see --help";
    return ParseCommand(lpRequest, ARGUMENTS(arguments.begin() + static_cast<ptrdiff_t>(index), arguments.end()));
}

std::string HelpText()
{
    return R"(lvserver sends one command to a Lumivane 2 client, as the management server does,
and prints what comes back.

Usage: lvserver [OPTIONS] COMMAND [ARGUMENTS]

Options
  --to ADDRESS       where the datagram goes, also a broadcast address (127.0.0.1)
  --target ADDRESS   the one client that is meant (all that receive it)
  --server ADDRESS   the address of this PC that clients answer to (found by itself)
  --timeout SECONDS  how long to wait for the final reply, 0.1 to 3600 (15)
  --json             print one JSON object instead of lines
  --help             print this

Commands; all act on the monitor that is chosen in the client's panel
  set-feature CODE VALUE        write a VCP feature; the code is hexadecimal
  set-all NAME=VALUE ...        write all colour settings:
      eco=on|off brightness=N contrast=N preset=0..15 [brightness-eco=N]
      and for presets 11 to 15 also red=N green=N blue=N
  power on|off                  switch all monitors of the client
  eco on|off                    switch the ECO mode
  auto-adjust                   start the automatic adjustment
  input analog|digital|tv|s-video|composite
  identity                      ask for the user name
  version                       ask for the version
  allow-names                   let the user change user and group name once
  message TEXT                  show a message box, which the client leaves empty: the
                                text lies beyond what it reads of a datagram. The reply
                                comes when the box is closed
  raw N [CODE VALUE]            send command number N, 0 to 255; for one that it does not
                                know, the client shows a box first

Examples
  lvserver version
  lvserver set-feature 10 50
  lvserver set-all eco=off brightness=60 contrast=70 preset=5
  lvserver --to 192.0.2.255 --target 192.0.2.17 input tv
  lvserver --json --timeout 3 identity

UDP port 9700 of the client and TCP port 9700 of this PC must be reachable. A client that
is busy with a command loses what arrives meanwhile: send it again.

Exit status: 0 the client carried the command out, 1 it refused it, 2 wrong command line,
3 no final reply came in time, 4 the network or TCP port 9700 cannot be used.
)";
}

std::vector<uint8_t> BuildDatagram(const REQUEST *lpRequest, uint32_t dwServerAddr)
{
    SERVERCMD command = {};
    command.dwServerAddr = dwServerAddr;
    command.dwTargetAddr = lpRequest->dwTarget;
    command.dwValue = lpRequest->dwValue;
    command.bCommand = lpRequest->bCommand;
    command.bVcpCode = lpRequest->bVcpCode;
    // The whole of what a client receives, so that nothing of an earlier datagram stays behind it.
    std::vector<uint8_t> datagram(SERVER_DATAGRAM_SIZE);
    memcpy(datagram.data(), &command, sizeof command);
    if (lpRequest->bCommand == SERVER_MESSAGE) {
        datagram.resize(SERVER_MESSAGE_OFFSET + lpRequest->message.size() + 1);
        memcpy(datagram.data() + SERVER_MESSAGE_OFFSET, lpRequest->message.c_str(), lpRequest->message.size() + 1);
    }
    return datagram;
}
