// First-run set-up of user and group name.
#include "server/identity_setup.h"

#include "kernel/base/platform.h"
#include "server/identity.h"
#include "settings/setting_table.h"

#include <windows.h>
#include <winsock.h>

constexpr WORD WINSOCK_VERSION = MAKEWORD(1, 1);
constexpr DWORD DOMAIN_SIZE = 256; // a DNS name has at most 255 characters

// False when there is none.
static bool GetHostName(char (&name)[HOST_IDENTITY_NAME_SIZE])
{
    WSADATA data;
    if (WSAStartup(WINSOCK_VERSION, &data) != 0)
        return false;
    const bool known = gethostname(name, sizeof name) == 0;
    WSACleanup();
    return known;
}

// Without a host name nothing is stored: an empty name would stay for good, while a missing one is looked up each time.
// False when the name cannot be written.
static bool StoreHostName()
{
    char name[HOST_IDENTITY_NAME_SIZE] = "";
    return !GetHostName(name) || WriteSettingString(SETTING_USER_NAME, name, sizeof name);
}

// GetComputerNameExA, which early versions of both families lack.
typedef BOOL(WINAPI *GETCOMPUTERNAMEEXA)(int nameType, char *lpszName, DWORD *lpnSize);
constexpr int NAME_TYPE_DNS_DOMAIN = 2;

static void StoreDomainName()
{
    const auto getName = FindFunction<GETCOMPUTERNAMEEXA>(GetModuleHandleA("kernel32.dll"), "GetComputerNameExA");
    if (!getName)
        return;
    char name[DOMAIN_SIZE] = "";
    DWORD length = 0;
    getName(NAME_TYPE_DNS_DOMAIN, nullptr, &length); // fails, with the length that it needs
    if (length == 0 || length > sizeof name || !getName(NAME_TYPE_DNS_DOMAIN, name, &length) || length == 0)
        return;
    // The stored text is as long as the second answer says: without its terminator.
    WriteSettingString(SETTING_GROUP_NAME, name, length);
}

void SetupIdentity()
{
    // Names that the user has chosen are not overwritten because the registry fails for a moment.
    if (ReadSettingNumber(SETTING_IDENTITY_MADE) != -1 || WasReadError())
        return;
    WriteSettingNumber(SETTING_IDENTITY_MADE, 1);
    if (StoreHostName())
        StoreDomainName();
}
