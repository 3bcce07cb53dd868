// The identity record: from the settings to the host.
#include "server/identity.h"

#include "kernel/base/texts.h"
#include "kernel/link/host_packet.h"
#include "settings/registry.h"

#include <cstring>

constexpr DWORD NET_SPEC_SIZE = 26; // of which the record has the head

static void ReadNetSpec(BYTE (&head)[HOST_IDENTITY_NET_SIZE])
{
    BYTE netSpec[NET_SPEC_SIZE] = {};
    REGENTRY entry = {SUBKEY_HOST_SETTINGS, "MyNetSpec", REG_BINARY, netSpec, sizeof netSpec};
    if (ReadSetting(&entry) && entry.dwType == REG_BINARY)
        memcpy(head, netSpec, sizeof head);
}

void BuildIdentity(HOSTIDENTITY *lpIdentity)
{
    *lpIdentity = HOSTIDENTITY{};
    ReadSettingText(SUBKEY_GENERAL, VALUE_USER_NAME, lpIdentity->szUserName, sizeof lpIdentity->szUserName);
    ReadSettingText(SUBKEY_GENERAL, VALUE_GROUP_NAME, lpIdentity->szGroupName, sizeof lpIdentity->szGroupName);
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
