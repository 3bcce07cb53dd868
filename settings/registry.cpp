// Registry access: one open, one operation, one close each time.
#include "settings/registry.h"

// Writable data. The second entry is misspelt in every release and used by nothing; a corrected one would be another
// key.
char g_szRegKeyTable[4][64] = {
    "SOFTWARE\\Norvale DEVICE,INC.\\Trayhub",
    "SOFTWARA\\Norvale DEVICE,INC\\Trayhub\\Lumivane2",
    "SOFTWARE\\MICROSOFT\\WINDOWS\\CURRENTVERSION\\POLICIES",
    "CONTROL PANEL",
};

// Joins base and subkey into a buffer of 256 bytes. False when they do not fit.
static bool FormKeyPath(char (&szPath)[256], LPCSTR lpszBase, LPCSTR lpszSubKey)
{
    if (lstrlenA(lpszBase) + 1 + lstrlenA(lpszSubKey) >= static_cast<int>(sizeof szPath))
        return false;
    wsprintfA(szPath, "%s\\%s", lpszBase, lpszSubKey);
    return true;
}

// The result of the call is left to GetLastError. Null on failure.
static HKEY OpenExisting(HKEY hRoot, REGSAM access, LPCSTR lpszBase, LPCSTR lpszSubKey)
{
    char szPath[256];
    HKEY hKey = nullptr;
    LONG result = ERROR_FILE_NOT_FOUND;
    if (FormKeyPath(szPath, lpszBase, lpszSubKey))
        result = RegOpenKeyExA(hRoot, szPath, 0, access, &hKey);
    SetLastError(static_cast<DWORD>(result));
    return result == ERROR_SUCCESS ? hKey : nullptr;
}

int RegWriteEntry(HKEY hRoot, REGSAM access, LPCSTR lpszBase, const REGENTRY *lpEntry)
{
    char szPath[256];
    HKEY hKey;
    DWORD dwDisposition;
    if (!FormKeyPath(szPath, lpszBase, lpEntry->lpszSubKey) ||
        RegCreateKeyExA(hRoot, szPath, 0, nullptr, REG_OPTION_NON_VOLATILE, access, nullptr, &hKey, &dwDisposition) !=
            ERROR_SUCCESS)
        return 0;
    const LONG result = RegSetValueExA(hKey, lpEntry->lpszValueName, 0, lpEntry->dwType,
                                       static_cast<const BYTE *>(lpEntry->lpData), lpEntry->cbData);
    RegCloseKey(hKey);
    return result == ERROR_SUCCESS;
}

int RegReadEntry(HKEY hRoot, REGSAM access, LPCSTR lpszBase, REGENTRY *lpEntry)
{
    const HKEY hKey = OpenExisting(hRoot, access, lpszBase, lpEntry->lpszSubKey);
    if (!hKey)
        return 0;
    // A failed query changes the size, too; the next root must be asked with the real capacity.
    const DWORD cbCapacity = lpEntry->cbData;
    const LONG result = RegQueryValueExA(hKey, lpEntry->lpszValueName, nullptr, &lpEntry->dwType,
                                         static_cast<BYTE *>(lpEntry->lpData), &lpEntry->cbData);
    RegCloseKey(hKey);
    SetLastError(static_cast<DWORD>(result));
    if (result == ERROR_SUCCESS)
        return 1;
    lpEntry->cbData = cbCapacity;
    return 0;
}

int RegDeleteEntry(HKEY hRoot, REGSAM access, LPCSTR lpszBase, const REGENTRY *lpEntry)
{
    const HKEY hKey = OpenExisting(hRoot, access, lpszBase, lpEntry->lpszSubKey);
    if (!hKey)
        return 0;
    const LONG result = RegDeleteValueA(hKey, lpEntry->lpszValueName);
    RegCloseKey(hKey);
    return result == ERROR_SUCCESS;
}

int WriteSetting(const REGENTRY *lpEntry)
{
    return RegWriteEntry(HKEY_CURRENT_USER, KEY_WRITE, g_szRegKeyTable[REGBASE_HOST], lpEntry);
}

static bool IsReadError(DWORD error)
{
    // What the system says of a key or value that is not there (the Windows 95 family in two ways), or is too long.
    return error != ERROR_SUCCESS && error != ERROR_FILE_NOT_FOUND && error != ERROR_BADKEY && error != ERROR_MORE_DATA;
}

int ReadSetting(REGENTRY *lpEntry)
{
    if (RegReadEntry(HKEY_CURRENT_USER, KEY_READ, g_szRegKeyTable[REGBASE_HOST], lpEntry))
        return 1;
    const DWORD userError = GetLastError();
    if (RegReadEntry(HKEY_LOCAL_MACHINE, KEY_READ, g_szRegKeyTable[REGBASE_HOST], lpEntry))
        return 1;
    if (IsReadError(userError))
        SetLastError(userError);
    return 0;
}

bool WasReadError()
{
    return IsReadError(GetLastError());
}

void DeleteSetting(const REGENTRY *lpEntry)
{
    if (!RegDeleteEntry(HKEY_CURRENT_USER, KEY_WRITE, g_szRegKeyTable[REGBASE_HOST], lpEntry))
        RegDeleteEntry(HKEY_LOCAL_MACHINE, KEY_WRITE, g_szRegKeyTable[REGBASE_HOST], lpEntry);
}

int WritePolicySetting(const REGENTRY *lpEntry)
{
    return RegWriteEntry(HKEY_CURRENT_USER, KEY_WRITE, g_szRegKeyTable[REGBASE_POLICIES], lpEntry);
}

int ReadPolicySetting(REGENTRY *lpEntry)
{
    return RegReadEntry(HKEY_CURRENT_USER, KEY_READ, g_szRegKeyTable[REGBASE_POLICIES], lpEntry);
}

int WriteSettingDword(LPCSTR lpszSubKey, DWORD dwType, LPCSTR lpszName, DWORD dwValue)
{
    const REGENTRY entry = {lpszSubKey, lpszName, dwType, &dwValue, sizeof dwValue};
    return WriteSetting(&entry);
}

LONG ReadSettingDword(LPCSTR lpszSubKey, DWORD dwType, LPCSTR lpszName)
{
    LONG value = -1;
    REGENTRY entry = {lpszSubKey, lpszName, dwType, &value, sizeof value};
    if (!ReadSetting(&entry) || entry.cbData != sizeof value)
        return -1;
    return value;
}

bool WriteSettingText(LPCSTR lpszSubKey, LPCSTR lpszName, const char *lpszBuffer, DWORD cbBuffer)
{
    const REGENTRY entry = {lpszSubKey, lpszName, REG_SZ, const_cast<char *>(lpszBuffer), cbBuffer};
    return WriteSetting(&entry);
}

bool ReadSettingText(LPCSTR lpszSubKey, LPCSTR lpszName, char *lpszBuffer, DWORD cbBuffer)
{
    // Read aside: a value of another type must not reach the caller's buffer.
    char szText[SETTING_TEXT_SIZE];
    REGENTRY entry = {lpszSubKey, lpszName, REG_SZ, szText, cbBuffer < sizeof szText ? cbBuffer : sizeof szText};
    if (!ReadSetting(&entry) || entry.dwType != REG_SZ)
        return false;
    // lstrcpynA terminates by itself, and stops one short: a stored text need not end with its zero.
    lstrcpynA(lpszBuffer, szText, static_cast<int>(entry.cbData < cbBuffer ? entry.cbData + 1 : cbBuffer));
    return true;
}
