// Shutting the PC down, on both platform families.
#include "launcher/shutdown.h"

#include "kernel/base/platform.h"

// The Windows 95 family knows no privileges. Where this fails, the shutdown itself is refused and says so.
static void EnableShutdownPrivilege()
{
    HANDLE hToken;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_ADJUST_PRIVILEGES, &hToken))
        return;
    TOKEN_PRIVILEGES privileges = {};
    privileges.PrivilegeCount = 1;
    privileges.Privileges[0].Attributes = SE_PRIVILEGE_ENABLED;
    LookupPrivilegeValueA(nullptr, "SeShutdownPrivilege", &privileges.Privileges[0].Luid);
    AdjustTokenPrivileges(hToken, FALSE, &privileges, 0, nullptr, nullptr);
    CloseHandle(hToken);
}

int ShutdownPc()
{
    switch (GetPlatformId()) {
    case PLATFORM_NT:
        EnableShutdownPrivilege();
        return ExitWindowsEx(EWX_POWEROFF | EWX_FORCE, 0);
    case PLATFORM_WIN95:
        return ExitWindowsEx(EWX_SHUTDOWN | EWX_FORCE, 0);
    }
    return 0;
}
