// Slot 16: the table of the host's commands, and the commands that touch no monitor's features.
#include "kernel/host_command.h"

#include "kernel/host_monitor_command.h"
#include "kernel/link/host_packet.h"
#include "kernel/link/packet_check.h"
#include "launcher/launcher_settings.h"
#include "launcher/shutdown.h"
#include "monitor/monitor_power.h"
#include "monitor/monitor_table.h"
#include "server/identity.h"
#include "settings/setting_table.h"

#include <cstring>

constexpr int SHUTDOWN_TRIES = 3;

static void AnswerResult(const HOSTPACKET *command, bool done)
{
    const WORD result = done ? 1 : 0;
    AnswerCommand(command, command->lpData->dwRequestID, PLUGIN_REPLY_RESULT, &result, sizeof result);
}

static void AnswerEmptyRecord(const HOSTPACKET *command)
{
    const BYTE record[PLUGIN_EMPTY_RECORD_SIZE] = {};
    AnswerCommand(command, command->lpData->dwRequestID, PLUGIN_COMMAND_EMPTY_RECORD, record, sizeof record);
}

// ---- Power --------------------------------------------------------------------------------------------------------

static void SwitchMonitorPower(const HOSTPACKET *command, LPARAM state)
{
    AnswerResult(command, BroadcastMonitorPower(state) == 0);
}

static void PowerOff(const HOSTPACKET *command)
{
    SwitchMonitorPower(command, MONITOR_POWER_OFF);
}

static void PowerOn(const HOSTPACKET *command)
{
    SwitchMonitorPower(command, MONITOR_POWER_ON);
}

static void ShutDown(const HOSTPACKET *command)
{
    for (int attempt = 0; attempt < SHUTDOWN_TRIES; ++attempt)
        if (ShutdownPc()) {
            WriteEndFlag();
            break;
        }
    // The host's block, but ours to release for this one command: the host must not, and may be ending by now.
    FreeDataBlock(command->lpData);
}

// ---- What this PC is ----------------------------------------------------------------------------------------------

static void AnswerMonitorCount(const HOSTPACKET *command)
{
    const LONG count = g_nMonitor;
    // The block's size in the place of the request number: the host tells this reply by it, and would wait for its
    // answer in vain otherwise.
    AnswerCommand(command, command->lpData->dwSize, PLUGIN_COMMAND_MONITOR_COUNT, &count, sizeof count);
}

static void AnswerIdentity(const HOSTPACKET *command)
{
    SendIdentity(command, command->lpData->dwRequestID);
}

static void AllowNameChange(const HOSTPACKET *command)
{
    AnswerResult(command, WriteSettingNumber(SETTING_ENABLE_CHANGE_NAME, 1) != 0);
}

// ---- Display control panel ----------------------------------------------------------------------------------------

constexpr DWORD POLICY_UNREADABLE = 2; // any value but 1, which forbids, and 0
constexpr DWORD REQUEST_FORBID = 0;
constexpr DWORD REQUEST_ALLOW = 1;
constexpr int POLICY_AS_ASKED = -1;

static DWORD ReadPolicy()
{
    DWORD stored = 0;
    REGENTRY entry = SettingEntry(SETTING_NO_DISPLAY_CPL, &stored, sizeof stored);
    if (!ReadPolicySetting(&entry) || entry.dwType != REG_DWORD || entry.cbData != sizeof stored)
        return POLICY_UNREADABLE;
    return stored;
}

static void WritePolicy(DWORD value)
{
    const REGENTRY entry = SettingEntry(SETTING_NO_DISPLAY_CPL, &value, sizeof value);
    WritePolicySetting(&entry);
}

int SetDisplayCplPolicy(const HOSTPACKET *lpCommand)
{
    const HOSTDATA *data = lpCommand->lpData;
    DWORD request;
    if (!data || data->dwSize != lpCommand->dwDataSize || data->dwSize < sizeof *data + sizeof request)
        return 1;
    memcpy(&request, HostPayload(data), sizeof request);

    const bool allow = request == REQUEST_ALLOW;
    const DWORD wanted = allow ? 0 : 1;
    // Requests beyond the two forbid, and are never as asked already: they write what is there once more.
    if ((allow || request == REQUEST_FORBID) && ReadPolicy() == wanted)
        return POLICY_AS_ASKED;
    WritePolicy(wanted);
    return allow;
}

static void ChangeDisplayCplPolicy(const HOSTPACKET *command)
{
    AnswerResult(command, SetDisplayCplPolicy(command) != POLICY_AS_ASKED);
}

// ---- Table --------------------------------------------------------------------------------------------------------

static void DoNothing(const HOSTPACKET *) {}

struct COMMANDENTRY {
    WORD wCommand;
    DWORD cbPayload; // a shorter one is ignored
    void (*lpfnCarryOut)(const HOSTPACKET *);
};

static const COMMANDENTRY s_Commands[] = {
    {PLUGIN_COMMAND_READ_COLORS, sizeof(HOSTCOLORS), ReadColors},
    {PLUGIN_COMMAND_WRITE_COLORS, sizeof(HOSTCOLORS), WriteColors},
    {PLUGIN_COMMAND_EMPTY_RECORD, 0, AnswerEmptyRecord},
    {PLUGIN_COMMAND_READ_VCP, sizeof(HOSTVCP), ReadFeature},
    {PLUGIN_COMMAND_WRITE_VCP, sizeof(HOSTVCP), WriteFeature},
    {PLUGIN_COMMAND_POWER_OFF, 0, PowerOff},
    {PLUGIN_COMMAND_POWER_ON, 0, PowerOn},
    {PLUGIN_COMMAND_MONITOR_COUNT, 0, AnswerMonitorCount},
    {PLUGIN_COMMAND_SHUT_DOWN, 0, ShutDown},
    {PLUGIN_COMMAND_NONE, 0, DoNothing},
    {PLUGIN_COMMAND_IDENTITY, 0, AnswerIdentity},
    {PLUGIN_COMMAND_ALLOW_NAME_CHANGE, 0, AllowNameChange},
    {PLUGIN_COMMAND_DISPLAY_CPL, sizeof(DWORD), ChangeDisplayCplPolicy},
};

void HandleHostCommand(WORD wCommand, const HOSTPACKET *lpPacket)
{
    // Copied: the reply needs the header after many a message to the host, which may use it for the next packet.
    const HOSTPACKET packet = *lpPacket;
    for (const COMMANDENTRY &command : s_Commands)
        if (command.wCommand == wCommand && HoldsPayload(packet.dwDataSize, command.cbPayload))
            command.lpfnCarryOut(&packet);
}

int PluginCommand(void *lpPacket)
{
    const HOSTPACKET *packet = static_cast<const HOSTPACKET *>(lpPacket);
    // The two sizes are compared whatever they say: a block that claims to hold nothing is one of no command, not a
    // wrong one.
    if (!packet || !packet->lpData || packet->lpData->dwSize != packet->dwDataSize)
        return 0;
    // A block without a whole head has no command number.
    if (HoldsPayload(packet->dwDataSize, 0))
        HandleHostCommand(packet->lpData->wCode, packet);
    return 1;
}
