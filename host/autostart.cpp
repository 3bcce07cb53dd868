// Whether Windows starts the program at log-on: the user's own list of such programs in the registry.
#include "host/autostart.h"

static const wchar_t s_szRun[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Run";
// Where the task manager of Windows 8 and later notes what the user has switched off there.
static const wchar_t s_szApproved[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\StartupApproved\\Run";
static const wchar_t s_szValue[] = L"Trayhub";

constexpr size_t LONGEST_PATH = 0x8000;

std::wstring AutostartCommand(const std::wstring &program)
{
    return L'"' + program + L'"';
}

// Empty when there is no such text.
static std::wstring ReadText(const wchar_t *path, const wchar_t *name)
{
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, path, 0, KEY_QUERY_VALUE, &key) != ERROR_SUCCESS)
        return {};
    std::wstring text(LONGEST_PATH, L'\0');
    DWORD type = 0, size = static_cast<DWORD>(text.size() * sizeof(wchar_t));
    const LSTATUS result = RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<BYTE *>(text.data()), &size);
    RegCloseKey(key);
    if (result != ERROR_SUCCESS || type != REG_SZ)
        return {};
    text.resize(size / sizeof(wchar_t));
    return text.substr(0, text.find(L'\0'));
}

// The first byte is odd for a program that is switched off.
static bool IsSwitchedOff()
{
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, s_szApproved, 0, KEY_QUERY_VALUE, &key) != ERROR_SUCCESS)
        return false;
    BYTE state[64] = {};
    DWORD type = 0, size = sizeof state;
    const LSTATUS result = RegQueryValueExW(key, s_szValue, nullptr, &type, state, &size);
    RegCloseKey(key);
    return result == ERROR_SUCCESS && type == REG_BINARY && size > 0 && (state[0] & 1) != 0;
}

bool IsAutostartOn(const std::wstring &program)
{
    return lstrcmpiW(ReadText(s_szRun, s_szValue).c_str(), AutostartCommand(program).c_str()) == 0 && !IsSwitchedOff();
}

static DWORD DeleteValue(const wchar_t *path)
{
    HKEY key = nullptr;
    LSTATUS result = RegOpenKeyExW(HKEY_CURRENT_USER, path, 0, KEY_SET_VALUE, &key);
    if (result == ERROR_SUCCESS) {
        result = RegDeleteValueW(key, s_szValue);
        RegCloseKey(key);
    }
    return result == ERROR_FILE_NOT_FOUND ? 0 : static_cast<DWORD>(result);
}

static DWORD WriteValue(const std::wstring &command)
{
    HKEY key = nullptr;
    LSTATUS result = RegCreateKeyExW(HKEY_CURRENT_USER, s_szRun, 0, nullptr, 0, KEY_SET_VALUE, nullptr, &key, nullptr);
    if (result != ERROR_SUCCESS)
        return static_cast<DWORD>(result);
    result = RegSetValueExW(key, s_szValue, 0, REG_SZ, reinterpret_cast<const BYTE *>(command.c_str()),
                            static_cast<DWORD>((command.size() + 1) * sizeof(wchar_t)));
    RegCloseKey(key);
    return static_cast<DWORD>(result);
}

DWORD SetAutostart(const std::wstring &program, bool on)
{
    if (!on)
        return DeleteValue(s_szRun);
    const DWORD error = WriteValue(AutostartCommand(program));
    return error ? error : DeleteValue(s_szApproved);
}
