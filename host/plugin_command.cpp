// Commands that the host gives the plug-in through slot 16: one table of words, numbers, readers and tellers.
#include "host/plugin_command.h"

#include <cstring>

#include "host/base/packet_log.h"
#include "host/base/text.h"
#include "monitor/vcp_codes.h"

constexpr WORD REPLY_NONE = 0xFFFE;  // the command gets no reply
constexpr WORD COMMAND_CARRIER = 16; // HOSTPACKET::wCommand of every command

static DWORD s_nLastRequest; // request number of the last command; window's thread only

typedef std::vector<std::string> WORDS; // the words behind the command's own

// ---- Reading a line -------------------------------------------------------------------------------------------------

static bool NoWords(const WORDS &words, std::vector<BYTE> *, std::string *error)
{
    *error = "takes nothing more";
    return words.empty();
}

static bool ReadGetSettings(const WORDS &words, std::vector<BYTE> *payload, std::string *error)
{
    payload->assign(sizeof(HOSTCOLORS), 0); // no field all ones: every one is asked for
    return NoWords(words, payload, error);
}

// The fields that the command takes; it has no use for the gains.
static const struct {
    const char *name;
    WORD HOSTCOLORS::*field;
} s_settingFields[] = {
    {"bright", &HOSTCOLORS::wBright},
    {"brighteco", &HOSTCOLORS::wBrightEco},
    {"contrast", &HOSTCOLORS::wContrast},
    {"preset", &HOSTCOLORS::wColorPreset},
};

static bool ReadSetting(const std::string &word, HOSTCOLORS *settings)
{
    const size_t equals = word.find('=');
    const std::string name = word.substr(0, equals);
    unsigned value = 0;
    if (equals == std::string::npos || !ParseNumber(word.substr(equals + 1), 10, 0xFFFF, &value))
        return false;
    if (name == "eco") {
        settings->dwEco = value;
        return true;
    }
    for (const auto &entry : s_settingFields) {
        if (name == entry.name) {
            settings->*entry.field = static_cast<WORD>(value);
            return true;
        }
    }
    return false;
}

static bool ReadSetSettings(const WORDS &words, std::vector<BYTE> *payload, std::string *error)
{
    HOSTCOLORS settings;
    memset(&settings, 0xFF, sizeof settings); // all ones: leave alone
    *error = "takes FIELD=VALUE with eco, bright, brighteco, contrast, preset";
    for (const std::string &word : words)
        if (!ReadSetting(word, &settings))
            return false;
    const BYTE *bytes = reinterpret_cast<const BYTE *>(&settings);
    payload->assign(bytes, bytes + sizeof settings);
    return !words.empty();
}

static void FillVcpPayload(std::vector<BYTE> *payload, DWORD operation, DWORD value, BYTE code)
{
    AppendDword(payload, operation);
    AppendDword(payload, value);
    AppendDword(payload, code);
}

static bool ReadGetVcp(const WORDS &words, std::vector<BYTE> *payload, std::string *error)
{
    unsigned code = 0;
    *error = "takes a VCP code of two hexadecimal digits";
    if (words.size() != 1 || !ParseNumber(words[0], 16, 0xFF, &code))
        return false;
    FillVcpPayload(payload, 0, 0, static_cast<BYTE>(code));
    return true;
}

static bool ReadSetVcp(const WORDS &words, std::vector<BYTE> *payload, std::string *error)
{
    unsigned code = 0, value = 0;
    *error = "takes a VCP code of two hexadecimal digits (but F2: see lock) and a value from 0 to 65535";
    if (words.size() != 2 || !ParseNumber(words[0], 16, 0xFF, &code) || !ParseNumber(words[1], 10, 0xFFFF, &value) ||
        code == VCP_BUTTON_LOCK)
        return false;
    FillVcpPayload(payload, 0, value, static_cast<BYTE>(code));
    return true;
}

static bool ReadLock(const WORDS &words, std::vector<BYTE> *payload, std::string *error, DWORD operation)
{
    unsigned mask = 0;
    *error = "takes a button mask from 0 to 255 (1 2 4 8 16 for buttons 1 to 5, 128 for POWER)";
    if (words.size() != 1 || !ParseNumber(words[0], 10, 0xFF, &mask))
        return false;
    FillVcpPayload(payload, operation, mask, VCP_BUTTON_LOCK);
    return true;
}

static bool ReadLockOn(const WORDS &words, std::vector<BYTE> *payload, std::string *error)
{
    return ReadLock(words, payload, error, HOSTVCP_LOCK);
}

static bool ReadLockOff(const WORDS &words, std::vector<BYTE> *payload, std::string *error)
{
    return ReadLock(words, payload, error, HOSTVCP_UNLOCK);
}

static bool ReadLockSet(const WORDS &words, std::vector<BYTE> *payload, std::string *error)
{
    return ReadLock(words, payload, error, HOSTVCP_SET);
}

static bool ReadPolicy(const WORDS &words, std::vector<BYTE> *payload, std::string *error)
{
    *error = "takes allow or forbid";
    if (words.size() != 1 || (words[0] != "allow" && words[0] != "forbid"))
        return false;
    AppendDword(payload, words[0] == "allow");
    return true;
}

// ---- Answers in words -----------------------------------------------------------------------------------------------

static std::string SettingText(const char *name, WORD value)
{
    return value == HOSTCOLORS_KEEP ? Format("%s not read", name) : Format("%s %u", name, value);
}

// The reply itself carries nothing of meaning; the command's own block has been filled in.
static std::string TellSettings(const PLUGINANSWER &answer)
{
    HOSTCOLORS settings;
    if (answer.block.size() != sizeof settings)
        return "the answer has a wrong size";
    memcpy(&settings, answer.block.data(), sizeof settings);
    const bool isEco = settings.dwEco != 0;
    return Format("eco %d, ", static_cast<int>(settings.dwEco)) +
           SettingText(isEco ? "brightness with eco" : "brightness", isEco ? settings.wBrightEco : settings.wBright) +
           ", " + SettingText("contrast", settings.wContrast) + ", " + SettingText("red", settings.wRed) + ", " +
           SettingText("green", settings.wGreen) + ", " + SettingText("blue", settings.wBlue) + ", " +
           SettingText("preset", settings.wColorPreset);
}

static std::string TellVcp(const PLUGINANSWER &answer)
{
    const int maximum = static_cast<int>(PayloadDword(&answer.reply, 0));
    const int value = static_cast<int>(PayloadDword(&answer.reply, 4));
    const BYTE code = static_cast<BYTE>(PayloadDword(&answer.reply, 8));
    if (code == VCP_BUTTON_LOCK && PacketData(&answer.reply)->wCode == PLUGIN_COMMAND_WRITE_VCP)
        return "button lock: done";
    if (value == -1)
        return Format("%s (0x%02X): cannot be read", VcpShortName(code), code);
    return Format("%s (0x%02X): %d of %d", VcpShortName(code), code, value, maximum);
}

static std::string TellCount(const PLUGINANSWER &answer)
{
    return Format("%d monitors", static_cast<int>(PayloadDword(&answer.reply, 0)));
}

static std::string TellResult(const PLUGINANSWER &answer)
{
    return Format("result %u", PayloadWord(&answer.reply, 0));
}

static std::string TellBytes(const PLUGINANSWER &answer)
{
    return Format("%lu bytes", PayloadSize(&answer.reply));
}

// The names are in the code page of the system that wrote them.
static std::string AnsiText(const char *text, size_t size)
{
    const int length = static_cast<int>(strnlen(text, size));
    wchar_t wide[64];
    return Narrow(std::wstring(wide, static_cast<size_t>(MultiByteToWideChar(CP_ACP, 0, text, length, wide, 64))));
}

static std::string TellIdentity(const PLUGINANSWER &answer)
{
    HOSTIDENTITY identity;
    if (PayloadSize(&answer.reply) != sizeof identity)
        return "the answer has a wrong size";
    memcpy(&identity, HostPayload(PacketData(&answer.reply)), sizeof identity);
    std::string net;
    for (const BYTE byte : identity.bNetSpec)
        net += Format("%02X", byte);
    return "user " + Quoted(AnsiText(identity.szUserName, sizeof identity.szUserName)) + ", group " +
           Quoted(AnsiText(identity.szGroupName, sizeof identity.szGroupName)) + ", network " + net;
}

// ---- The table ------------------------------------------------------------------------------------------------------

static const struct COMMANDKIND {
    const char *word;
    const char *arguments;
    const char *meaning;
    WORD code;
    WORD replyCode;
    bool (*read)(const WORDS &words, std::vector<BYTE> *payload, std::string *error);
    std::string (*tell)(const PLUGINANSWER &answer);
} s_commands[] = {
    {"get-settings", "", "read ECO mode, brightness, contrast, preset and gains", PLUGIN_COMMAND_READ_COLORS,
     PLUGIN_REPLY_RECORD, ReadGetSettings, TellSettings},
    {"set-settings", "FIELD=N ...",
     "write eco (0, 1), bright, brighteco, contrast, preset; the preset is always written", PLUGIN_COMMAND_WRITE_COLORS,
     PLUGIN_REPLY_RESULT, ReadSetSettings, TellResult},
    {"get-vcp", "CODE", "read a VCP code (hexadecimal)", PLUGIN_COMMAND_READ_VCP, PLUGIN_COMMAND_READ_VCP, ReadGetVcp,
     TellVcp},
    {"set-vcp", "CODE N", "write a VCP code and read it back", PLUGIN_COMMAND_WRITE_VCP, PLUGIN_COMMAND_WRITE_VCP,
     ReadSetVcp, TellVcp},
    {"lock", "MASK", "lock buttons (1 2 4 8 16 = buttons 1 to 5, 128 = POWER)", PLUGIN_COMMAND_WRITE_VCP,
     PLUGIN_COMMAND_WRITE_VCP, ReadLockOn, TellVcp},
    {"unlock", "MASK", "toggle the lock of these buttons", PLUGIN_COMMAND_WRITE_VCP, PLUGIN_COMMAND_WRITE_VCP,
     ReadLockOff, TellVcp},
    {"set-lock", "MASK", "lock these buttons and no others", PLUGIN_COMMAND_WRITE_VCP, PLUGIN_COMMAND_WRITE_VCP,
     ReadLockSet, TellVcp},
    {"count", "", "ask for the number of monitors", PLUGIN_COMMAND_MONITOR_COUNT, PLUGIN_COMMAND_MONITOR_COUNT, NoWords,
     TellCount},
    {"identity", "", "ask for the identity record", PLUGIN_COMMAND_IDENTITY, PLUGIN_REPLY_RECORD, NoWords,
     TellIdentity},
    {"send-identity", "", "have the identity record sent without a command", PLUGIN_COMMAND_IS_SLOT,
     PLUGIN_REPLY_RECORD, NoWords, TellIdentity},
    {"power-off", "", "switch the monitors off", PLUGIN_COMMAND_POWER_OFF, PLUGIN_REPLY_RESULT, NoWords, TellResult},
    {"power-on", "", "switch the monitors on", PLUGIN_COMMAND_POWER_ON, PLUGIN_REPLY_RESULT, NoWords, TellResult},
    {"policy", "allow|forbid", "let the user open the Display control panel, or not", PLUGIN_COMMAND_DISPLAY_CPL,
     PLUGIN_REPLY_RESULT, ReadPolicy, TellResult},
    {"allow-names", "", "let the user change the names shown to the server", PLUGIN_COMMAND_ALLOW_NAME_CHANGE,
     PLUGIN_REPLY_RESULT, NoWords, TellResult},
    {"nothing", "", "a command without effect, answered with 256 zero bytes", PLUGIN_COMMAND_EMPTY_RECORD,
     PLUGIN_COMMAND_EMPTY_RECORD, NoWords, TellBytes},
    {"ignore", "", "a command without effect or answer", PLUGIN_COMMAND_NONE, REPLY_NONE, NoWords, TellBytes},
    {"shutdown-pc", "", "shut this PC down, at once and without a question", PLUGIN_COMMAND_SHUT_DOWN, REPLY_NONE,
     NoWords, TellBytes},
};

// By the first word of a line; null when it is no command.
static const COMMANDKIND *FindCommandKind(const std::string &line)
{
    const WORDS words = SplitWords(line);
    for (const COMMANDKIND &kind : s_commands)
        if (!words.empty() && words[0] == kind.word)
            return &kind;
    return nullptr;
}

bool ParsePluginCommand(const std::string &line, PLUGINCOMMAND *command, std::string *error)
{
    const COMMANDKIND *kind = FindCommandKind(line);
    if (!kind) {
        *error = Format("'%s' is no command; --help lists them", line.c_str());
        return false;
    }
    *command = {line, kind->code, {}};
    WORDS words = SplitWords(line);
    words.erase(words.begin());
    std::string reason;
    if (kind->read(words, &command->payload, &reason))
        return true;
    *error = Format("'%s': %s %s", line.c_str(), kind->word, reason.c_str());
    return false;
}

std::string DescribePluginCommands()
{
    std::string text;
    for (const COMMANDKIND &kind : s_commands)
        text += Format("      %-26s %s\n", (std::string(kind.word) + " " + kind.arguments).c_str(), kind.meaning);
    return text;
}

// ---- Sending --------------------------------------------------------------------------------------------------------

// The plug-in frees the block of the shutdown command itself, with the process heap, so every block comes from there.
static HOSTDATA *MakeCommandBlock(const PLUGINCOMMAND &command, DWORD request)
{
    const PACKET packet = MakePacket({}, {}, 0, command.code, request, command.payload);
    void *block = HeapAlloc(GetProcessHeap(), 0, packet.data.size());
    if (block)
        memcpy(block, packet.data.data(), packet.data.size());
    return static_cast<HOSTDATA *>(block);
}

static int CallCommandSlot(ROUTER *router, const PLUGINCOMMAND &command, DWORD request, PLUGINANSWER *answer)
{
    HOSTDATA *block = MakeCommandBlock(command, request);
    if (!block)
        return 0;
    HOSTPACKET header = {};
    header.src = HostEndpoint();
    header.dst = {PLUGIN_ENDPOINT_ID, ENDPOINT_CLASS, ENDPOINT_SUBCLASS_PLUGIN};
    header.wFlags = 1;
    header.dwDataSize = block->dwSize;
    header.lpData = block;
    header.wCommand = COMMAND_CARRIER;
    const int result = router->slots[PLUGIN_SLOT_COMMAND](&header);
    if (command.code != PLUGIN_COMMAND_SHUT_DOWN) {
        answer->block.assign(HostPayload(block), HostPayload(block) + command.payload.size());
        HeapFree(GetProcessHeap(), 0, block);
    }
    return result;
}

// The reply to the count carries the block's size where the others carry its request number.
static bool IsReplyTo(const PACKET &reply, const PLUGINCOMMAND &command, const COMMANDKIND &kind, DWORD request)
{
    DWORD number = request;
    if (command.code == PLUGIN_COMMAND_MONITOR_COUNT)
        number = static_cast<DWORD>(sizeof(HOSTDATA) + command.payload.size());
    if (command.code == PLUGIN_COMMAND_IS_SLOT)
        number = 0;
    return PacketData(&reply)->wCode == kind.replyCode && PacketData(&reply)->dwRequestID == number;
}

PLUGINANSWER SendPluginCommand(ROUTER *router, const PLUGINCOMMAND &command)
{
    PLUGINANSWER answer = {};
    const COMMANDKIND *kind = FindCommandKind(command.text);
    if (!kind)
        return answer;
    PACKET reply;
    while (TakeReply(router, &reply)) {
        // What is still here belongs to no command any more.
    }
    const DWORD request = ++s_nLastRequest;
    LogLine("host>plugin", "command", Format("code=%u id=%lu text=", command.code, request) + Quoted(command.text));
    const bool isSlot = command.code == PLUGIN_COMMAND_IS_SLOT;
    const int result =
        isSlot ? router->slots[PLUGIN_SLOT_SEND_IDENTITY](nullptr) : CallCommandSlot(router, command, request, &answer);
    answer.accepted = result == 1;
    while (!answer.answered && TakeReply(router, &reply)) {
        answer.answered = IsReplyTo(reply, command, *kind, request);
        if (answer.answered)
            answer.reply = std::move(reply);
    }
    LogLine("host>plugin", "slot",
            Format("slot=%d result=%d answered=%d", isSlot ? PLUGIN_SLOT_SEND_IDENTITY : PLUGIN_SLOT_COMMAND, result,
                   answer.answered));
    return answer;
}

bool WentWell(const PLUGINCOMMAND &command, const PLUGINANSWER &answer)
{
    const COMMANDKIND *kind = FindCommandKind(command.text);
    return kind && answer.accepted && (answer.answered || kind->replyCode == REPLY_NONE);
}

std::string DescribePluginAnswer(const PLUGINCOMMAND &command, const PLUGINANSWER &answer)
{
    const COMMANDKIND *kind = FindCommandKind(command.text);
    if (!answer.accepted || !kind)
        return "refused by the plug-in";
    if (kind->replyCode == REPLY_NONE)
        return "sent; it has no answer";
    return answer.answered ? kind->tell(answer) : "no answer";
}
