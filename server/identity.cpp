// The identity record: from the settings to the host.
#include "server/identity.h"

#include "kernel/base/texts.h"
#include "kernel/link/host_packet.h"
#include "settings/setting_table.h"

#include <cstring>

constexpr DWORD NET_SPEC_SIZE = 26; // of which the record has the head

static void ReadNetSpec(BYTE (&head)[HOST_IDENTITY_NET_SIZE])
{
    BYTE netSpec[NET_SPEC_SIZE] = {};
    REGENTRY entry = SettingEntry(SETTING_NET_SPEC, netSpec, sizeof netSpec);
    if (ReadSetting(&entry) && entry.dwType == REG_BINARY)
        memcpy(head, netSpec, sizeof head);
}

void BuildIdentity(HOSTIDENTITY *lpIdentity)
{
    *lpIdentity = HOSTIDENTITY{};
    ReadSettingString(SETTING_USER_NAME, lpIdentity->szUserName, sizeof lpIdentity->szUserName);
    ReadSettingString(SETTING_GROUP_NAME, lpIdentity->szGroupName, sizeof lpIdentity->szGroupName);
    ReadNetSpec(lpIdentity->bNetSpec);
}

int SendIdentity(const HOSTPACKET *lpCommand, DWORD dwRequestID)
{
    HOSTIDENTITY identity;
    BuildIdentity(&identity);
    const REPLYRESULT result = AnswerCommand(lpCommand, dwRequestID, PLUGIN_REPLY_RECORD, &identity, sizeof identity);
    if (result == REPLYRESULT::NoHeader)
        ShowBox(nullptr, "Memory Set Error", "Error", MB_OK);
    return result == REPLYRESULT::Sent;
}

int PluginSendIdentity(void *)
{
    HOSTPACKET command = {};
    command.src = PLUGIN_IDENTITY_RECEIVER;
    command.wCommand = PLUGIN_IDENTITY_COMMAND;
    command.wFlags = PLUGIN_IDENTITY_FLAGS;
    return SendIdentity(&command, 0);
}
